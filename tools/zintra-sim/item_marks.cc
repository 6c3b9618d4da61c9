#include "tools/zintra-sim/item_marks.h"

#include <stdexcept>

#include "sim/outlook/message_props.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"
#include "src/logging/zintra_utils.h"
#include "tools/zintra-sim/profile_loader.h"
#include "tools/zintra-sim/scenario_fields.h"

namespace zintra::simtool {

namespace {

using sim::MessageProps;

sim::NamedPropKey Mark(const char* name) {
  return sim::NamedPropMap::Key(kZintraPropSetGuid, name);
}

std::optional<std::vector<std::string>> List(const sim::MessageRecord& m, const char* name) {
  Value v = MessageProps::GetNamed(m, Mark(name), kPtMvString8);
  if (v.Type() != ValueType::kStringArray) return std::nullopt;
  return v.ToStringArray();
}

std::string Count(const sim::MessageRecord& m, const char* name) {
  auto list = List(m, name);
  return list ? std::to_string(list->size()) : "";
}

// What each element of the two lists names, element for element: `show` describes the
// copy found, "?" stands for one that is gone.
template <typename Show>
std::string EachCopy(const sim::MessageRecord& m, const char* entries, const char* stores,
                     const ProfileLoader& loader, Show show) {
  auto ids = List(m, entries);
  if (!ids) return "";
  auto store_ids = List(m, stores).value_or(std::vector<std::string>());
  std::string out;
  for (size_t i = 0; i < ids->size(); ++i) {
    std::string what = "?";
    try {
      auto copy = loader.profile().FindMessage((*ids)[i], i < store_ids.size() ? store_ids[i] : "");
      auto folder = copy && !copy->deleted ? copy->folder.lock() : nullptr;
      if (folder) what = show(*copy, *folder);
    } catch (const ZError&) {
      // A copy that is gone reads "?".
    }
    out += (out.empty() ? "" : "; ") + what;
  }
  return out;
}

std::string CopyFolders(const sim::MessageRecord& m, const char* entries, const char* stores,
                        const ProfileLoader& loader) {
  return EachCopy(m, entries, stores, loader,
                  [](const sim::MessageRecord&, const sim::FolderRecord& folder) {
                    return ProfileLoader::PathOf(folder);
                  });
}

// The scenario's ids of the items the lists name; "-" for a copy the add-in made.
std::string CopyIds(const sim::MessageRecord& m, const char* entries, const char* stores,
                    const ProfileLoader& loader) {
  return EachCopy(m, entries, stores, loader,
                  [&](const sim::MessageRecord& copy, const sim::FolderRecord&) {
                    std::string id = loader.IdOf(copy);
                    return id.empty() ? std::string("-") : id;
                  });
}

std::string Attachments(const sim::MessageRecord& m) {
  std::string out;
  for (const sim::AttachmentRecord& a : m.attachments) {
    std::string name = a.display_name.empty() ? a.file_name : a.display_name;
    std::string how = a.type == kOlByReference    ? "link"
                      : a.type == kOlEmbeddedItem ? "item"
                                                  : std::to_string(a.data.size()) + ", by value";
    out += (out.empty() ? "" : "; ") + name + " (" + how + ")";
  }
  return out;
}

}  // namespace

std::optional<std::string> MarkText(const sim::MessageRecord& m, const std::string& field,
                                    const ProfileLoader& loader) {
  std::string f = text::LCase(field);
  if (f == text::LCase(kPropZintraLastAudited)) {
    double d = MessageProps::GetNamed(m, Mark(kPropZintraLastAudited), kPtSystime).IsEmpty()
                   ? kUnsetDate
                   : MessageProps::GetNamed(m, Mark(kPropZintraLastAudited), kPtSystime).ToDate();
    return d == kUnsetDate ? std::string() : FormatIsoTime(d);
  }
  if (f == "logged_copy_folders") {
    return CopyFolders(m, kPropLoggedEntryIds, kPropLoggedStoreIds, loader);
  }
  if (f == "shared_copy_folders") {
    return CopyFolders(m, kPropSharedCopyEntryIds, kPropSharedCopyStoreIds, loader);
  }
  if (f == "logged_copy_ids") return CopyIds(m, kPropLoggedEntryIds, kPropLoggedStoreIds, loader);
  if (f == "shared_copy_ids") {
    return CopyIds(m, kPropSharedCopyEntryIds, kPropSharedCopyStoreIds, loader);
  }
  if (f == "logged_entry_ids") return Count(m, kPropLoggedEntryIds);
  if (f == "logged_store_ids") return Count(m, kPropLoggedStoreIds);
  if (f == "shared_entry_ids") return Count(m, kPropSharedCopyEntryIds);
  if (f == "shared_store_ids") return Count(m, kPropSharedCopyStoreIds);
  if (f == "journal_type") return MessageProps::NamedText(m, sim::named::JournalType());
  if (f == "owner") return MessageProps::NamedText(m, sim::named::TaskOwner());
  if (f == "ownership") {
    Value v = MessageProps::GetNamed(m, sim::named::TaskOwnership(), kPtLong);
    if (v.IsEmpty()) return std::string(m.item_class == ItemClass::kTask ? "new" : "");
    int32_t o = v.ToLong();
    return std::string(o >= 0 && o <= 2 ? kOwnership[o] : "?");
  }
  if (f == "attachments") return Attachments(m);
  return std::nullopt;
}

void ApplyPresetMarks(sim::MessageRecord& m, const PresetMarks& p, const ProfileLoader& loader) {
  if (p.last_audited) {
    MessageProps::SetNamed(m, Mark(kPropZintraLastAudited), kPtSystime,
                           Value::Date(*p.last_audited));
  }
  auto lists = [&](const std::vector<std::string>& ids, const char* entries, const char* stores) {
    if (ids.empty()) return;
    std::vector<std::string> entry_ids, store_ids;
    for (const std::string& id : ids) {
      auto copy = loader.FindItem(id);
      if (!copy) throw std::invalid_argument(id);
      entry_ids.push_back(loader.profile().EntryIdOf(*copy));
      store_ids.push_back(loader.profile().StoreIdOf(*copy->store));
    }
    MessageProps::SetNamed(m, Mark(entries), kPtMvString8, Value(entry_ids));
    if (p.store_ids) MessageProps::SetNamed(m, Mark(stores), kPtMvString8, Value(store_ids));
  };
  lists(p.logged_copies, kPropLoggedEntryIds, kPropLoggedStoreIds);
  lists(p.shared_copies, kPropSharedCopyEntryIds, kPropSharedCopyStoreIds);
  if (p.journal_type) {
    MessageProps::SetNamed(m, sim::named::JournalType(), kPtString8, Value(*p.journal_type));
  }
  if (p.owner) MessageProps::SetNamed(m, sim::named::TaskOwner(), kPtString8, Value(*p.owner));
  if (p.ownership) {
    MessageProps::SetNamed(m, sim::named::TaskOwnership(), kPtLong, Value(*p.ownership));
  }
}

}  // namespace zintra::simtool

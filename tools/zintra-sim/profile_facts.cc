#include "tools/zintra-sim/profile_facts.h"

#include <algorithm>

#include "sim/outlook/message_props.h"
#include "src/core/text.h"
#include "src/host/mapi_object.h"
#include "src/logging/zintra_utils.h"
#include "tools/zintra-sim/profile_loader.h"

namespace zintra::simtool {

namespace {

using sim::MessageProps;

std::vector<std::string> MarkList(const sim::MessageRecord& m, const char* name) {
  Value v =
      MessageProps::GetNamed(m, sim::NamedPropMap::Key(kZintraPropSetGuid, name), kPtMvString8);
  return v.Type() == ValueType::kStringArray ? v.ToStringArray() : std::vector<std::string>{};
}

void IndexFolder(const sim::Profile& p, const sim::FolderRecord& f,
                 std::unordered_map<std::string, const sim::MessageRecord*>& index,
                 std::vector<const sim::MessageRecord*>& all) {
  if (f.deleted) return;
  for (const auto& m : f.messages) {
    if (m->deleted || !m->stored) continue;
    index[text::UCase(p.EntryIdOf(*m))] = m.get();
    all.push_back(m.get());
  }
  for (const auto& c : f.children) IndexFolder(p, *c, index, all);
}

}  // namespace

ProfileFacts::ProfileFacts(const sim::Profile& profile) : profile_(profile) {
  std::vector<const sim::MessageRecord*> all;
  for (const auto& store : profile.Stores()) IndexFolder(profile, *store->root, by_entry_, all);
  for (const sim::MessageRecord* m : all) {
    for (bool shared : {false, true}) {
      for (const sim::MessageRecord* copy : Copies(*m, shared)) {
        if (copy != m) copies_[copy] = {m, shared};
      }
    }
  }
}

const sim::MessageRecord* ProfileFacts::ByEntry(const std::string& /*store_id*/,
                                                const std::string& entry_id) const {
  auto it = by_entry_.find(text::UCase(entry_id));
  return it == by_entry_.end() ? nullptr : it->second;
}

CopyOf ProfileFacts::CopyInfo(const sim::MessageRecord& m) const {
  auto it = copies_.find(&m);
  return it == copies_.end() ? CopyOf{} : it->second;
}

std::vector<const sim::MessageRecord*> ProfileFacts::Copies(const sim::MessageRecord& m,
                                                            bool shared) const {
  std::vector<std::string> entries =
      MarkList(m, shared ? kPropSharedCopyEntryIds : kPropLoggedEntryIds);
  std::vector<std::string> stores =
      MarkList(m, shared ? kPropSharedCopyStoreIds : kPropLoggedStoreIds);
  std::vector<const sim::MessageRecord*> out;
  for (size_t i = 0; i < entries.size(); ++i) {
    if (auto copy = ByEntry(i < stores.size() ? stores[i] : "", entries[i])) out.push_back(copy);
  }
  return out;
}

std::vector<const sim::MessageRecord*> ProfileFacts::Linked(const sim::MessageRecord& m) const {
  Value v = MessageProps::GetNamed(m, sim::named::LinkIds(), kPtMvString8);
  std::vector<const sim::MessageRecord*> out;
  if (v.Type() != ValueType::kStringArray) return out;
  for (const std::string& id : v.ToStringArray()) {
    size_t colon = id.find(':');  // "store:entry"
    std::string entry = colon == std::string::npos ? id : id.substr(colon + 1);
    if (auto target = ByEntry(colon == std::string::npos ? "" : id.substr(0, colon), entry)) {
      out.push_back(target);
    }
  }
  return out;
}

std::string ProfileFacts::Smtp(const std::string& address) const {
  if (address.empty()) return "";
  if (address.find('@') == std::string::npos) {
    const sim::Person* person = profile_.FindPerson(address);  // an Exchange address
    return person ? text::LCase(person->smtp) : text::LCase(address);
  }
  return text::LCase(address);
}

std::vector<std::string> ProfileFacts::Addresses(const sim::MessageRecord& m) const {
  std::vector<std::string> out;
  auto add = [&](const std::string& a) {
    std::string smtp = Smtp(a);
    const sim::Person& me = profile_.CurrentUser();
    if (smtp.empty() || text::EqualsNoCase(smtp, me.smtp)) return;
    if (std::find(out.begin(), out.end(), smtp) == out.end()) out.push_back(smtp);
  };
  add(MessageProps::Text(m, kPrSenderEmailAddress));
  for (const sim::RecipientRecord& r : m.recipients) add(r.smtp.empty() ? r.address : r.smtp);
  return out;
}

std::vector<std::string> ProfileFacts::ContactAddresses(const sim::MessageRecord& contact) {
  std::vector<std::string> out;
  for (int i = 1; i <= 3; ++i) {
    std::string a = text::LCase(MessageProps::NamedText(contact, sim::named::Email(i)));
    if (!a.empty()) out.push_back(a);
  }
  return out;
}

std::string ProfileFacts::FolderOf(const sim::MessageRecord& m) {
  auto folder = m.folder.lock();
  if (!folder) return "";
  std::string path = ProfileLoader::PathOf(*folder);
  // Below the default mailbox the store's name is left out, as scenario paths do.
  if (m.store && m.store->is_default) {
    size_t slash = path.find('/');
    if (slash != std::string::npos) path = path.substr(slash + 1);
  }
  return path;
}

}  // namespace zintra::simtool

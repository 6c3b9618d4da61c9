// ZintraUtils: the item marks (user properties through either facade, named
// properties in a property set), item types and links.
#include <string>
#include <string_view>
#include <utility>

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/host/outlook_item_parts.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/folder_helpers.h"
#include "src/settings/reg_settings.h"

namespace zintra {

namespace {

constexpr char kZintraUtilsPropsModule[] = "ZintraUtils";

ZError ObjectNotSet(const std::string& what) {
  return ZError(kErrObjectNotSet, ZError::StandardDescription(kErrObjectNotSet) + ": " + what,
                kZintraUtilsPropsModule);
}

}  // namespace

Value ZintraUtils::GetUserProperty(const std::shared_ptr<UserProperties>& props,
                                   std::string_view name) {
  return GetUserPropertyIn(props, name, "GetUserProperty");
}

Value ZintraUtils::GetUserProperty(const std::shared_ptr<UserProperties>& props,
                                   std::string_view name, std::shared_ptr<UserProperty>& found) {
  return GetUserPropertyIn(props, name, "GetUserProperty", &found);
}

void ZintraUtils::SetUserProperty(const std::shared_ptr<UserProperties>& props,
                                  std::string_view name, int32_t type, const Value& value,
                                  bool AddToFolderFields) {
  SetUserPropertyIn(props, name, type, value, AddToFolderFields, "SetUserProperty");
}

Value ZintraUtils::GetRDOUserProperty(const std::shared_ptr<UserProperties>& props,
                                      std::string_view name) {
  return GetUserPropertyIn(props, name, "GetRDOUserProperty");
}

void ZintraUtils::SetRDOUserProperty(const std::shared_ptr<UserProperties>& props,
                                     std::string_view name, int32_t type, const Value& value,
                                     bool AddToFolderFields) {
  SetUserPropertyIn(props, name, type, value, AddToFolderFields, "SetRDOUserProperty");
}

bool ZintraUtils::EffectiveAddToFolderFields(bool AddToFolderFields) const {
  // Adding a field changes the folder's definition for every user of the folder, so
  // it takes both the permission to edit folder fields and the explicit wish to use
  // them; the defaults leave folders alone.
  const RegSettings* settings = host_.settings;
  return AddToFolderFields && settings != nullptr && settings->EditFolderFields &&
         settings->AlwaysUseFolderFields;
}

Value ZintraUtils::GetUserPropertyIn(const std::shared_ptr<UserProperties>& props,
                                     std::string_view name, const char* proc_name,
                                     std::shared_ptr<UserProperty>* found) {
  try {
    if (!props) throw ObjectNotSet("no user-property collection");
    std::shared_ptr<UserProperty> prop = props->Find(name);
    if (found) *found = prop;
    return prop ? prop->GetValue() : Value{};
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsPropsModule, proc_name);
    rec.Raise();
    throw;
  }
}

void ZintraUtils::SetUserPropertyIn(const std::shared_ptr<UserProperties>& props,
                                    std::string_view name, int32_t type, const Value& value,
                                    bool AddToFolderFields, const char* proc_name,
                                    const std::shared_ptr<UserProperty>* found) {
  try {
    std::shared_ptr<UserProperty> prop;
    if (found) {
      prop = *found;
    } else {
      if (!props) throw ObjectNotSet("no user-property collection");
      prop = props->Find(name);
    }
    if (!prop) {
      if (!props) throw ObjectNotSet("no user-property collection");
      prop = props->Add(name, type, EffectiveAddToFolderFields(AddToFolderFields));
    }
    if (!prop)
      throw ZError(kErrObjectNotSet, std::string("Failed to add property: ").append(name),
                   kZintraUtilsPropsModule);
    prop->SetValue(value);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsPropsModule, proc_name);
    rec.Raise();
    throw;
  }
}

void ZintraUtils::SetFoundUserProperty(const std::shared_ptr<UserProperties>& props,
                                       const std::shared_ptr<UserProperty>& found,
                                       std::string_view name, int32_t type, const Value& value,
                                       bool AddToFolderFields) {
  SetUserPropertyIn(props, name, type, value, AddToFolderFields, "SetUserProperty", &found);
}

MapiUtils& ZintraUtils::RequireMapiUtils(const char* proc_name) const {
  if (!mapi_utils_) {
    throw ObjectNotSet(std::string("the MAPI utilities are not available to ") + proc_name);
  }
  return *mapi_utils_;
}

int32_t ZintraUtils::NamedPropTag(MapiUtils& utils, const std::string& store_id,
                                  const std::shared_ptr<MapiObject>& object,
                                  const std::string& guid, const PropName& name, bool create) {
  // The host takes the name as a Value: a text name given as text becomes one only when
  // the host is asked.
  auto ask_host = [&] {
    if (name.value) return utils.GetIDsFromNames(object, guid, *name.value, create);
    return utils.GetIDsFromNames(object, guid, Value(std::string(name.name)), create);
  };
  if (store_id.empty()) return ask_host();
  if (!last_store_tags_ || last_store_id_ != store_id) {
    last_store_tags_ = &named_tags_[store_id];
    last_store_id_ = store_id;
  }
  for (const RememberedTag& known : *last_store_tags_) {
    if (known.name == name.name && known.text == name.text && known.guid == guid) {
      return known.tag;
    }
  }
  const int32_t tag = ask_host();
  // The host call may have led to another lookup, for another store even: the list is
  // found again.
  if (PropId(tag) != 0) {
    named_tags_[store_id].push_back({name.text, std::string(name.name), guid, tag});
  }
  return tag;
}

Value ZintraUtils::GetNamedProp(const std::shared_ptr<MapiObject>& object, const Value& name,
                                uint16_t prop_type, const std::string& guid) {
  return GetNamedProp(std::string(), object, name, prop_type, guid);
}

Value ZintraUtils::GetNamedProp(const std::string& store_id,
                                const std::shared_ptr<MapiObject>& object, const Value& name,
                                uint16_t prop_type, const std::string& guid) {
  const std::string text = name.ToString();
  return GetNamedPropIn(store_id, object, {name.Type() == ValueType::kString, text, &name},
                        prop_type, guid);
}

Value ZintraUtils::GetNamedTextProp(const std::string& store_id,
                                    const std::shared_ptr<MapiObject>& object,
                                    std::string_view name, uint16_t prop_type,
                                    const std::string& guid) {
  return GetNamedPropIn(store_id, object, {true, name, nullptr}, prop_type, guid);
}

Value ZintraUtils::GetNamedPropIn(const std::string& store_id,
                                  const std::shared_ptr<MapiObject>& object, const PropName& name,
                                  uint16_t prop_type, const std::string& guid) {
  try {
    if (!object) throw ObjectNotSet("no MAPI object");
    MapiUtils& utils = RequireMapiUtils("GetNamedProp");
    // Reading never adds a name to the store's mapping: an unknown name reads as Empty.
    int32_t tag = NamedPropTag(utils, store_id, object, guid, name, false);
    if (PropId(tag) == 0) return Value{};
    return utils.HrGetOneProp(object, tag | prop_type);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsPropsModule, "GetNamedProp");
    rec.Raise();
    throw;
  }
}

void ZintraUtils::SetNamedProp(const std::shared_ptr<MapiObject>& object, const Value& name,
                               const Value& value, uint16_t prop_type, bool Save,
                               const std::string& guid) {
  SetNamedProp(std::string(), object, name, value, prop_type, Save, guid);
}

void ZintraUtils::SetNamedProp(const std::string& store_id,
                               const std::shared_ptr<MapiObject>& object, const Value& name,
                               const Value& value, uint16_t prop_type, bool Save,
                               const std::string& guid) {
  const std::string text = name.ToString();
  SetNamedPropIn(store_id, object, {name.Type() == ValueType::kString, text, &name}, value,
                 prop_type, Save, guid);
}

void ZintraUtils::SetNamedTextProp(const std::string& store_id,
                                   const std::shared_ptr<MapiObject>& object, std::string_view name,
                                   const Value& value, uint16_t prop_type, bool Save,
                                   const std::string& guid) {
  SetNamedPropIn(store_id, object, {true, name, nullptr}, value, prop_type, Save, guid);
}

void ZintraUtils::SetNamedPropIn(const std::string& store_id,
                                 const std::shared_ptr<MapiObject>& object, const PropName& name,
                                 const Value& value, uint16_t prop_type, bool Save,
                                 const std::string& guid) {
  bool bracketed = false;
  try {
    if (!object) throw ObjectNotSet("no MAPI object");
    MapiUtils& utils = RequireMapiUtils("SetNamedProp");
    int32_t tag = NamedPropTag(utils, store_id, object, guid, name, true);
    if (PropId(tag) == 0) {
      throw ZError(kMapiCallFailed,
                   "No property tag for named property '" + std::string(name.name) + "'",
                   kZintraUtilsPropsModule);
    }
    tag |= prop_type;
    // Only a single string property needs its value converted; anything else (a list
    // of identifiers, above all) goes as it is, uncopied.
    Value converted;
    const Value* stored = &value;
    if (prop_type == kPtString8 && value.Type() != ValueType::kString) {
      converted = Value(value.ToString());
      stored = &converted;
    }
    if (Save) {
      PreSaveItem();
      bracketed = true;
    }
    utils.HrSetOneProp(object, tag, *stored, Save);
    if (bracketed) PostSaveItem();
  } catch (...) {
    if (bracketed) PostSaveItem();
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsPropsModule, "SetNamedProp");
    rec.Log(errors_);
    rec.Raise();
    throw;
  }
}

Value ZintraUtils::RememberedSearchKey(const std::shared_ptr<Folder>& folder, MapiUtils& utils) {
  if (!folder) return Value{};
  auto it = search_keys_.find(folder.get());
  if (it != search_keys_.end() && it->second.folder.lock() == folder) return it->second.key;
  Value key = FolderSearchKey(folder, utils);
  if (key.IsEmpty()) return key;
  std::erase_if(search_keys_, [](const auto& entry) { return entry.second.folder.expired(); });
  search_keys_[folder.get()] = RememberedKey{folder, key};
  return key;
}

int32_t ZintraUtils::OLItemType(const std::shared_ptr<Item>& item) const {
  return item ? OLItemType(item->Class()) : kOlMailItem;
}

int32_t ZintraUtils::OLItemType(ItemClass item_class) {
  switch (item_class) {
    case ItemClass::kMail:
    case ItemClass::kReport:
      return kOlMailItem;
    case ItemClass::kAppointment:
    case ItemClass::kMeeting:
      return kOlAppointmentItem;
    case ItemClass::kContact:
      return kOlContactItem;
    case ItemClass::kTask:
    case ItemClass::kTaskRequest:
    case ItemClass::kTaskRequestUpdate:
    case ItemClass::kTaskRequestAccept:
    case ItemClass::kTaskRequestDecline:
      return kOlTaskItem;
    case ItemClass::kJournal:
    case ItemClass::kDocument:
      return kOlJournalItem;
    case ItemClass::kNote:
      return kOlNoteItem;
    case ItemClass::kPost:
    case ItemClass::kRemote:
      return kOlPostItem;
    case ItemClass::kDistList:
      return kOlDistributionListItem;
    default:
      return kOlMailItem;
  }
}

void ZintraUtils::AddToLinksCollection(const std::shared_ptr<Links>& links,
                                       const std::shared_ptr<Item>& item) {
  try {
    if (!links) throw ObjectNotSet("no links collection");
    if (!item) throw ObjectNotSet("no item to link");
    if (!host_.application) throw ObjectNotSet("no Outlook application");
    // The item may come from another session or from the library; the link must
    // point at the contact as this session's object model sees it.
    std::string store_id;
    if (std::shared_ptr<Folder> parent = item->Parent()) store_id = parent->StoreID();
    std::shared_ptr<Namespace> session = host_.application->Session();
    if (!session) throw ObjectNotSet("no Outlook session");
    std::shared_ptr<Item> resolved = session->GetItemFromID(item->EntryID(), store_id);
    if (!resolved) throw ZError(kMapiNotFound, "Item to link not found", kZintraUtilsPropsModule);
    links->Add(resolved);
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsPropsModule, "AddToLinksCollection");
    rec.Raise();
    throw;
  }
}

}  // namespace zintra

// ZintraUtils: the add-in's single utility object. It owns the format of every mark
// the system leaves on an Outlook item (user properties and named properties in the
// private property set), saves and hard-deletes items inside the save bracket so that
// the add-in ignores the item events it causes itself, screens items for every job,
// and answers item-type and host-version questions. It also hands out fresh keys,
// shows optional messages and keeps the lingering-reference registrations.
//
// Ownership: the add-in creates one instance at start-up and connects it (Connect),
// then hands over the MAPI library's utility object and session once it has made them
// (SetLibrary). ZintraUtils holds shared references to the Outlook application and
// the library objects until Kill; it borrows the settings, the error handling and the
// optional messages, which must outlive it (or until Kill).
//
// Errors: operations that touch Outlook or the library propagate the platform's
// errors as ZError with this module's step appended to the source trail. SaveItem,
// SetNamedProp and GeneralScreening also write the error to the log before raising
// it. An operation that needs an object not connected yet (or released by Kill)
// raises 91 (kErrObjectNotSet). Called on Outlook's thread only.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "src/core/key_generator.h"
#include "src/core/value.h"
#include "src/core/version.h"
#include "src/host/mapi_object.h"
#include "src/host/outlook_constants.h"
#include "src/host/window.h"

namespace zintra {

class AddressEntry;
class Application;
class ErrorHandling;
class ICheckLinger;
class IJob;
class Folder;
class Item;
class LingeringJobs;
class Links;
class MapiUtils;
class OptionalMessages;
class RdoSession;
class RegSettings;
class UserProperties;
class UserProperty;

// The private property set of the system's named properties.
inline constexpr char kZintraPropSetGuid[] = "{1431FEFD-624F-4E83-B1E7-2FB23BE33AF4}";

// Item marks: user properties.
inline constexpr char kPropZintraTag[] = "Zintra Tag";
inline constexpr char kPropZintraLogged[] = "Zintra Logged";
inline constexpr char kPropZintraShared[] = "Zintra Shared";
// Item marks: named properties in kZintraPropSetGuid.
inline constexpr char kPropZintraLastAudited[] = "Zintra Last Audited";   // PT_SYSTIME
inline constexpr char kPropLoggedEntryIds[] = "Zintra Logged Entry IDs";  // PT_MV_STRING8
inline constexpr char kPropLoggedStoreIds[] = "Zintra Logged Store IDs";
inline constexpr char kPropSharedCopyEntryIds[] = "Zintra Shared Copy Entry IDs";
inline constexpr char kPropSharedCopyStoreIds[] = "Zintra Shared Copy Store IDs";

// The value "Zintra Tag" holds while a job of the system owns the item.
inline constexpr char kZintraTagProcessing[] = "Processing";

// What ZintraUtils is connected to at start-up. Null members are allowed: the
// operations that need them raise 91 (OptionalMsgBox only logs).
struct ZintraUtilsHost {
  std::shared_ptr<Application> application;
  const RegSettings* settings = nullptr;
  OptionalMessages* optional_messages = nullptr;
};

class ZintraUtils {
 public:
  explicit ZintraUtils(ErrorHandling& errors);
  ~ZintraUtils();
  ZintraUtils(const ZintraUtils&) = delete;
  ZintraUtils& operator=(const ZintraUtils&) = delete;

  // Connection to the add-in (start-up step "ZintraUtils connected to the add-in").
  void Connect(ZintraUtilsHost host);
  // The MAPI library's utility object (named properties) and session (hard deletes).
  void SetLibrary(std::shared_ptr<MapiUtils> mapi_utils, std::shared_ptr<RdoSession> session);
  // Drops every reference it holds (application, library, registrations). Idempotent.
  void Kill();

  // ---- User properties (both facades: an Outlook item's collection or the
  // library's collection of the same message).
  // The property's value, or Empty when the item has no such property. Never creates.
  Value GetUserProperty(const std::shared_ptr<UserProperties>& props, std::string_view name);
  // Finds or adds the property and sets its value; does not save the item. Raises 91
  // "Failed to add property: <name>" when the property can be neither found nor added.
  // AddToFolderFields is honoured only when the settings allow folder fields
  // (EditFolderFields and AlwaysUseFolderFields both set); otherwise False is passed.
  void SetUserProperty(const std::shared_ptr<UserProperties>& props, std::string_view name,
                       int32_t type, const Value& value, bool AddToFolderFields);
  Value GetRDOUserProperty(const std::shared_ptr<UserProperties>& props, std::string_view name);
  void SetRDOUserProperty(const std::shared_ptr<UserProperties>& props, std::string_view name,
                          int32_t type, const Value& value, bool AddToFolderFields);
  // The final AddToFolderFields passed to Add for a caller's wish.
  bool EffectiveAddToFolderFields(bool AddToFolderFields) const;
  // For a caller that reads a property and writes it again in the same activation:
  // GetUserProperty also hands out the property it found (nullptr when absent), and
  // SetFoundUserProperty is SetUserProperty without the Find: it sets `found`, or adds
  // the property when `found` is nullptr (same error 91 when it cannot).
  Value GetUserProperty(const std::shared_ptr<UserProperties>& props, std::string_view name,
                        std::shared_ptr<UserProperty>& found);
  void SetFoundUserProperty(const std::shared_ptr<UserProperties>& props,
                            const std::shared_ptr<UserProperty>& found, std::string_view name,
                            int32_t type, const Value& value, bool AddToFolderFields);

  // ---- Named properties. `name` is a text name or a numeric id; prop_type is ORed
  // into the resolved tag. Get never creates a mapping (Empty when the name is
  // unknown in the store); Set creates it. For PT_STRING8 Set stores the value as
  // text (a number as its decimal text). With Save the write stores the item inside
  // the save bracket.
  Value GetNamedProp(const std::shared_ptr<MapiObject>& object, const Value& name,
                     uint16_t prop_type, const std::string& guid = kZintraPropSetGuid);
  void SetNamedProp(const std::shared_ptr<MapiObject>& object, const Value& name,
                    const Value& value, uint16_t prop_type, bool Save,
                    const std::string& guid = kZintraPropSetGuid);
  // The same for an object of the store `store_id`: a name's tag is asked of the store
  // once and remembered, as a store's name-to-id mapping never changes and a message
  // object never changes store (a move makes a new one). An unknown name is not
  // remembered. An empty store_id remembers nothing.
  Value GetNamedProp(const std::string& store_id, const std::shared_ptr<MapiObject>& object,
                     const Value& name, uint16_t prop_type,
                     const std::string& guid = kZintraPropSetGuid);
  void SetNamedProp(const std::string& store_id, const std::shared_ptr<MapiObject>& object,
                    const Value& name, const Value& value, uint16_t prop_type, bool Save,
                    const std::string& guid = kZintraPropSetGuid);
  // The same for a text name, which is not copied into a Value for a remembered tag.
  Value GetNamedTextProp(const std::string& store_id, const std::shared_ptr<MapiObject>& object,
                         std::string_view name, uint16_t prop_type,
                         const std::string& guid = kZintraPropSetGuid);
  void SetNamedTextProp(const std::string& store_id, const std::shared_ptr<MapiObject>& object,
                        std::string_view name, const Value& value, uint16_t prop_type, bool Save,
                        const std::string& guid = kZintraPropSetGuid);

  // ---- Save bracket. One flag, not nested.
  // Raises 5 "Called PreSaveItem again before PostSaveItem was called." when set.
  void PreSaveItem();
  // Clears the flag; harmless when clear.
  void PostSaveItem();
  // True inside the bracket: item event handlers return at once. The item is the one
  // the event is about (unused: the flag alone decides).
  bool SquelchItemSend(const std::shared_ptr<Item>& item = nullptr) const;
  // PreSaveItem, Item.Save, PostSaveItem (run even when Save fails).
  void SaveItem(const std::shared_ptr<Item>& item);
  // Saves the item in the bracket, opens the same message through the library
  // session by its EntryID and hard-deletes it there (bypassing Deleted Items), again
  // in the bracket.
  void PermDeleteItem(const std::shared_ptr<Item>& item);

  // ---- Screening. True when a job may touch the item; otherwise False with the
  // reason of the first test that hit. Subject (full name for a contact), folder
  // name and description out-values are filled once the item has passed the first
  // five tests. Logs one debug line per screened item.
  // `facts`, when given, receives what the screening read on the way (each one a host
  // call that a caller going on with the item need not make again).
  struct ScreenedFacts {
    ItemClass item_class = ItemClass::kMail;
    std::shared_ptr<Folder> parent;
    std::shared_ptr<UserProperties> user_properties;
    // "Zintra Tag" as the last test found it (nullptr: absent); set once it was read.
    std::shared_ptr<UserProperty> tag;
    // Set by a caller that shows the description only in rare lines: unless the debug
    // line needs it at once, item_description is left empty and these say what it is
    // made of, for DescribeItem when it is first shown.
    bool describe_later = false;
    const char* described_as = nullptr;  // its label; nullptr: item_description is made
    double described_on = 0;
  };
  bool GeneralScreening(const std::string& caller, const std::shared_ptr<Item>& item, bool Received,
                        bool Sent, std::string& reason, std::string& subject,
                        std::string& folder_name, std::string& item_description,
                        ScreenedFacts* facts = nullptr);
  // A screened item's description ("[Sent 25-Nov/26 3:16a]") from its label and date.
  static std::string DescribeItem(const char* label, double date);

  // ---- Item type and versions.
  // OlItemType number for the item's kind (reports count as mail, documents as
  // journal entries); 0 for nullptr or an unknown kind.
  int32_t OLItemType(const std::shared_ptr<Item>& item) const;
  static int32_t OLItemType(ItemClass item_class);
  // Links `item` (a saved contact), resolved afresh by its EntryID and StoreID, into
  // `links`.
  void AddToLinksCollection(const std::shared_ptr<Links>& links, const std::shared_ptr<Item>& item);
  // "major.minor.revision" of the add-in.
  std::string Version() const;
  // Host major version tests (the number before the first point of Application's
  // Version); all False while no application is connected.
  bool Outlook9() const;
  bool Outlook10() const;
  bool Outlook12OrHigher() const;
  // The host's major version; 0 when unknown.
  int32_t OutlookMajorVersion() const;

  // ---- Miscellany.
  // A key never handed out before by this object.
  std::string GenerateKey() { return keys_.GenerateKey(); }
  // Shows an optional message unless the user suppressed dialog DialogIdx; returns
  // whether it was shown. Never throws.
  bool OptionalMsgBox(int32_t DialogIdx, const std::string& Message, const std::string& Caption,
                      WindowHandle OwnerForm = 0);

  // ---- Lingering-reference check (implemented in zintra_utils_linger.cc).
  // Appends obj to the registration list.
  void SetCheckLinger(std::shared_ptr<ICheckLinger> obj);
  // Watches a job a logging job started, for the check to name it should it outlive its
  // owner (LingeringJobs); the one watch is registered with the first job.
  void WatchLingeringJob(const char* what, const std::shared_ptr<IJob>& job);
  // Runs every registered check once, in registration order, logging a failing one
  // and going on; a second run only logs a warning.
  void CheckLingering();

  ErrorHandling& Errors() { return errors_; }

  // The folder's PR_SEARCH_KEY (FolderSearchKey), read once per folder object: a
  // folder's search key never changes, and the log and shared folders are compared
  // with every copy made in them. A key that cannot be read is not remembered.
  Value RememberedSearchKey(const std::shared_ptr<Folder>& folder, MapiUtils& utils);

  // The library session's current user (nullptr when it names none), asked once per
  // session: the user of a running Outlook does not change, and every received item
  // is compared with it. Its address and its SMTP address (PR_SMTP_ADDRESS) likewise,
  // each read on first use; a failed read throws and is tried again next time.
  std::shared_ptr<AddressEntry> CurrentUser(const std::shared_ptr<RdoSession>& session);
  // Both are valid until the next call that changes the session or Kill.
  const std::string& CurrentUserAddress(const std::shared_ptr<RdoSession>& session);
  const std::string& CurrentUserSmtpAddress(const std::shared_ptr<RdoSession>& session);

 private:
  Value GetUserPropertyIn(const std::shared_ptr<UserProperties>& props, std::string_view name,
                          const char* proc_name, std::shared_ptr<UserProperty>* found = nullptr);
  // Finds the property (or, with `found`, takes *found as what a Find returned), adds it
  // when missing and sets it.
  void SetUserPropertyIn(const std::shared_ptr<UserProperties>& props, std::string_view name,
                         int32_t type, const Value& value, bool AddToFolderFields,
                         const char* proc_name,
                         const std::shared_ptr<UserProperty>* found = nullptr);
  MapiUtils& RequireMapiUtils(const char* proc_name) const;
  // A named property's name as the tag memo keys it: text or numeric, and its text (a
  // number's decimal text). `value` is the name as given, when the caller has it as a Value.
  struct PropName {
    bool text;
    std::string_view name;
    const Value* value;
  };
  // The tag (type part 0) of a named property, from the store or the per-store memo.
  int32_t NamedPropTag(MapiUtils& utils, const std::string& store_id,
                       const std::shared_ptr<MapiObject>& object, const std::string& guid,
                       const PropName& name, bool create);
  Value GetNamedPropIn(const std::string& store_id, const std::shared_ptr<MapiObject>& object,
                       const PropName& name, uint16_t prop_type, const std::string& guid);
  void SetNamedPropIn(const std::string& store_id, const std::shared_ptr<MapiObject>& object,
                      const PropName& name, const Value& value, uint16_t prop_type, bool Save,
                      const std::string& guid);

  ErrorHandling& errors_;
  ZintraUtilsHost host_;
  std::shared_ptr<MapiUtils> mapi_utils_;
  std::shared_ptr<RdoSession> rdo_session_;
  KeyGenerator keys_;
  bool saving_ = false;  // the saving flag, set between PreSaveItem and PostSaveItem
  // Outlook's major version once read (-1: not yet); it cannot change while Outlook
  // runs, and the job queue asks for it on every task-list change.
  mutable int32_t major_version_ = -1;
  struct CurrentUserFacts {
    std::weak_ptr<RdoSession> session;
    std::shared_ptr<AddressEntry> entry;
    std::optional<std::string> address, smtp_address;
  };
  CurrentUserFacts current_user_;
  // Named-property tags by store ID. The add-in uses a handful of names, all in one or
  // two property sets, so a store's tags are a short list walked in order: comparing the
  // name (which differs early) and then the GUID costs less than building and hashing a
  // key of both. An item's marks all go to one store: the last store's tags are kept at
  // hand.
  struct RememberedTag {
    bool text;  // a text name, not a numeric id: the two never match each other
    std::string name;
    std::string guid;
    int32_t tag;
  };
  std::map<std::string, std::vector<RememberedTag>> named_tags_;
  std::vector<RememberedTag>* last_store_tags_ = nullptr;
  std::string last_store_id_;
  // Search keys by folder object (the weak pointer tells a live object from a new one
  // at the same address).
  struct RememberedKey {
    std::weak_ptr<Folder> folder;
    Value key;
  };
  std::map<const Folder*, RememberedKey> search_keys_;

  // Lingering-reference registrations and the once-only guard.
  std::vector<std::shared_ptr<ICheckLinger>> check_linger_;
  std::shared_ptr<LingeringJobs> lingering_jobs_;
  bool check_lingering_entered_ = false;
};

}  // namespace zintra

// The member tables of the served objects, one function per port interface; Serve
// picks the one for the object's kind. Each adds members (and sources with their
// event connections) to `d` for `p`; captured pointers keep `p` alive.
#pragma once

#include <memory>

#include "src/core/value.h"
#include "src/host/command_bars.h"
#include "src/host/idt_extensibility2.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_session.h"
#include "src/host/mapi_table.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "win32/com/variant.h"
#include "win32/sim_server/dispatch_object.h"
#include "win32/sim_server/serve.h"

namespace zintra::win32 {

// OlObjectClass numbers of the objects that are not items.
inline constexpr int32_t kOlApplication = 0;
inline constexpr int32_t kOlNamespace = 1;
inline constexpr int32_t kOlFolder = 2;
inline constexpr int32_t kOlRecipient = 4;
inline constexpr int32_t kOlAttachment = 5;
inline constexpr int32_t kOlFolders = 15;
inline constexpr int32_t kOlItems = 16;
inline constexpr int32_t kOlRecipients = 17;
inline constexpr int32_t kOlAttachments = 18;
inline constexpr int32_t kOlExplorer = 34;
inline constexpr int32_t kOlInspector = 35;
inline constexpr int32_t kOlUserProperties = 38;
inline constexpr int32_t kOlUserProperty = 39;
inline constexpr int32_t kOlExplorers = 60;
inline constexpr int32_t kOlInspectors = 61;
inline constexpr int32_t kOlPropertyPages = 71;
inline constexpr int32_t kOlSelection = 74;
inline constexpr int32_t kOlLink = 75;
inline constexpr int32_t kOlLinks = 76;

inline Variant Ret(const Value& value) { return Variant(value); }
inline Variant RetDate(double serial) { return Variant(Value::Date(serial)); }
inline Variant Nothing() { return Variant(); }
// A by-reference Boolean event argument over `flag` (a sink may set it: Cancel).
inline Variant ByRefBool(VARIANT_BOOL* flag) {
  Variant v;
  v.Get()->vt = VT_BOOL | VT_BYREF;
  v.Get()->pboolVal = flag;
  return v;
}
// Raises an event that has no arguments.
inline void FireBare(DispatchObject* d, const IID& iid, DISPID dispid) {
  std::vector<Variant> none;
  d->Fire(iid, dispid, none);
}
// Raises an event whose one argument is an object.
void FireObject(DispatchObject* d, const IID& iid, DISPID dispid,
                const std::shared_ptr<AutomationObject>& object);
// A read-only "Class" member.
void AddClass(DispatchObject& d, int32_t ol_class);

void AddApplication(DispatchObject& d, const std::shared_ptr<Application>& p);
void AddNamespace(DispatchObject& d, const std::shared_ptr<Namespace>& p);
void AddComAddIn(DispatchObject& d, const std::shared_ptr<ComAddIn>& p);
void AddPropertyPages(DispatchObject& d, const std::shared_ptr<PropertyPages>& p);
void AddExplorers(DispatchObject& d, const std::shared_ptr<Explorers>& p);
void AddInspectors(DispatchObject& d, const std::shared_ptr<Inspectors>& p);
void AddExplorer(DispatchObject& d, const std::shared_ptr<Explorer>& p);
void AddInspector(DispatchObject& d, const std::shared_ptr<Inspector>& p);
void AddSelection(DispatchObject& d, const std::shared_ptr<Selection>& p);

void AddFolder(DispatchObject& d, const std::shared_ptr<Folder>& p);
void AddFolders(DispatchObject& d, const std::shared_ptr<Folders>& p);
void AddItems(DispatchObject& d, const std::shared_ptr<Items>& p);

void AddItem(DispatchObject& d, const std::shared_ptr<Item>& p);
void AddUserProperties(DispatchObject& d, const std::shared_ptr<UserProperties>& p);
void AddUserProperty(DispatchObject& d, const std::shared_ptr<UserProperty>& p);
void AddLinks(DispatchObject& d, const std::shared_ptr<Links>& p);
void AddLink(DispatchObject& d, const std::shared_ptr<Link>& p);
void AddRecipients(DispatchObject& d, const std::shared_ptr<Recipients>& p);
void AddRecipient(DispatchObject& d, const std::shared_ptr<Recipient>& p);
void AddAttachments(DispatchObject& d, const std::shared_ptr<Attachments>& p);
void AddAttachment(DispatchObject& d, const std::shared_ptr<Attachment>& p);

void AddAddressEntry(DispatchObject& d, const std::shared_ptr<AddressEntry>& p);
void AddAddressList(DispatchObject& d, const std::shared_ptr<AddressList>& p);
void AddAddressLists(DispatchObject& d, const std::shared_ptr<AddressLists>& p);
void AddMapiUtils(DispatchObject& d, const std::shared_ptr<MapiUtils>& p);
void AddMapiTable(DispatchObject& d, const std::shared_ptr<MapiTable>& p);
void AddSafeItem(DispatchObject& d, const std::shared_ptr<SafeItem>& p);
void AddSafeInspector(DispatchObject& d, const std::shared_ptr<SafeInspector>& p);
void AddRdoSession(DispatchObject& d, const std::shared_ptr<RdoSession>& p);
void AddRdoFolder(DispatchObject& d, const std::shared_ptr<RdoFolder>& p);
void AddRdoMessage(DispatchObject& d, const std::shared_ptr<RdoMessage>& p);

void AddCommandBars(DispatchObject& d, const std::shared_ptr<CommandBars>& p);
void AddCommandBar(DispatchObject& d, const std::shared_ptr<CommandBar>& p);
void AddCommandBarControls(DispatchObject& d, const std::shared_ptr<CommandBarControls>& p);
void AddCommandBarControl(DispatchObject& d, const std::shared_ptr<CommandBarControl>& p);

}  // namespace zintra::win32

#include "win32/sim_server/serve.h"

#include "win32/sim_server/dispatch_args.h"
#include "win32/sim_server/server_members.h"

namespace zintra::win32 {
namespace {

// Tries one port interface: builds the members when `object` is one.
template <typename T>
bool Try(DispatchObject& d, const std::shared_ptr<AutomationObject>& object,
         void (*add)(DispatchObject&, const std::shared_ptr<T>&)) {
  auto typed = std::dynamic_pointer_cast<T>(object);
  if (!typed) return false;
  add(d, typed);
  return true;
}

void AddMembers(DispatchObject& d, const std::shared_ptr<AutomationObject>& o) {
  // Items first: they are the most frequent objects by far.
  Try<Item>(d, o, AddItem) || Try<Items>(d, o, AddItems) || Try<Folder>(d, o, AddFolder) ||
      Try<Folders>(d, o, AddFolders) || Try<Namespace>(d, o, AddNamespace) ||
      Try<Application>(d, o, AddApplication) || Try<Explorer>(d, o, AddExplorer) ||
      Try<Inspector>(d, o, AddInspector) || Try<Explorers>(d, o, AddExplorers) ||
      Try<Inspectors>(d, o, AddInspectors) || Try<Selection>(d, o, AddSelection) ||
      Try<PropertyPages>(d, o, AddPropertyPages) || Try<ComAddIn>(d, o, AddComAddIn) ||
      Try<UserProperties>(d, o, AddUserProperties) || Try<UserProperty>(d, o, AddUserProperty) ||
      Try<Links>(d, o, AddLinks) || Try<Link>(d, o, AddLink) ||
      Try<Recipients>(d, o, AddRecipients) || Try<Recipient>(d, o, AddRecipient) ||
      Try<Attachments>(d, o, AddAttachments) || Try<Attachment>(d, o, AddAttachment) ||
      Try<AddressEntry>(d, o, AddAddressEntry) || Try<AddressList>(d, o, AddAddressList) ||
      Try<AddressLists>(d, o, AddAddressLists) || Try<MapiUtils>(d, o, AddMapiUtils) ||
      Try<MapiTable>(d, o, AddMapiTable) || Try<SafeItem>(d, o, AddSafeItem) ||
      Try<SafeInspector>(d, o, AddSafeInspector) || Try<RdoSession>(d, o, AddRdoSession) ||
      Try<RdoFolder>(d, o, AddRdoFolder) || Try<RdoMessage>(d, o, AddRdoMessage) ||
      Try<CommandBars>(d, o, AddCommandBars) || Try<CommandBar>(d, o, AddCommandBar) ||
      Try<CommandBarControls>(d, o, AddCommandBarControls) ||
      Try<CommandBarControl>(d, o, AddCommandBarControl);
  // Anything else (a MAPI object) is opaque: it has a type name and no members.
}

}  // namespace

ComPtr<IDispatch> Serve(const std::shared_ptr<AutomationObject>& object) {
  if (!object) return {};
  if (auto foreign = std::dynamic_pointer_cast<ForeignObject>(object)) return foreign->Dispatch();
  // One COM object per simulated object while it is served: the application, the
  // windows and their lists keep their identity, as Outlook's do.
  if (DispatchObject* served = DispatchObject::ServingNow(object.get())) {
    return ComPtr<IDispatch>(served->AsDispatch());
  }
  ComPtr<DispatchObject> d = DispatchObject::Create(object->TypeName(), object);
  AddMembers(*d.Get(), object);
  return ComPtr<IDispatch>(d->AsDispatch());
}

void AddClass(DispatchObject& d, int32_t ol_class) {
  d.Member("Class", [ol_class](const DispatchArgs&) { return Ret(ol_class); });
}

void FireObject(DispatchObject* d, const IID& iid, DISPID dispid,
                const std::shared_ptr<AutomationObject>& object) {
  std::vector<Variant> args;
  args.push_back(ServeVariant(object));
  d->Fire(iid, dispid, args);
}

}  // namespace zintra::win32

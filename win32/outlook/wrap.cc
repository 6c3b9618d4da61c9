#include "win32/outlook/wrap.h"

#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {
namespace {

// Outlook's OlObjectClass numbers of the objects that are not items.
enum OlObjectClass : int32_t {
  kOlApplication = 0,
  kOlNamespace = 1,
  kOlFolder = 2,
  kOlRecipient = 4,
  kOlAttachment = 5,
  kOlFolders = 15,
  kOlItems = 16,
  kOlRecipients = 17,
  kOlAttachments = 18,
  kOlExplorer = 34,
  kOlInspector = 35,
  kOlUserProperties = 38,
  kOlUserProperty = 39,
  kOlExplorers = 60,
  kOlInspectors = 61,
  kOlPropertyPages = 71,
  kOlSelection = 74,
  kOlLink = 75,
  kOlLinks = 76,
};

// The Class numbers of items; other objects' numbers lie between them (34 explorer).
bool IsItemClass(int32_t n) {
  switch (static_cast<ItemClass>(n)) {
    case ItemClass::kAppointment:
    case ItemClass::kContact:
    case ItemClass::kDocument:
    case ItemClass::kJournal:
    case ItemClass::kMail:
    case ItemClass::kNote:
    case ItemClass::kPost:
    case ItemClass::kReport:
    case ItemClass::kRemote:
    case ItemClass::kTask:
    case ItemClass::kTaskRequest:
    case ItemClass::kTaskRequestUpdate:
    case ItemClass::kTaskRequestAccept:
    case ItemClass::kTaskRequestDecline:
    case ItemClass::kMeeting:
    case ItemClass::kDistList:
    case ItemClass::kSharing:
      return true;
  }
  return false;
}

}  // namespace

std::shared_ptr<AutomationObject> WrapAny(const ComPtr<IDispatch>& object) {
  if (!object) return nullptr;
  DispatchClient probe(object, "");
  if (!probe.Has("Class")) return std::make_shared<ComObject>(object);
  int32_t n = probe.GetValue("Class").ToLong();
  if (IsItemClass(n)) return Wrap<Item>(object);
  switch (n) {
    case kOlApplication:
      return Wrap<Application>(object);
    case kOlNamespace:
      return Wrap<Namespace>(object);
    case kOlFolder:
      return Wrap<Folder>(object);
    case kOlRecipient:
      return Wrap<Recipient>(object);
    case kOlAttachment:
      return Wrap<Attachment>(object);
    case kOlFolders:
      return Wrap<Folders>(object);
    case kOlItems:
      return Wrap<Items>(object);
    case kOlRecipients:
      return Wrap<Recipients>(object);
    case kOlAttachments:
      return Wrap<Attachments>(object);
    case kOlExplorer:
      return Wrap<Explorer>(object);
    case kOlInspector:
      return Wrap<Inspector>(object);
    case kOlUserProperties:
      return Wrap<UserProperties>(object);
    case kOlUserProperty:
      return Wrap<UserProperty>(object);
    case kOlExplorers:
      return Wrap<Explorers>(object);
    case kOlInspectors:
      return Wrap<Inspectors>(object);
    case kOlPropertyPages:
      return Wrap<PropertyPages>(object);
    case kOlSelection:
      return Wrap<Selection>(object);
    case kOlLink:
      return Wrap<Link>(object);
    case kOlLinks:
      return Wrap<Links>(object);
    default:
      return std::make_shared<ComObject>(object);
  }
}

}  // namespace zintra::win32

#include "src/outlook/library_factory.h"

#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/object_factory.h"
#include "src/host/outlook_constants.h"
#include "src/resources/string_table.h"

namespace zintra {

namespace {

constexpr const char* kClassNames[] = {"TovuAddressLists", "TovuMAPIFolder",      "TovuMAPITable",
                                       "TovuMAPIUtils",    "TovuAppointmentItem", "TovuContactItem",
                                       "TovuCurrentUser",  "TovuDistList",        "TovuJournalItem",
                                       "TovuMailItem",     "TovuMeetingItem",     "TovuPostItem",
                                       "TovuTaskItem",     "TovuReportItem",      "TovuInspector",
                                       "TovuRDOSession",   "TovuRDOFolder"};

constexpr int32_t kStrReinstall = 502;

}  // namespace

std::string LibraryClassName(int32_t kind) {
  if (kind < 1 || kind > 17) return {};
  return kClassNames[kind - 1];
}

int32_t SafeItemKind(int32_t ol_item_type) {
  switch (ol_item_type) {
    case kOlMailItem:
      return kLibSafeMail;
    case kOlAppointmentItem:
      return kLibSafeAppointment;
    case kOlContactItem:
      return kLibSafeContact;
    case kOlTaskItem:
      return kLibSafeTask;
    case kOlJournalItem:
      return kLibSafeJournal;
    case kOlPostItem:
      return kLibSafePost;
    case kOlDistributionListItem:
      return kLibSafeDistList;
    default:
      return 0;  // notes have no safe wrapper
  }
}

LibraryFactory::LibraryFactory(ObjectFactory& factory, ErrorHandling& errors,
                               const StringTable& strings)
    : factory_(factory), errors_(errors), strings_(strings) {}

std::shared_ptr<AutomationObject> LibraryFactory::CreateLibraryObject(int32_t kind) {
  return CreateObject(kLibraryProgIdPrefix + LibraryClassName(kind));
}

std::shared_ptr<SafeItem> LibraryFactory::CreateSafeItem(int32_t ol_item_type) {
  int32_t kind = SafeItemKind(ol_item_type);
  if (kind == 0) return nullptr;
  return Create<SafeItem>(kind);
}

std::shared_ptr<AutomationObject> LibraryFactory::CreateObject(const std::string& prog_id) {
  try {
    return factory_.CreateObject(prog_id);
  } catch (const ZError& e) {
    CachedError logged(ZError(e.Number(), "Could not create class: " + prog_id, e.Source()),
                       "LibraryFactory", "CreateObject");
    logged.Log(errors_);
    // The user is told to reinstall: a class that cannot be created means a broken
    // installation far more often than anything else.
    throw ZError(e.Number(), strings_.Load(kStrReinstall) + "\r\n\r\n" + e.Description(),
                 e.Source(), e.HelpFile(), e.HelpContext(), e.LastDllError());
  }
}

}  // namespace zintra

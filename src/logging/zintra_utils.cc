// ZintraUtils: connection, the save bracket, versions and the small services.
// Item marks live in zintra_utils_props.cc, screening in zintra_utils_screening.cc.
#include "src/logging/zintra_utils.h"

#include <cctype>
#include <utility>

#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_session.h"
#include "src/host/mapi_utils.h"
#include "src/host/outlook_application.h"
#include "src/jobs/i_check_linger.h"
#include "src/ui/optional_messages.h"

namespace zintra {

namespace {

constexpr char kZintraUtilsModule[] = "ZintraUtils";

// Runs PostSaveItem on every way out of a bracketed action, so that a failing
// Save or Delete never leaves the saving flag set.
class SaveBracket {
 public:
  explicit SaveBracket(ZintraUtils& utils) : utils_(utils) { utils_.PreSaveItem(); }
  ~SaveBracket() { utils_.PostSaveItem(); }
  SaveBracket(const SaveBracket&) = delete;
  SaveBracket& operator=(const SaveBracket&) = delete;

 private:
  ZintraUtils& utils_;
};

[[noreturn]] void RaiseWithStep(const char* proc_name) {
  CachedError rec;
  rec.SetToCurrentException(kZintraUtilsModule, proc_name);
  rec.Raise();
  throw rec.ToZError();  // Raise returns only for number 0, which a raise never has
}

}  // namespace

ZintraUtils::ZintraUtils(ErrorHandling& errors) : errors_(errors) {}

ZintraUtils::~ZintraUtils() = default;

void ZintraUtils::Connect(ZintraUtilsHost host) {
  host_ = std::move(host);
  major_version_ = -1;
}

void ZintraUtils::SetLibrary(std::shared_ptr<MapiUtils> mapi_utils,
                             std::shared_ptr<RdoSession> session) {
  mapi_utils_ = std::move(mapi_utils);
  rdo_session_ = std::move(session);
  named_tags_.clear();  // another session may see other stores
  last_store_tags_ = nullptr;
}

void ZintraUtils::Kill() {
  host_ = ZintraUtilsHost{};
  major_version_ = -1;
  mapi_utils_.reset();
  rdo_session_.reset();
  check_linger_.clear();
  lingering_jobs_.reset();
  named_tags_.clear();
  last_store_tags_ = nullptr;
  search_keys_.clear();
}

void ZintraUtils::PreSaveItem() {
  if (saving_) {
    throw ZError(kErrInvalidCall, "Called PreSaveItem again before PostSaveItem was called.",
                 std::string(kZintraUtilsModule) + ".PreSaveItem");
  }
  saving_ = true;
}

void ZintraUtils::PostSaveItem() { saving_ = false; }

bool ZintraUtils::SquelchItemSend(const std::shared_ptr<Item>& /*item*/) const { return saving_; }

void ZintraUtils::SaveItem(const std::shared_ptr<Item>& item) {
  try {
    if (!item) throw ZError(kErrObjectNotSet, ZError::StandardDescription(kErrObjectNotSet));
    SaveBracket bracket(*this);
    item->Save();
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsModule, "SaveItem");
    rec.Log(errors_);
    rec.Raise();
    throw;
  }
}

void ZintraUtils::PermDeleteItem(const std::shared_ptr<Item>& item) {
  try {
    if (!item) throw ZError(kErrObjectNotSet, ZError::StandardDescription(kErrObjectNotSet));
    if (!rdo_session_) {
      throw ZError(kErrObjectNotSet, "The MAPI library session is not available");
    }
    {
      SaveBracket bracket(*this);
      item->Save();
    }
    std::shared_ptr<RdoMessage> message = rdo_session_->GetMessageFromID(item->EntryID());
    if (!message) throw ZError(kMapiNotFound, "Message not found: " + item->EntryID());
    SaveBracket bracket(*this);
    message->Delete();
  } catch (...) {
    RaiseWithStep("PermDeleteItem");
  }
}

std::string ZintraUtils::Version() const {
  return std::to_string(kAddinVersionMajor) + "." + std::to_string(kAddinVersionMinor) + "." +
         std::to_string(kAddinVersionRevision);
}

int32_t ZintraUtils::OutlookMajorVersion() const {
  if (!host_.application) return 0;
  if (major_version_ >= 0) return major_version_;
  std::string version;
  try {
    version = host_.application->Version();
  } catch (const ZError&) {
    return 0;  // an unreadable version answers as an unknown host
  }
  int32_t major = 0;
  for (char c : version) {
    if (c == '.') break;
    if (!std::isdigit(static_cast<unsigned char>(c))) {
      major = 0;
      break;
    }
    major = major * 10 + (c - '0');
    if (major > 1000) {
      major = 0;
      break;
    }
  }
  major_version_ = major;
  return major;
}

bool ZintraUtils::Outlook9() const { return OutlookMajorVersion() == 9; }

bool ZintraUtils::Outlook10() const { return OutlookMajorVersion() == 10; }

bool ZintraUtils::Outlook12OrHigher() const { return OutlookMajorVersion() >= 12; }

bool ZintraUtils::OptionalMsgBox(int32_t DialogIdx, const std::string& Message,
                                 const std::string& Caption, WindowHandle OwnerForm) {
  if (!host_.optional_messages) {
    errors_.WriteLogMessage(
        "Optional message " + std::to_string(DialogIdx) + " not shown: no message box: " + Message,
        true);
    return false;
  }
  return host_.optional_messages->OptionalMsgBox(DialogIdx, Message, Caption, OwnerForm);
}

std::shared_ptr<AddressEntry> ZintraUtils::CurrentUser(const std::shared_ptr<RdoSession>& session) {
  if (!session) return nullptr;
  if (current_user_.entry && current_user_.session.lock() == session) return current_user_.entry;
  current_user_ = CurrentUserFacts{};
  current_user_.entry = session->CurrentUser();
  if (current_user_.entry) current_user_.session = session;
  return current_user_.entry;
}

namespace {
const std::string kNoAddress;
}  // namespace

const std::string& ZintraUtils::CurrentUserAddress(const std::shared_ptr<RdoSession>& session) {
  std::shared_ptr<AddressEntry> user = CurrentUser(session);
  if (!user) return kNoAddress;
  if (!current_user_.address) current_user_.address = user->Address();
  return *current_user_.address;
}

const std::string& ZintraUtils::CurrentUserSmtpAddress(const std::shared_ptr<RdoSession>& session) {
  std::shared_ptr<AddressEntry> user = CurrentUser(session);
  if (!user) return kNoAddress;
  if (!current_user_.smtp_address) {
    current_user_.smtp_address = user->Fields(kPrSmtpAddress).ToString();
  }
  return *current_user_.smtp_address;
}

}  // namespace zintra

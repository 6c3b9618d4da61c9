// JobProcess: the sender's address and whether the sender is a colleague.
#include <string_view>
#include <utility>

#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/host/mapi_address.h"
#include "src/host/mapi_object.h"
#include "src/host/mapi_safe_item.h"
#include "src/host/mapi_session.h"
#include "src/host/outlook_item.h"
#include "src/logging/job_process.h"
#include "src/logging/logging_addin.h"
#include "src/logging/zintra_utils.h"
#include "src/outlook/library_factory.h"

namespace zintra {

namespace {

// Where "/O=" starts, in any case, or npos.
size_t OrgStart(std::string_view address) {
  for (size_t i = address.find('/'); i != std::string_view::npos; i = address.find('/', i + 1)) {
    if (i + 2 < address.size() && (address[i + 1] | 0x20) == 'o' && address[i + 2] == '=') return i;
  }
  return std::string_view::npos;
}

bool IsExchangeAddress(std::string_view address) {
  return OrgStart(address) != std::string_view::npos;
}

// "/O=Contoso/OU=..." -> "Contoso".
std::string_view Organisation(std::string_view address) {
  const size_t start = OrgStart(address);
  if (start == std::string_view::npos) return {};
  const size_t end = address.find('/', start + 3);
  return address.substr(start + 3,
                        end == std::string_view::npos ? std::string_view::npos : end - start - 3);
}

std::string_view Domain(std::string_view address) {
  const size_t at = address.find('@');
  return at == std::string_view::npos ? std::string_view() : address.substr(at + 1);
}

}  // namespace

std::string JobProcess::SenderAddress(const std::shared_ptr<Item>& item, bool WantSmtp) {
  std::shared_ptr<LoggingAddin> app = App();
  if (!app || !item) return {};
  // A sender read once (screening reads it, the address search asks for both forms)
  // is not read again.
  if (sender_of_.lock() == item) return WantSmtp ? sender_smtp_ : sender_native_;
  std::string native, smtp;
  std::shared_ptr<SafeItem> safe;
  std::shared_ptr<AddressEntry> entry;
  try {
    safe = SafeItemFor(item);
    if (safe) entry = safe->Sender();
  } catch (const ZError&) {
    entry = nullptr;
  }
  // The subject only goes into the line about a sender that cannot be had.
  std::string subject;
  if (!entry) subject = subject_.empty() ? item->Subject() : subject_;
  try {
    if (!entry) {
      LogErrorLine("AddressEntry could not be retrieved for the sender of '" + subject + "' " +
                       ".  Resorting to " + "old method of retrieving originator address.",
                   "SenderAddress");
      if (!safe) return {};
      native = safe->Fields(kPrSenderEmailAddress).ToString();
      std::string type = text::UCase(safe->Fields(kPrSenderAddrType).ToString());
      const std::string upper = text::UCase(native);
      if (IsExchangeAddress(upper) && upper.find("/OU=") == std::string::npos) type = "EX";
      if (type == "SMTP" || (type.empty() && native.find('@') != std::string::npos)) smtp = native;
    } else {
      const std::string type = entry->Type();
      native = entry->Address();
      if (text::EqualsNoCase(type, "SMTP")) {
        smtp = native;
      } else if (text::EqualsNoCase(type, "EX")) {
        smtp = entry->Fields(kPrSmtpAddress).ToString();
      }
      sender_of_ = item;
      sender_native_ = std::move(native);
      sender_smtp_ = std::move(smtp);
      return WantSmtp ? sender_smtp_ : sender_native_;
    }
  } catch (const ZError& e) {
    // A sender that cannot be read is left out of the search.
    LogError(e, "SenderAddress");
    return {};
  }
  return WantSmtp ? smtp : native;
}

bool JobProcess::ItemFromInternalUser(const std::shared_ptr<Item>& item) {
  std::shared_ptr<LoggingAddin> app = App();
  std::shared_ptr<RdoSession> session = app ? app->RDOSession() : nullptr;
  ZintraUtils& utils = Utils();
  if (!utils.CurrentUser(session)) return false;
  // Addresses compare without regard to case.
  const std::string sender = SenderAddress(item, false);
  const std::string& me = utils.CurrentUserAddress(session);
  if (IsExchangeAddress(sender)) {
    const std::string_view org = Organisation(sender);
    return !org.empty() && text::EqualsNoCase(org, Organisation(me));
  }
  const std::string_view domain = Domain(sender);
  if (domain.empty()) return false;
  // An Exchange user's own domain is that of the SMTP address of its entry.
  std::string_view my_domain = Domain(me);
  if (my_domain.empty()) my_domain = Domain(utils.CurrentUserSmtpAddress(session));
  return text::EqualsNoCase(domain, my_domain);
}

}  // namespace zintra

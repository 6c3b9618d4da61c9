// ZintraUtils::GeneralScreening: the tests every job and folder scan applies before
// it touches an item.
#include <string>

#include "src/core/date.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/zintra_utils.h"

namespace zintra {

namespace {

constexpr char kZintraUtilsScreeningModule[] = "ZintraUtils";
constexpr char kScreeningDateFormat[] = "dd-mmm\\/yy h\\:Nna/p";

}  // namespace

bool ZintraUtils::GeneralScreening(const std::string& caller, const std::shared_ptr<Item>& item,
                                   bool Received, bool Sent, std::string& reason,
                                   std::string& subject, std::string& folder_name,
                                   std::string& item_description, ScreenedFacts* facts) {
  reason.clear();
  subject.clear();
  folder_name.clear();
  item_description.clear();
  try {
    if (!item) {
      reason = "Item is nothing";
      return false;
    }
    const ItemClass item_class = item->Class();
    if (facts) facts->item_class = item_class;
    if (item_class == ItemClass::kRemote) {
      reason = "Item is RemoteItem";
      return false;
    }
    if (item_class == ItemClass::kNote) {
      reason = "Item is NoteItem";
      return false;
    }
    const std::string type_name = item->TypeName();
    if (type_name == "SharingItem") {
      reason = "Item is SharingItem";
      return false;
    }
    std::shared_ptr<Folder> parent = item->Parent();
    if (facts) facts->parent = parent;
    if (!parent) {
      reason = "Item.Parent is nothing";
      return false;
    }

    subject = item_class == ItemClass::kContact ? item->FullName() : item->Subject();
    folder_name = parent->Name();

    // The labels are crossed on purpose: a received mail is described by the time it
    // was sent, a sent one by the time it was received.
    const char* label = nullptr;
    double date = 0;
    if (item_class == ItemClass::kMail) {
      if (Received) {
        label = "Recieved";
        date = item->SentOn();
      } else if (Sent) {
        label = "Sent";
        date = item->ReceivedTime();
      }
    }
    if (!label) {
      label = "Created";
      date = item->CreationTime();
    }
    const bool debug = errors_.KeepsDebugLines();
    if (facts && facts->describe_later && !debug) {
      facts->described_as = label;
      facts->described_on = date;
    } else {
      item_description = DescribeItem(label, date);
    }

    if (debug) {
      errors_.WriteLogMessage("Screening " + caller + " " + type_name + " '" + subject + "' in '" +
                                  folder_name + "' " + item_description,
                              false);
    }

    std::shared_ptr<UserProperties> props = item->UserProperties();
    if (facts) facts->user_properties = props;
    std::shared_ptr<UserProperty> tag;
    const Value tag_value = GetUserProperty(props, kPropZintraTag, tag);
    if (facts) facts->tag = tag;
    if (!tag_value.ToString().empty()) {
      reason = "ZINTRAPROP_TAG is not empty";
      return false;
    }
    return true;
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kZintraUtilsScreeningModule, "GeneralScreening");
    rec.Log(errors_);
    rec.Raise();
    throw;
  }
}

std::string ZintraUtils::DescribeItem(const char* label, double date) {
  return std::string("[") + label + " " + FormatDate(date, kScreeningDateFormat) + "]";
}

}  // namespace zintra

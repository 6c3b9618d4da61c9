#include "sim/mapi/sim_class_registry.h"

#include "sim/mapi/sim_mapi_table.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_rdo.h"
#include "sim/mapi/sim_safe_item.h"
#include "sim/outlook/sim_address_entry.h"
#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::sim {

void SimClassRegistry::Register(const std::string& prog_id, Creator creator) {
  classes_[text::LCase(prog_id)] = std::move(creator);
}

void SimClassRegistry::Unregister(const std::string& prog_id) {
  classes_.erase(text::LCase(prog_id));
}

void SimClassRegistry::RegisterLibrary() {
  Profile* p = profile_;
  const std::string prefix = "TovuRedemption.";
  Register(prefix + "TovuAddressLists", [p] { return std::make_shared<SimAddressLists>(p); });
  Register(prefix + "TovuMAPIFolder",
           [p] { return std::make_shared<SimRdoFolder>(p, "TovuMAPIFolder"); });
  Register(prefix + "TovuMAPITable", [p] { return std::make_shared<SimMapiTable>(p); });
  Register(prefix + "TovuMAPIUtils", [p] { return std::make_shared<SimMapiUtils>(p); });
  for (const char* safe :
       {"TovuAppointmentItem", "TovuContactItem", "TovuDistList", "TovuJournalItem", "TovuMailItem",
        "TovuMeetingItem", "TovuPostItem", "TovuTaskItem", "TovuReportItem"}) {
    std::string name = safe;
    Register(prefix + name, [p, name] { return std::make_shared<SimSafeItem>(p, name); });
  }
  Register(prefix + "TovuCurrentUser",
           [p] { return SimAddressEntry::ForPerson(p, p->CurrentUser()); });
  Register(prefix + "TovuInspector", [p] { return std::make_shared<SimSafeInspector>(p); });
  Register(prefix + "TovuRDOSession", [p] { return std::make_shared<SimRdoSession>(p); });
  Register(prefix + "TovuRDOFolder",
           [p] { return std::make_shared<SimRdoFolder>(p, "TovuRDOFolder"); });
}

std::shared_ptr<AutomationObject> SimClassRegistry::CreateObject(const std::string& prog_id) {
  requests_.push_back(prog_id);
  HostCall host_call = profile_->Faults().Check("ObjectFactory.CreateObject", nullptr);
  auto it = classes_.find(text::LCase(prog_id));
  if (it == classes_.end()) {
    throw ZError(kErrCannotCreateObject, "ActiveX component can't create object");
  }
  auto object = it->second();
  if (!object) throw ZError(kErrCannotCreateObject, "ActiveX component can't create object");
  return object;
}

}  // namespace zintra::sim

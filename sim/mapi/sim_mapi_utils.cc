#include "sim/mapi/sim_mapi_utils.h"

#include "sim/outlook/entry_id.h"
#include "sim/outlook/message_props.h"
#include "src/core/z_error.h"

namespace zintra::sim {

SimMapiUtils::SimMapiUtils(Profile* profile) : profile_(profile) {
  new_mail_ = profile_->new_mail.Connect(
      [this](const std::shared_ptr<MessageRecord>& m) { NewMail.Raise(profile_->EntryIdOf(*m)); });
}

const SimMapiObject& SimMapiUtils::Resolve(const std::shared_ptr<MapiObject>& object,
                                           std::string_view member) {
  auto sim = std::dynamic_pointer_cast<SimMapiObject>(object);
  HostCall host_call = profile_->Faults().Check(member, sim ? sim->FaultKey() : nullptr);
  if (!sim) throw ZError(kMapiInvalidParameter, "The object is not a MAPI object");
  if (sim->message()) Profile::CheckAlive(*sim->message());
  if (sim->folder()) Profile::CheckAlive(*sim->folder());
  return *sim;
}

void SimMapiUtils::SetMAPIOBJECT(const std::shared_ptr<MapiObject>& session) {
  const SimMapiObject& sim = Resolve(session, "MapiUtils.SetMAPIOBJECT");
  if (sim.kind() != SimMapiObject::Kind::kSession) {
    throw ZError(kMapiInvalidParameter, "The object is not a MAPI session");
  }
}

int32_t SimMapiUtils::GetIDsFromNames(const std::shared_ptr<MapiObject>& object,
                                      const std::string& guid, const Value& name, bool create) {
  const SimMapiObject& sim = Resolve(object, "MapiUtils.GetIDsFromNames");
  StoreRecord* store = nullptr;
  switch (sim.kind()) {
    case SimMapiObject::Kind::kMessage:
      store = Profile::StoreOf(*sim.message());
      break;
    case SimMapiObject::Kind::kFolder:
      store = sim.folder()->store;
      break;
    case SimMapiObject::Kind::kSession:
      store = sim.profile()->DefaultStore();
      break;
  }
  if (store == nullptr) throw ZError(kMapiNotFound, "The profile has no store");
  if (guid.size() != 38 || guid.front() != '{' || guid.back() != '}') {
    throw ZError(kMapiInvalidParameter, "Invalid property set GUID: " + guid);
  }
  NamedPropKey key = name.IsNumeric() ? NamedPropMap::Key(guid, name.ToLong())
                                      : NamedPropMap::Key(guid, name.ToString());
  auto id = store->names.IdFor(key, create);
  return id ? PropTag(*id, kPtUnspecified) : 0;
}

Value SimMapiUtils::HrGetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag) {
  const SimMapiObject& sim = Resolve(object, "MapiUtils.HrGetOneProp");
  if (prop_tag == 0) return {};
  switch (sim.kind()) {
    case SimMapiObject::Kind::kMessage:
      return MessageProps::Get(*sim.message(), prop_tag);
    case SimMapiObject::Kind::kFolder:
      return FolderProperty(*sim.folder(), prop_tag);
    case SimMapiObject::Kind::kSession:
      return {};
  }
  return {};
}

void SimMapiUtils::HrSetOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                                const Value& value, bool save) {
  const SimMapiObject& sim = Resolve(object, "MapiUtils.HrSetOneProp");
  if (PropId(prop_tag) == 0) throw ZError(kMapiInvalidParameter, "Invalid property tag");
  switch (sim.kind()) {
    case SimMapiObject::Kind::kMessage:
      sim.message()->props.Set(prop_tag, value);
      if (save) sim.profile()->SaveMessage(sim.message());
      return;
    case SimMapiObject::Kind::kFolder:
      sim.folder()->props.Set(prop_tag, value);
      return;
    case SimMapiObject::Kind::kSession:
      throw ZError(kMapiNoSupport, "The session has no writable properties");
  }
}

void SimMapiUtils::HrDeleteOneProp(const std::shared_ptr<MapiObject>& object, int32_t prop_tag,
                                   bool save) {
  const SimMapiObject& sim = Resolve(object, "MapiUtils.HrDeleteOneProp");
  if (sim.kind() == SimMapiObject::Kind::kMessage) {
    sim.message()->props.Remove(PropId(prop_tag));
    if (save) sim.profile()->SaveMessage(sim.message());
  } else if (sim.kind() == SimMapiObject::Kind::kFolder) {
    sim.folder()->props.Remove(PropId(prop_tag));
  }
}

bool SimMapiUtils::CompareIDs(const std::string& entry_id1, const std::string& entry_id2) {
  HostCall host_call = profile_->Faults().Check("MapiUtils.CompareIDs", profile_);
  auto a = FromHex(entry_id1);
  auto b = FromHex(entry_id2);
  if (!a || !b || a->empty() || b->empty()) {
    throw ZError(kMapiInvalidParameter, "Invalid entry identifier");
  }
  return *a == *b;
}

void SimMapiUtils::Cleanup() {
  HostCall host_call = profile_->Faults().Check("MapiUtils.Cleanup", profile_);
}

}  // namespace zintra::sim

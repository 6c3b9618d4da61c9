#include "sim/outlook/sim_address_entry.h"

#include "sim/outlook/entry_id.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

SimAddressEntry::SimAddressEntry(Profile* profile, std::string name, std::string address,
                                 std::string type, std::string smtp)
    : profile_(profile),
      name_(std::move(name)),
      address_(std::move(address)),
      type_(std::move(type)),
      smtp_(std::move(smtp)) {}

std::shared_ptr<SimAddressEntry> SimAddressEntry::ForPerson(Profile* profile,
                                                            const Person& person) {
  if (person.IsExchange()) {
    return std::make_shared<SimAddressEntry>(profile, person.name, person.ex_dn, "EX", person.smtp);
  }
  return std::make_shared<SimAddressEntry>(profile, person.name, person.smtp, "SMTP", person.smtp);
}

std::string SimAddressEntry::Name() const {
  HostCall host_call = profile_->Faults().Check("AddressEntry.Name", this);
  return name_;
}

std::string SimAddressEntry::Address() const {
  HostCall host_call = profile_->Faults().Check("AddressEntry.Address", this);
  return address_;
}

std::string SimAddressEntry::Type() const {
  HostCall host_call = profile_->Faults().Check("AddressEntry.Type", this);
  return type_;
}

std::string SimAddressEntry::ID() const {
  HostCall host_call = profile_->Faults().Check("AddressEntry.ID", this);
  Bytes bytes(4, 0);
  for (char c : type_ + ":" + address_) bytes.push_back(static_cast<uint8_t>(c));
  return ToHex(bytes);
}

Value SimAddressEntry::Fields(int32_t prop_tag) {
  HostCall host_call = profile_->Faults().Check("AddressEntry.Fields", this);
  switch (prop_tag) {
    case kPrSmtpAddress:
      return smtp_.empty() ? Value{} : Value(smtp_);
    case kPrDisplayName:
      return Value(name_);
    case kPrAddrType:
      return Value(type_);
    case kPrEmailAddress:
      return Value(address_);
    default:
      return {};
  }
}

}  // namespace zintra::sim

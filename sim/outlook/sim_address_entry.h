// SimAddressEntry: an address entry of the simulated directory: SMTP ("SMTP", the
// address) or Exchange ("EX", the distinguished name, SMTP address in kPrSmtpAddress).
#pragma once

#include <string>

#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "src/host/mapi_address.h"

namespace zintra::sim {

class SimAddressEntry : public AddressEntry, public SimKeyed {
 public:
  SimAddressEntry(Profile* profile, std::string name, std::string address, std::string type,
                  std::string smtp);
  // The entry of a person of the directory.
  static std::shared_ptr<SimAddressEntry> ForPerson(Profile* profile, const Person& person);

  std::string TypeName() const override { return "AddressEntry"; }
  const void* FaultKey() const override { return this; }
  std::string Name() const override;
  std::string Address() const override;
  std::string Type() const override;
  std::string ID() const override;
  Value Fields(int32_t prop_tag) override;

 private:
  Profile* profile_;
  std::string name_;
  std::string address_;
  std::string type_;
  std::string smtp_;
};

}  // namespace zintra::sim

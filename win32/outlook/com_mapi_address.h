// The MAPI library's address entries and lists over their automation objects.
#pragma once

#include "src/host/mapi_address.h"
#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

class ComAddressEntry final : public AddressEntry, public ComAdapter {
 public:
  explicit ComAddressEntry(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "AddressEntry")) {}
  std::string TypeName() const override { return "AddressEntry"; }
  std::string Name() const override { return Text("Name"); }
  std::string Address() const override { return Text("Address"); }
  std::string Type() const override { return Text("Type"); }
  std::string ID() const override { return Text("ID"); }
  Value Fields(int32_t prop_tag) override {
    return client_.GetValue("Fields", {Arg(Value(prop_tag))});
  }
};

class ComAddressList final : public AddressList, public ComAdapter {
 public:
  explicit ComAddressList(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "AddressList")) {}
  std::string TypeName() const override { return "AddressList"; }
  std::string Name() const override { return Text("Name"); }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<AddressEntry> Item(int32_t index) override;
};

class ComAddressLists final : public AddressLists, public ComAdapter {
 public:
  explicit ComAddressLists(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "AddressLists")) {}
  std::string TypeName() const override { return "AddressLists"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<AddressList> Item(int32_t index) override;
};

}  // namespace zintra::win32

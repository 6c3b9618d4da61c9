#include "win32/outlook/com_mapi_address.h"

#include "win32/outlook/adapter_cache.h"
#include "win32/outlook/wrap.h"

namespace zintra::win32 {

std::shared_ptr<AddressEntry> ComAddressList::Item(int32_t index) {
  return Wrap<AddressEntry>(ObjectMember("Item", {Arg(Value(index))}));
}

std::shared_ptr<AddressList> ComAddressLists::Item(int32_t index) {
  return Wrap<AddressList>(ObjectMember("Item", {Arg(Value(index))}));
}

template <>
std::shared_ptr<AddressEntry> Wrap<AddressEntry>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<AddressEntry, ComAddressEntry>(o);
}
template <>
std::shared_ptr<AddressList> Wrap<AddressList>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<AddressList, ComAddressList>(o);
}
template <>
std::shared_ptr<AddressLists> Wrap<AddressLists>(const ComPtr<IDispatch>& o) {
  return AdapterCache::Get<AddressLists, ComAddressLists>(o);
}

}  // namespace zintra::win32

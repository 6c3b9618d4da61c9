// AdapterCache: one adapter per automation object while that adapter lives, so that an
// object reached twice (an explorer from Explorers.Item and from its Close event, the
// application from two members) is the same port object and compares equal by identity.
//
// An object's identity is its IUnknown pointer, as COM defines it. The cache remembers
// adapters weakly: it never keeps an adapter, nor the object behind it, alive; an
// adapter's entry goes when the adapter dies. The key also names the port, so an object
// seen as two ports has an adapter per port. An object that does not answer IUnknown
// gets a new adapter each time. Safe to call from any thread.
#pragma once

#include <cstddef>
#include <memory>
#include <typeindex>
#include <utility>

#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class AdapterCache {
 public:
  // The live `Port` adapter of `object`, else a new `Adapter(object)`; nullptr for nullptr.
  template <typename Port, typename Adapter>
  static std::shared_ptr<Port> Get(const ComPtr<IDispatch>& object);

  // Adapters remembered now (they are all alive).
  static size_t Size();

 private:
  using Key = std::pair<IUnknown*, std::type_index>;

  // The object's IUnknown pointer; nullptr when it does not answer for it.
  static IUnknown* IdentityOf(IDispatch* object);
  static std::shared_ptr<void> Find(const Key& key);
  static void Remember(const Key& key, const std::shared_ptr<void>& adapter);
  // Drops the entry of `key` when it is still `adapter`'s.
  static void Forget(const Key& key, const void* adapter);
};

template <typename Port, typename Adapter>
std::shared_ptr<Port> AdapterCache::Get(const ComPtr<IDispatch>& object) {
  if (!object) return nullptr;
  IUnknown* identity = IdentityOf(object.Get());
  if (!identity) return std::make_shared<Adapter>(object);
  Key key{identity, std::type_index(typeid(Port))};
  if (std::shared_ptr<void> found = Find(key)) return std::static_pointer_cast<Port>(found);
  // The adapter holds the object, so its identity cannot be reused while the entry stands.
  std::shared_ptr<Port> made(new Adapter(object), [key](Adapter* adapter) {
    Forget(key, static_cast<Port*>(adapter));
    delete adapter;
  });
  Remember(key, made);
  return made;
}

}  // namespace zintra::win32

#include "win32/outlook/adapter_cache.h"

#include <map>
#include <mutex>

namespace zintra::win32 {
namespace {

struct Entry {
  std::weak_ptr<void> adapter;
  const void* raw;  // which adapter the entry is for, readable after it expired
};

struct Cache {
  std::mutex mutex;
  std::map<std::pair<IUnknown*, std::type_index>, Entry> entries;
};

// Never destroyed: an adapter the host still holds when the module's statics go may
// die later and look its entry up.
Cache& TheCache() {
  static Cache* cache = new Cache;
  return *cache;
}

}  // namespace

IUnknown* AdapterCache::IdentityOf(IDispatch* object) {
  IUnknown* identity = nullptr;
  if (FAILED(object->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity))) ||
      !identity) {
    return nullptr;
  }
  // The caller's reference keeps the object, and so this pointer, alive.
  identity->Release();
  return identity;
}

std::shared_ptr<void> AdapterCache::Find(const Key& key) {
  Cache& cache = TheCache();
  std::lock_guard<std::mutex> lock(cache.mutex);
  auto it = cache.entries.find(key);
  // An expired entry belongs to an adapter being destroyed: it forgets itself.
  return it == cache.entries.end() ? nullptr : it->second.adapter.lock();
}

void AdapterCache::Remember(const Key& key, const std::shared_ptr<void>& adapter) {
  Cache& cache = TheCache();
  std::lock_guard<std::mutex> lock(cache.mutex);
  cache.entries.insert_or_assign(key, Entry{adapter, adapter.get()});
}

void AdapterCache::Forget(const Key& key, const void* adapter) {
  Cache& cache = TheCache();
  std::lock_guard<std::mutex> lock(cache.mutex);
  auto it = cache.entries.find(key);
  if (it != cache.entries.end() && it->second.raw == adapter) cache.entries.erase(it);
}

size_t AdapterCache::Size() {
  Cache& cache = TheCache();
  std::lock_guard<std::mutex> lock(cache.mutex);
  return cache.entries.size();
}

}  // namespace zintra::win32

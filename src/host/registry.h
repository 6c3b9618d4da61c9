// Registry: the platform's hierarchical configuration store, one call per Win32
// registry function (the "A" forms: names and string data in the system code page).
// Every member answers a Win32 error code instead of throwing: kRegSuccess, or for
// example kRegFileNotFound for a missing key or value and kRegAccessDenied for a key the
// caller may not open, write or delete. Handles returned by OpenKey/CreateKey belong to
// the caller, who closes each with CloseKey, by holding it in a UniqueKey; the two
// predefined hives are never closed (closing them is a no-op). Called only on the
// user-interface thread.
#pragma once

#include <cstdint>
#include <string>

#include "src/core/unique_handle.h"

namespace zintra {

using HKey = uintptr_t;  // an open key or a predefined hive; 0 is no key

inline constexpr HKey kHKeyCurrentUser = 0x80000001;
inline constexpr HKey kHKeyLocalMachine = 0x80000002;

// Win32 error codes the registry answers with.
inline constexpr int32_t kRegSuccess = 0;
inline constexpr int32_t kRegFileNotFound = 2;
inline constexpr int32_t kRegAccessDenied = 5;
inline constexpr int32_t kRegInvalidHandle = 6;
inline constexpr int32_t kRegInvalidParameter = 87;
inline constexpr int32_t kRegMoreData = 234;
inline constexpr int32_t kRegNoMoreItems = 259;
inline constexpr int32_t kRegKeyDeleted = 1018;

// Access rights.
inline constexpr uint32_t kKeyQueryValue = 0x0001;
inline constexpr uint32_t kKeySetValue = 0x0002;
inline constexpr uint32_t kKeyCreateSubKey = 0x0004;
inline constexpr uint32_t kKeyEnumerateSubKeys = 0x0008;
inline constexpr uint32_t kKeyRead = 0x20019;
inline constexpr uint32_t kKeyWrite = 0x20006;
inline constexpr uint32_t kKeyAllAccess = 0xF003F;

// Value types.
inline constexpr uint32_t kRegNone = 0;
inline constexpr uint32_t kRegSz = 1;
inline constexpr uint32_t kRegExpandSz = 2;
inline constexpr uint32_t kRegBinary = 3;
inline constexpr uint32_t kRegDword = 4;
inline constexpr uint32_t kRegMultiSz = 7;
inline constexpr uint32_t kRegQword = 11;

// What RegQueryInfoKeyA reports; lengths in characters without the terminating zero.
struct RegistryKeyInfo {
  uint32_t sub_keys = 0;
  uint32_t max_sub_key_len = 0;
  uint32_t values = 0;
  uint32_t max_value_name_len = 0;
  uint32_t max_value_len = 0;  // bytes
};

class Registry {
 public:
  virtual ~Registry() = default;

  // RegOpenKeyExA: opens parent\sub_key ("" opens parent again) with `access`.
  virtual int32_t OpenKey(HKey parent, const std::string& sub_key, uint32_t access,
                          HKey* result) = 0;
  // RegCreateKeyExA: opens or creates parent\sub_key and any missing keys on the way;
  // *created (may be null) says whether the last key was new.
  virtual int32_t CreateKey(HKey parent, const std::string& sub_key, uint32_t access, HKey* result,
                            bool* created) = 0;
  // RegQueryValueExA. `name` "" is the key's default value. *size is the capacity of
  // `data` in bytes on entry (data may be null to ask the size only) and the value's size
  // on return; a value that does not fit answers kRegMoreData with *size its length.
  // String data counts its terminating zero. `type` may be null.
  virtual int32_t QueryValue(HKey key, const std::string& name, uint32_t* type, uint8_t* data,
                             uint32_t* size) = 0;
  // RegSetValueExA: stores `size` bytes of `data` as a value of `type`.
  virtual int32_t SetValue(HKey key, const std::string& name, uint32_t type, const uint8_t* data,
                           uint32_t size) = 0;
  // RegDeleteValueA.
  virtual int32_t DeleteValue(HKey key, const std::string& name) = 0;
  // RegDeleteKeyA: deletes parent\sub_key; a key that still has subkeys cannot be deleted
  // and answers kRegAccessDenied.
  virtual int32_t DeleteKey(HKey parent, const std::string& sub_key) = 0;
  // RegEnumKeyExA: the name of subkey number `index` (from 0; kRegNoMoreItems past the
  // end). *name_size is the buffer capacity in characters including the terminating zero
  // on entry and the name's length on return (also when a longer name answers
  // kRegMoreData, so the caller can ask again with room for it).
  virtual int32_t EnumKey(HKey key, uint32_t index, std::string* name, uint32_t* name_size) = 0;
  // RegEnumValueA: the name and type of value number `index`, as EnumKey.
  virtual int32_t EnumValue(HKey key, uint32_t index, std::string* name, uint32_t* name_size,
                            uint32_t* type) = 0;
  // RegQueryInfoKeyA.
  virtual int32_t QueryInfoKey(HKey key, RegistryKeyInfo* info) = 0;
  // RegCloseKey.
  virtual int32_t CloseKey(HKey key) = 0;
};

// An open key of a Registry, closed through the registry that opened it.
struct RegistryKeyTraits {
  using Handle = HKey;
  static HKey Invalid() noexcept { return 0; }
  void Close(HKey key) const noexcept { static_cast<void>(registry->CloseKey(key)); }
  Registry* registry = nullptr;
};
using UniqueKey = UniqueHandle<RegistryKeyTraits>;

// Registry::OpenKey into an owner (which owns nothing when the open fails).
inline int32_t OpenKey(Registry& registry, HKey parent, const std::string& sub_key, uint32_t access,
                       UniqueKey* key) {
  *key = UniqueKey(0, RegistryKeyTraits{&registry});
  return registry.OpenKey(parent, sub_key, access, key->put());
}
// Registry::CreateKey into an owner.
inline int32_t CreateKey(Registry& registry, HKey parent, const std::string& sub_key,
                         uint32_t access, UniqueKey* key, bool* created = nullptr) {
  *key = UniqueKey(0, RegistryKeyTraits{&registry});
  return registry.CreateKey(parent, sub_key, access, key->put(), created);
}

}  // namespace zintra

#include "win32/ports/win32_registry.h"

#include <vector>

namespace zintra::win32 {
namespace {

// Longest names the registry allows, in characters without the terminating zero.
constexpr DWORD kMaxKeyNameChars = 255;
constexpr DWORD kMaxValueNameChars = 16383;

int32_t Code(LSTATUS status) { return static_cast<int32_t>(status); }

}  // namespace

HKEY Win32Registry::Native(HKey key) const {
  if (key == kHKeyCurrentUser) return HKEY_CURRENT_USER;
  if (key == kHKeyLocalMachine) return HKEY_LOCAL_MACHINE;
  auto it = keys_.find(key);
  return it == keys_.end() ? nullptr : it->second.get();
}

HKey Win32Registry::Adopt(HKEY native) {
  HKey handle = next_handle_;
  next_handle_ += 4;
  keys_[handle].reset(native);
  return handle;
}

int32_t Win32Registry::OpenKey(HKey parent, const std::string& sub_key, uint32_t access,
                               HKey* result) {
  HKEY native = Native(parent);
  if (native == nullptr) return kRegInvalidHandle;
  HKEY opened = nullptr;
  LSTATUS status = RegOpenKeyExA(native, sub_key.c_str(), 0, access, &opened);
  if (status != ERROR_SUCCESS) return Code(status);
  *result = Adopt(opened);
  return kRegSuccess;
}

int32_t Win32Registry::CreateKey(HKey parent, const std::string& sub_key, uint32_t access,
                                 HKey* result, bool* created) {
  HKEY native = Native(parent);
  if (native == nullptr) return kRegInvalidHandle;
  HKEY opened = nullptr;
  DWORD disposition = 0;
  LSTATUS status = RegCreateKeyExA(native, sub_key.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE,
                                   access, nullptr, &opened, &disposition);
  if (status != ERROR_SUCCESS) return Code(status);
  *result = Adopt(opened);
  if (created != nullptr) *created = disposition == REG_CREATED_NEW_KEY;
  return kRegSuccess;
}

int32_t Win32Registry::QueryValue(HKey key, const std::string& name, uint32_t* type, uint8_t* data,
                                  uint32_t* size) {
  HKEY native = Native(key);
  if (native == nullptr) return kRegInvalidHandle;
  if (size == nullptr) return kRegInvalidParameter;
  DWORD value_type = 0;
  DWORD bytes = *size;
  LSTATUS status = RegQueryValueExA(native, name.c_str(), nullptr, &value_type, data, &bytes);
  if (status == ERROR_SUCCESS || status == ERROR_MORE_DATA) {
    *size = bytes;
    if (type != nullptr) *type = value_type;
  }
  return Code(status);
}

int32_t Win32Registry::SetValue(HKey key, const std::string& name, uint32_t type,
                                const uint8_t* data, uint32_t size) {
  HKEY native = Native(key);
  if (native == nullptr) return kRegInvalidHandle;
  return Code(RegSetValueExA(native, name.c_str(), 0, type, data, size));
}

int32_t Win32Registry::DeleteValue(HKey key, const std::string& name) {
  HKEY native = Native(key);
  if (native == nullptr) return kRegInvalidHandle;
  return Code(RegDeleteValueA(native, name.c_str()));
}

int32_t Win32Registry::DeleteKey(HKey parent, const std::string& sub_key) {
  HKEY native = Native(parent);
  if (native == nullptr) return kRegInvalidHandle;
  // Deleting the hive itself, or the parent through an empty name, is never meant.
  if (sub_key.empty()) return kRegInvalidParameter;
  return Code(RegDeleteKeyA(native, sub_key.c_str()));
}

// The platform leaves the length unchanged when a name does not fit, so the name is
// always read into a buffer large enough for any name and measured against the caller's.
int32_t Win32Registry::EnumKey(HKey key, uint32_t index, std::string* name, uint32_t* name_size) {
  HKEY native = Native(key);
  if (native == nullptr) return kRegInvalidHandle;
  std::vector<char> buffer(kMaxKeyNameChars + 1);
  DWORD length = static_cast<DWORD>(buffer.size());
  LSTATUS status =
      RegEnumKeyExA(native, index, buffer.data(), &length, nullptr, nullptr, nullptr, nullptr);
  if (status != ERROR_SUCCESS) return Code(status);
  const uint32_t capacity = *name_size;
  *name_size = length;
  if (length + 1 > capacity) return kRegMoreData;
  name->assign(buffer.data(), length);
  return kRegSuccess;
}

int32_t Win32Registry::EnumValue(HKey key, uint32_t index, std::string* name, uint32_t* name_size,
                                 uint32_t* type) {
  HKEY native = Native(key);
  if (native == nullptr) return kRegInvalidHandle;
  std::vector<char> buffer(kMaxValueNameChars + 1);
  DWORD length = static_cast<DWORD>(buffer.size());
  DWORD value_type = 0;
  LSTATUS status =
      RegEnumValueA(native, index, buffer.data(), &length, nullptr, &value_type, nullptr, nullptr);
  if (status != ERROR_SUCCESS) return Code(status);
  const uint32_t capacity = *name_size;
  *name_size = length;
  if (length + 1 > capacity) return kRegMoreData;
  name->assign(buffer.data(), length);
  if (type != nullptr) *type = value_type;
  return kRegSuccess;
}

int32_t Win32Registry::QueryInfoKey(HKey key, RegistryKeyInfo* info) {
  HKEY native = Native(key);
  if (native == nullptr) return kRegInvalidHandle;
  DWORD sub_keys = 0, max_sub_key_len = 0, values = 0, max_value_name_len = 0, max_value_len = 0;
  LSTATUS status =
      RegQueryInfoKeyA(native, nullptr, nullptr, nullptr, &sub_keys, &max_sub_key_len, nullptr,
                       &values, &max_value_name_len, &max_value_len, nullptr, nullptr);
  if (status != ERROR_SUCCESS) return Code(status);
  *info = RegistryKeyInfo{sub_keys, max_sub_key_len, values, max_value_name_len, max_value_len};
  return kRegSuccess;
}

int32_t Win32Registry::CloseKey(HKey key) {
  if (key == kHKeyCurrentUser || key == kHKeyLocalMachine) return kRegSuccess;
  auto it = keys_.find(key);
  if (it == keys_.end()) return kRegInvalidHandle;
  // Closing a key this object opened cannot fail: RegCloseKey refuses only foreign handles.
  keys_.erase(it);
  return kRegSuccess;
}

}  // namespace zintra::win32

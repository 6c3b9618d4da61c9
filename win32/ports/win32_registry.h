// Win32Registry: the Registry port over advapi32's ANSI registry functions. Keys opened
// through it are handed out as small numbers of its own (never the platform's HKEY), so
// a stale or foreign handle answers kRegInvalidHandle instead of touching another key;
// the two predefined hives map to HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE. The object
// owns every key it opened: keys the caller forgets to close are closed when it is
// destroyed. Error codes are the platform's own, passed through unchanged.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "src/host/registry.h"
#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class Win32Registry : public Registry {
 public:
  Win32Registry() = default;
  Win32Registry(const Win32Registry&) = delete;
  Win32Registry& operator=(const Win32Registry&) = delete;

  int32_t OpenKey(HKey parent, const std::string& sub_key, uint32_t access, HKey* result) override;
  int32_t CreateKey(HKey parent, const std::string& sub_key, uint32_t access, HKey* result,
                    bool* created) override;
  int32_t QueryValue(HKey key, const std::string& name, uint32_t* type, uint8_t* data,
                     uint32_t* size) override;
  int32_t SetValue(HKey key, const std::string& name, uint32_t type, const uint8_t* data,
                   uint32_t size) override;
  int32_t DeleteValue(HKey key, const std::string& name) override;
  int32_t DeleteKey(HKey parent, const std::string& sub_key) override;
  int32_t EnumKey(HKey key, uint32_t index, std::string* name, uint32_t* name_size) override;
  int32_t EnumValue(HKey key, uint32_t index, std::string* name, uint32_t* name_size,
                    uint32_t* type) override;
  int32_t QueryInfoKey(HKey key, RegistryKeyInfo* info) override;
  int32_t CloseKey(HKey key) override;

  // How many keys are open (not counting the hives).
  size_t OpenKeyCount() const { return keys_.size(); }

 private:
  // The platform key behind `key`, or nullptr for a handle this object did not give out.
  HKEY Native(HKey key) const;
  HKey Adopt(HKEY native);

  std::map<HKey, UniqueHKey> keys_;
  HKey next_handle_ = 0x1000;
};

}  // namespace zintra::win32

// modRegistry: the registry calls the settings need, over the Registry port. Each call
// takes a hive, a key path below it and (for values) a value name; every key opened is
// closed before the call returns. A missing key or value is reported through
// *not_found, never as an error; any other failure (access denied, a value of the
// wrong type or size) throws ZError whose number is the Win32 code, or kErrTypeMismatch
// (13) for a malformed value, with a description naming the key and value.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "src/host/registry.h"

namespace zintra::modRegistry {

// Longest string a read returns, in characters (the read buffer's size).
inline constexpr uint32_t kStringBufferSize = 2000;

// "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE", or the handle in hexadecimal.
std::string HiveName(HKey hive);

// Opens hive\key_path with `access` into *key, creating missing keys when `create`; the
// Win32 code.
int32_t OpenKey(Registry& registry, HKey hive, const std::string& key_path, uint32_t access,
                bool create, UniqueKey* key);

// A REG_SZ or REG_EXPAND_SZ value; "" and *not_found when the key or value is missing.
std::string ReadString(Registry& registry, HKey hive, const std::string& key_path,
                       const std::string& name, bool* not_found);
// A REG_DWORD value; 0 and *not_found when the key or value is missing.
uint32_t ReadDword(Registry& registry, HKey hive, const std::string& key_path,
                   const std::string& name, bool* not_found);
// Write a REG_SZ / REG_DWORD value, creating the key when missing.
void WriteString(Registry& registry, HKey hive, const std::string& key_path,
                 const std::string& name, const std::string& value);
void WriteDword(Registry& registry, HKey hive, const std::string& key_path, const std::string& name,
                uint32_t value);
// Removes one value; *not_found when it (or its key) was not there.
void DeleteValue(Registry& registry, HKey hive, const std::string& key_path,
                 const std::string& name, bool* not_found);
// Removes a key with all its subkeys: when the plain delete is refused (as for a key
// with subkeys), the subkeys are deleted first and the delete is retried.
void DeleteKey(Registry& registry, HKey hive, const std::string& key_path, bool* not_found);
// Whether the key is there: true when it opens for reading or is refused (access
// denied); false when it is missing or the open fails otherwise. Never throws.
bool KeyExists(Registry& registry, HKey hive, const std::string& key_path);
// Whether the key exists and opens for writing. Never throws.
bool KeyWritable(Registry& registry, HKey hive, const std::string& key_path);
// The names of an open key's subkeys (query info, then enumerate).
std::vector<std::string> SubKeyNames(Registry& registry, HKey key);

}  // namespace zintra::modRegistry

#include "src/settings/mod_registry.h"

#include <cstdio>

#include "src/core/z_error.h"

namespace zintra::modRegistry {

namespace {

std::string Where(HKey hive, const std::string& key_path, const std::string& name) {
  std::string where = HiveName(hive) + "\\" + key_path;
  if (!name.empty()) where += "\\" + name;
  return "'" + where + "'";
}

[[noreturn]] void Fail(int32_t code, const std::string& action, HKey hive,
                       const std::string& key_path, const std::string& name) {
  throw ZError(
      code,
      "Registry error " + std::to_string(code) + " " + action + " " + Where(hive, key_path, name),
      "modRegistry", {}, 0, code);
}

// Opens the key for a value read; false when the key is missing.
bool OpenForRead(Registry& registry, HKey hive, const std::string& key_path,
                 const std::string& name, UniqueKey* key) {
  int32_t rc = OpenKey(registry, hive, key_path, kKeyRead, false, key);
  if (rc == kRegFileNotFound) return false;
  if (rc != kRegSuccess) Fail(rc, "opening", hive, key_path, name);
  return true;
}

}  // namespace

std::string HiveName(HKey hive) {
  if (hive == kHKeyCurrentUser) return "HKEY_CURRENT_USER";
  if (hive == kHKeyLocalMachine) return "HKEY_LOCAL_MACHINE";
  char buffer[32];
  std::snprintf(buffer, sizeof buffer, "0x%llX", static_cast<unsigned long long>(hive));
  return buffer;
}

int32_t OpenKey(Registry& registry, HKey hive, const std::string& key_path, uint32_t access,
                bool create, UniqueKey* key) {
  if (create) return zintra::CreateKey(registry, hive, key_path, access, key);
  return zintra::OpenKey(registry, hive, key_path, access, key);
}

std::string ReadString(Registry& registry, HKey hive, const std::string& key_path,
                       const std::string& name, bool* not_found) {
  *not_found = false;
  UniqueKey key;
  if (!OpenForRead(registry, hive, key_path, name, &key)) {
    *not_found = true;
    return {};
  }
  std::string buffer(kStringBufferSize, '\0');
  uint32_t type = kRegNone;
  uint32_t size = kStringBufferSize;
  int32_t rc =
      registry.QueryValue(key.get(), name, &type, reinterpret_cast<uint8_t*>(buffer.data()), &size);
  if (rc == kRegFileNotFound) {
    *not_found = true;
    return {};
  }
  if (rc != kRegSuccess) Fail(rc, "reading", hive, key_path, name);
  if (type != kRegSz && type != kRegExpandSz) {
    throw ZError(kErrTypeMismatch,
                 "Registry value " + Where(hive, key_path, name) + " is of type " +
                     std::to_string(type) + ", not a string",
                 "modRegistry");
  }
  buffer.resize(size);
  // The returned length counts the terminating zero; a value stored without one keeps
  // all its characters.
  if (!buffer.empty() && buffer.back() == '\0') buffer.pop_back();
  return buffer;
}

uint32_t ReadDword(Registry& registry, HKey hive, const std::string& key_path,
                   const std::string& name, bool* not_found) {
  *not_found = false;
  UniqueKey key;
  if (!OpenForRead(registry, hive, key_path, name, &key)) {
    *not_found = true;
    return 0;
  }
  uint8_t data[4] = {};
  uint32_t type = kRegNone;
  uint32_t size = sizeof data;
  int32_t rc = registry.QueryValue(key.get(), name, &type, data, &size);
  if (rc == kRegFileNotFound) {
    *not_found = true;
    return 0;
  }
  if (rc == kRegMoreData || (rc == kRegSuccess && (type != kRegDword || size != 4))) {
    throw ZError(kErrTypeMismatch,
                 "Registry value " + Where(hive, key_path, name) + " is of type " +
                     std::to_string(type) + " and " + std::to_string(size) +
                     " bytes long, not a DWORD",
                 "modRegistry");
  }
  if (rc != kRegSuccess) Fail(rc, "reading", hive, key_path, name);
  return static_cast<uint32_t>(data[0]) | static_cast<uint32_t>(data[1]) << 8 |
         static_cast<uint32_t>(data[2]) << 16 | static_cast<uint32_t>(data[3]) << 24;
}

namespace {

void WriteValue(Registry& registry, HKey hive, const std::string& key_path, const std::string& name,
                uint32_t type, const uint8_t* data, uint32_t size) {
  UniqueKey key;
  int32_t rc = OpenKey(registry, hive, key_path, kKeyWrite, true, &key);
  if (rc != kRegSuccess) Fail(rc, "opening for writing", hive, key_path, name);
  rc = registry.SetValue(key.get(), name, type, data, size);
  if (rc != kRegSuccess) Fail(rc, "writing", hive, key_path, name);
}

}  // namespace

void WriteString(Registry& registry, HKey hive, const std::string& key_path,
                 const std::string& name, const std::string& value) {
  WriteValue(registry, hive, key_path, name, kRegSz,
             reinterpret_cast<const uint8_t*>(value.c_str()),
             static_cast<uint32_t>(value.size() + 1));
}

void WriteDword(Registry& registry, HKey hive, const std::string& key_path, const std::string& name,
                uint32_t value) {
  const uint8_t data[4] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8),
                           static_cast<uint8_t>(value >> 16), static_cast<uint8_t>(value >> 24)};
  WriteValue(registry, hive, key_path, name, kRegDword, data, 4);
}

void DeleteValue(Registry& registry, HKey hive, const std::string& key_path,
                 const std::string& name, bool* not_found) {
  *not_found = false;
  UniqueKey key;
  int32_t rc = OpenKey(registry, hive, key_path, kKeyWrite, false, &key);
  if (rc == kRegFileNotFound) {
    *not_found = true;
    return;
  }
  if (rc != kRegSuccess) Fail(rc, "opening for writing", hive, key_path, name);
  rc = registry.DeleteValue(key.get(), name);
  if (rc == kRegFileNotFound) {
    *not_found = true;
    return;
  }
  if (rc != kRegSuccess) Fail(rc, "deleting", hive, key_path, name);
}

std::vector<std::string> SubKeyNames(Registry& registry, HKey key) {
  RegistryKeyInfo info;
  int32_t rc = registry.QueryInfoKey(key, &info);
  if (rc != kRegSuccess) {
    throw ZError(rc, "Registry error " + std::to_string(rc) + " querying a key", "modRegistry", {},
                 0, rc);
  }
  std::vector<std::string> names;
  for (uint32_t index = 0; index < info.sub_keys; ++index) {
    std::string name;
    uint32_t capacity = 40;
    rc = registry.EnumKey(key, index, &name, &capacity);
    if (rc == kRegMoreData) {
      // A name longer than the usual buffer: ask again with room for it.
      capacity += 1;
      rc = registry.EnumKey(key, index, &name, &capacity);
    }
    if (rc == kRegNoMoreItems) break;
    if (rc != kRegSuccess) {
      throw ZError(rc, "Registry error " + std::to_string(rc) + " enumerating a key", "modRegistry",
                   {}, 0, rc);
    }
    names.push_back(name);
  }
  return names;
}

void DeleteKey(Registry& registry, HKey hive, const std::string& key_path, bool* not_found) {
  *not_found = false;
  int32_t rc = registry.DeleteKey(hive, key_path);
  if (rc == kRegFileNotFound) {
    *not_found = true;
    return;
  }
  if (rc == kRegAccessDenied) {
    UniqueKey key;
    int32_t open_rc = OpenKey(registry, hive, key_path, kKeyAllAccess, false, &key);
    if (open_rc != kRegSuccess) Fail(rc, "deleting", hive, key_path, {});
    // The key is closed before its subkeys go, as a key being deleted cannot be open.
    std::vector<std::string> names = SubKeyNames(registry, key.get());
    key.reset();
    if (names.empty()) Fail(rc, "deleting", hive, key_path, {});
    for (const std::string& name : names) {
      bool sub_not_found = false;
      DeleteKey(registry, hive, key_path + "\\" + name, &sub_not_found);
    }
    rc = registry.DeleteKey(hive, key_path);
  }
  if (rc != kRegSuccess) Fail(rc, "deleting", hive, key_path, {});
}

bool KeyExists(Registry& registry, HKey hive, const std::string& key_path) {
  UniqueKey key;
  int32_t rc = OpenKey(registry, hive, key_path, kKeyRead, false, &key);
  // A key the user may not read is still there.
  return rc == kRegSuccess || rc == kRegAccessDenied;
}

bool KeyWritable(Registry& registry, HKey hive, const std::string& key_path) {
  if (!KeyExists(registry, hive, key_path)) return false;
  UniqueKey key;
  int32_t rc = OpenKey(registry, hive, key_path, kKeyWrite, false, &key);
  return rc == kRegSuccess;
}

}  // namespace zintra::modRegistry

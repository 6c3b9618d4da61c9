// The registry adapter against the platform's registry (under Wine, the test prefix's).
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "src/core/z_error.h"
#include "src/settings/mod_registry.h"
#include "win32/com/windows_api.h"
#include "win32/ports/win32_registry.h"

#include <sddl.h>

namespace zintra::win32 {
namespace {

constexpr char kTestRoot[] = "Software\\ZintraPortsTest";

class RegistryTest : public ::testing::Test {
 protected:
  void SetUp() override {
    bool not_found = false;
    modRegistry::DeleteKey(registry_, kHKeyCurrentUser, kTestRoot, &not_found);
    ASSERT_EQ(registry_.CreateKey(kHKeyCurrentUser, kTestRoot, kKeyAllAccess, &root_, nullptr),
              kRegSuccess);
  }
  void TearDown() override {
    registry_.CloseKey(root_);
    bool not_found = false;
    modRegistry::DeleteKey(registry_, kHKeyCurrentUser, kTestRoot, &not_found);
    EXPECT_EQ(registry_.OpenKeyCount(), 0u) << "a key was left open";
  }

  std::vector<uint8_t> Read(HKey key, const std::string& name, uint32_t* type) {
    uint32_t size = 0;
    EXPECT_EQ(registry_.QueryValue(key, name, type, nullptr, &size), kRegSuccess);
    std::vector<uint8_t> data(size);
    EXPECT_EQ(registry_.QueryValue(key, name, type, data.data(), &size), kRegSuccess);
    data.resize(size);
    return data;
  }

  Win32Registry registry_;
  HKey root_ = 0;
};

struct TypedValue {
  const char* label;
  uint32_t type;
  std::vector<uint8_t> data;
};

std::vector<uint8_t> Bytes(const char* text, size_t size) {
  return std::vector<uint8_t>(text, text + size);
}

TEST_F(RegistryTest, EveryValueTypeRoundTripsByteForByte) {
  const std::vector<TypedValue> values = {
      {"sz", kRegSz, Bytes("Caf\xe9 \\ path", 12)},
      {"expand", kRegExpandSz, Bytes("%TEMP%\\x", 9)},
      {"binary", kRegBinary, {0x00, 0xFF, 0x10, 0x00, 0x7F}},
      {"dword", kRegDword, {0x78, 0x56, 0x34, 0x12}},
      {"multi", kRegMultiSz, Bytes("one\0two\0\0", 9)},
      {"qword", kRegQword, {1, 2, 3, 4, 5, 6, 7, 8}},
      {"", kRegSz, Bytes("default value", 14)},
      {"empty", kRegBinary, {}},
  };
  for (const TypedValue& value : values) {
    ASSERT_EQ(registry_.SetValue(root_, value.label, value.type, value.data.data(),
                                 static_cast<uint32_t>(value.data.size())),
              kRegSuccess)
        << value.label;
  }
  for (const TypedValue& value : values) {
    uint32_t type = 99;
    EXPECT_EQ(Read(root_, value.label, &type), value.data) << value.label;
    EXPECT_EQ(type, value.type) << value.label;
  }
}

TEST_F(RegistryTest, QueryAnswersMoreDataWithTheSizeNeeded) {
  const std::string text = "a value longer than eight bytes";
  ASSERT_EQ(registry_.SetValue(root_, "v", kRegSz, reinterpret_cast<const uint8_t*>(text.c_str()),
                               static_cast<uint32_t>(text.size() + 1)),
            kRegSuccess);
  uint8_t small[8];
  uint32_t size = sizeof(small);
  EXPECT_EQ(registry_.QueryValue(root_, "v", nullptr, small, &size), kRegMoreData);
  EXPECT_EQ(size, text.size() + 1);

  uint32_t type = 0;
  size = 0;
  EXPECT_EQ(registry_.QueryValue(root_, "missing", &type, nullptr, &size), kRegFileNotFound);
  EXPECT_EQ(registry_.DeleteValue(root_, "v"), kRegSuccess);
  EXPECT_EQ(registry_.DeleteValue(root_, "v"), kRegFileNotFound);
}

TEST_F(RegistryTest, CreateReportsNewKeysAndMakesTheWholePath) {
  HKey key = 0;
  bool created = false;
  ASSERT_EQ(registry_.CreateKey(root_, "a\\b\\c", kKeyAllAccess, &key, &created), kRegSuccess);
  EXPECT_TRUE(created);
  EXPECT_EQ(registry_.CloseKey(key), kRegSuccess);
  ASSERT_EQ(registry_.CreateKey(root_, "A\\B\\C", kKeyRead, &key, &created), kRegSuccess);
  EXPECT_FALSE(created) << "names compare without letter case";
  EXPECT_EQ(registry_.CloseKey(key), kRegSuccess);

  EXPECT_EQ(registry_.OpenKey(root_, "a\\missing", kKeyRead, &key), kRegFileNotFound);
  EXPECT_EQ(registry_.OpenKey(root_, "", kKeyRead, &key), kRegSuccess) << "reopens the parent";
  EXPECT_EQ(registry_.CloseKey(key), kRegSuccess);
}

TEST_F(RegistryTest, EnumerationReportsNamesTypesAndLengthsOfNamesThatDoNotFit) {
  HKey key = 0;
  for (const char* name : {"short", "a much longer subkey name"}) {
    ASSERT_EQ(registry_.CreateKey(root_, name, kKeyRead, &key, nullptr), kRegSuccess);
    registry_.CloseKey(key);
  }
  const uint32_t dword = 7;
  registry_.SetValue(root_, "count", kRegDword, reinterpret_cast<const uint8_t*>(&dword), 4);
  registry_.SetValue(root_, "a rather long value name", kRegBinary, nullptr, 0);

  RegistryKeyInfo info;
  ASSERT_EQ(registry_.QueryInfoKey(root_, &info), kRegSuccess);
  EXPECT_EQ(info.sub_keys, 2u);
  EXPECT_EQ(info.max_sub_key_len, 25u);
  EXPECT_EQ(info.values, 2u);
  EXPECT_EQ(info.max_value_name_len, 24u);
  EXPECT_EQ(info.max_value_len, 4u);

  std::vector<std::string> keys;
  for (uint32_t index = 0;; ++index) {
    std::string name;
    uint32_t name_size = 10;
    int32_t rc = registry_.EnumKey(root_, index, &name, &name_size);
    if (rc == kRegNoMoreItems) break;
    if (rc == kRegMoreData) {
      EXPECT_EQ(name_size, 25u);
      name_size += 1;
      rc = registry_.EnumKey(root_, index, &name, &name_size);
    }
    ASSERT_EQ(rc, kRegSuccess);
    EXPECT_EQ(name_size, name.size());
    keys.push_back(name);
  }
  EXPECT_EQ(keys, (std::vector<std::string>{"a much longer subkey name", "short"}));
  EXPECT_EQ(modRegistry::SubKeyNames(registry_, root_), keys);

  // The order of values is the platform's own; names that do not fit report their length.
  std::map<std::string, uint32_t> types;
  std::string name;
  uint32_t type = 0;
  for (uint32_t index = 0; index < 2; ++index) {
    uint32_t name_size = 6;
    int32_t rc = registry_.EnumValue(root_, index, &name, &name_size, &type);
    if (rc == kRegMoreData) {
      EXPECT_EQ(name_size, 24u);
      name_size = 25;
      rc = registry_.EnumValue(root_, index, &name, &name_size, &type);
    }
    ASSERT_EQ(rc, kRegSuccess);
    types[name] = type;
  }
  EXPECT_EQ(types, (std::map<std::string, uint32_t>{{"count", kRegDword},
                                                    {"a rather long value name", kRegBinary}}));
  uint32_t name_size = 100;
  EXPECT_EQ(registry_.EnumValue(root_, 2, &name, &name_size, &type), kRegNoMoreItems);
}

TEST_F(RegistryTest, KeysWithSubkeysAreRefusedThenDeletedRecursively) {
  HKey key = 0;
  ASSERT_EQ(registry_.CreateKey(root_, "tree\\one\\deep", kKeyAllAccess, &key, nullptr),
            kRegSuccess);
  registry_.CloseKey(key);
  ASSERT_EQ(registry_.CreateKey(root_, "tree\\two", kKeyAllAccess, &key, nullptr), kRegSuccess);
  registry_.CloseKey(key);
  modRegistry::WriteString(registry_, kHKeyCurrentUser, std::string(kTestRoot) + "\\tree\\two",
                           "name", "value");

  EXPECT_EQ(registry_.DeleteKey(root_, "tree"), kRegAccessDenied);
  bool not_found = true;
  modRegistry::DeleteKey(registry_, kHKeyCurrentUser, std::string(kTestRoot) + "\\tree",
                         &not_found);
  EXPECT_FALSE(not_found);
  EXPECT_FALSE(
      modRegistry::KeyExists(registry_, kHKeyCurrentUser, std::string(kTestRoot) + "\\tree"));
  modRegistry::DeleteKey(registry_, kHKeyCurrentUser, std::string(kTestRoot) + "\\tree",
                         &not_found);
  EXPECT_TRUE(not_found);
}

TEST_F(RegistryTest, AKeyThatGrantsOnlyReadingRefusesWriting) {
  HKey key = 0;
  ASSERT_EQ(registry_.CreateKey(root_, "locked", kKeyAllAccess, &key, nullptr), kRegSuccess);
  registry_.CloseKey(key);
  modRegistry::WriteString(registry_, kHKeyCurrentUser, std::string(kTestRoot) + "\\locked", "kept",
                           "yes");
  // Everyone may read the key; nobody may change it or its security.
  HKEY native = nullptr;
  ASSERT_EQ(
      RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\ZintraPortsTest\\locked", 0, WRITE_DAC, &native),
      ERROR_SUCCESS);
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(
      "D:P(A;;KR;;;WD)", SDDL_REVISION_1, &descriptor, nullptr));
  EXPECT_EQ(RegSetKeySecurity(native, DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
  LocalFree(descriptor);
  RegCloseKey(native);

  const std::string path = std::string(kTestRoot) + "\\locked";
  EXPECT_EQ(registry_.OpenKey(kHKeyCurrentUser, path, kKeyWrite, &key), kRegAccessDenied);
  EXPECT_TRUE(modRegistry::KeyExists(registry_, kHKeyCurrentUser, path));
  EXPECT_FALSE(modRegistry::KeyWritable(registry_, kHKeyCurrentUser, path));
  bool not_found = true;
  EXPECT_EQ(modRegistry::ReadString(registry_, kHKeyCurrentUser, path, "kept", &not_found), "yes");
  try {
    modRegistry::WriteString(registry_, kHKeyCurrentUser, path, "new", "no");
    ADD_FAILURE() << "writing to a read-only key succeeded";
  } catch (const ZError& error) {
    EXPECT_EQ(error.Number(), kRegAccessDenied);
  }

  // Give the key back so that it can be deleted.
  ASSERT_EQ(
      RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\ZintraPortsTest\\locked", 0, WRITE_DAC, &native),
      ERROR_SUCCESS);
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(
      "D:P(A;;KA;;;WD)", SDDL_REVISION_1, &descriptor, nullptr));
  RegSetKeySecurity(native, DACL_SECURITY_INFORMATION, descriptor);
  LocalFree(descriptor);
  RegCloseKey(native);
}

TEST_F(RegistryTest, HandlesItDidNotGiveOutAreInvalid) {
  HKey key = 0;
  ASSERT_EQ(registry_.OpenKey(kHKeyCurrentUser, kTestRoot, kKeyRead, &key), kRegSuccess);
  EXPECT_EQ(registry_.CloseKey(key), kRegSuccess);
  EXPECT_EQ(registry_.CloseKey(key), kRegInvalidHandle);
  uint32_t size = 0;
  EXPECT_EQ(registry_.QueryValue(key, "x", nullptr, nullptr, &size), kRegInvalidHandle);
  EXPECT_EQ(registry_.OpenKey(0x12345, "x", kKeyRead, &key), kRegInvalidHandle);
  EXPECT_EQ(registry_.CloseKey(kHKeyCurrentUser), kRegSuccess) << "hives are never closed";
}

TEST(RegistryLifetime, KeysLeftOpenAreClosedWithTheAdapter) {
  HKey key = 0;
  {
    Win32Registry registry;
    ASSERT_EQ(registry.CreateKey(kHKeyCurrentUser, kTestRoot, kKeyAllAccess, &key, nullptr),
              kRegSuccess);
    EXPECT_EQ(registry.OpenKeyCount(), 1u);
  }
  Win32Registry registry;
  bool not_found = false;
  modRegistry::DeleteKey(registry, kHKeyCurrentUser, kTestRoot, &not_found);
  EXPECT_FALSE(not_found);
}

}  // namespace
}  // namespace zintra::win32

// The registry adapter against the platform's registry (under Wine, the test prefix's).
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "src/core/z_error.h"
#include "src/settings/mod_registry.h"
#include "tests/support/error_of.h"
#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"
#include "win32/ports/win32_registry.h"

#include <sddl.h>

namespace zintra::win32 {
namespace {

constexpr char kTestRoot[] = "Software\\ZintraPortsTest";

std::string Under(const std::string& path) { return std::string(kTestRoot) + "\\" + path; }

// Replaces the access list of HKCU\<path> with one written in SDDL.
void SetAccessList(const std::string& path, const char* sddl) {
  UniqueHKey native;
  ASSERT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, WRITE_DAC, native.put()),
            ERROR_SUCCESS);
  PSECURITY_DESCRIPTOR descriptor = nullptr;
  ASSERT_TRUE(ConvertStringSecurityDescriptorToSecurityDescriptorA(sddl, SDDL_REVISION_1,
                                                                   &descriptor, nullptr));
  EXPECT_EQ(RegSetKeySecurity(native.get(), DACL_SECURITY_INFORMATION, descriptor), ERROR_SUCCESS);
  LocalFree(descriptor);
}

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

  void MakeKey(const std::string& path) {
    HKey key = 0;
    ASSERT_EQ(registry_.CreateKey(root_, path, kKeyAllAccess, &key, nullptr), kRegSuccess);
    registry_.CloseKey(key);
  }

  Win32Registry registry_;
  HKey root_ = 0;
};

std::vector<uint8_t> Bytes(const char* text, size_t size) {
  return std::vector<uint8_t>(text, text + size);
}

TEST_F(RegistryTest, EveryValueTypeRoundTripsByteForByte) {
  const std::map<std::string, std::pair<uint32_t, std::vector<uint8_t>>> values = {
      {"sz", {kRegSz, Bytes("Caf\xe9 \\ path", 12)}},
      {"expand", {kRegExpandSz, Bytes("%TEMP%\\x", 9)}},
      {"binary", {kRegBinary, {0x00, 0xFF, 0x10, 0x00, 0x7F}}},
      {"dword", {kRegDword, {0x78, 0x56, 0x34, 0x12}}},
      {"multi", {kRegMultiSz, Bytes("one\0two\0\0", 9)}},
      {"qword", {kRegQword, {1, 2, 3, 4, 5, 6, 7, 8}}},
      {"", {kRegSz, Bytes("default value", 14)}},
      {"empty", {kRegBinary, {}}},
  };
  for (const auto& [name, value] : values) {
    ASSERT_EQ(registry_.SetValue(root_, name, value.first, value.second.data(),
                                 static_cast<uint32_t>(value.second.size())),
              kRegSuccess);
  }
  for (const auto& [name, value] : values) {
    uint32_t type = 99, size = 0;
    ASSERT_EQ(registry_.QueryValue(root_, name, &type, nullptr, &size), kRegSuccess);
    std::vector<uint8_t> data(size);
    ASSERT_EQ(registry_.QueryValue(root_, name, &type, data.data(), &size), kRegSuccess);
    EXPECT_EQ(std::vector<uint8_t>(data.begin(), data.begin() + size), value.second) << name;
    EXPECT_EQ(type, value.first) << name;
  }

  uint8_t small[4];
  uint32_t size = sizeof(small);
  EXPECT_EQ(registry_.QueryValue(root_, "sz", nullptr, small, &size), kRegMoreData);
  EXPECT_EQ(size, 12u);
  EXPECT_EQ(registry_.QueryValue(root_, "missing", nullptr, nullptr, &size), kRegFileNotFound);
  EXPECT_EQ(registry_.DeleteValue(root_, "sz"), kRegSuccess);
  EXPECT_EQ(registry_.DeleteValue(root_, "sz"), kRegFileNotFound);
}

TEST_F(RegistryTest, CreateMakesTheWholePathAndOpenFindsItInAnyCase) {
  HKey key = 0;
  bool created = false;
  ASSERT_EQ(registry_.CreateKey(root_, "a\\b\\c", kKeyAllAccess, &key, &created), kRegSuccess);
  EXPECT_TRUE(created);
  registry_.CloseKey(key);
  ASSERT_EQ(registry_.CreateKey(root_, "A\\B\\C", kKeyRead, &key, &created), kRegSuccess);
  EXPECT_FALSE(created);
  registry_.CloseKey(key);
  EXPECT_EQ(registry_.OpenKey(root_, "a\\missing", kKeyRead, &key), kRegFileNotFound);
  ASSERT_EQ(registry_.OpenKey(root_, "", kKeyRead, &key), kRegSuccess) << "reopens the parent";
  registry_.CloseKey(key);
}

TEST_F(RegistryTest, EnumerationReportsTheLengthOfNamesThatDoNotFit) {
  MakeKey("short");
  MakeKey("a much longer subkey name");  // 25 characters
  const uint32_t dword = 7;
  registry_.SetValue(root_, "count", kRegDword, reinterpret_cast<const uint8_t*>(&dword), 4);
  registry_.SetValue(root_, "a rather long value name", kRegBinary, nullptr, 0);  // 24

  RegistryKeyInfo info;
  ASSERT_EQ(registry_.QueryInfoKey(root_, &info), kRegSuccess);
  EXPECT_EQ(std::vector<uint32_t>({info.sub_keys, info.max_sub_key_len, info.values,
                                   info.max_value_name_len, info.max_value_len}),
            std::vector<uint32_t>({2, 25, 2, 24, 4}));

  std::string name;
  uint32_t name_size = 10;
  EXPECT_EQ(registry_.EnumKey(root_, 0, &name, &name_size), kRegMoreData);
  EXPECT_EQ(name_size, 25u);
  EXPECT_EQ(modRegistry::SubKeyNames(registry_, root_),
            (std::vector<std::string>{"a much longer subkey name", "short"}));

  // Values come in the platform's own order.
  std::map<std::string, uint32_t> types;
  uint32_t type = 0;
  for (uint32_t index = 0;; ++index) {
    name_size = 6;
    int32_t rc = registry_.EnumValue(root_, index, &name, &name_size, &type);
    if (rc == kRegMoreData) {
      EXPECT_EQ(name_size, 24u);
      name_size = 25;
      rc = registry_.EnumValue(root_, index, &name, &name_size, &type);
    }
    if (rc == kRegNoMoreItems) break;
    ASSERT_EQ(rc, kRegSuccess);
    types[name] = type;
  }
  EXPECT_EQ(types, (std::map<std::string, uint32_t>{{"count", kRegDword},
                                                    {"a rather long value name", kRegBinary}}));
}

TEST_F(RegistryTest, KeysWithSubkeysAreRefusedThenDeletedRecursively) {
  MakeKey("tree\\one\\deep");
  modRegistry::WriteString(registry_, kHKeyCurrentUser, Under("tree\\two"), "name", "value");
  EXPECT_EQ(registry_.DeleteKey(root_, "tree"), kRegAccessDenied);
  bool not_found = true;
  modRegistry::DeleteKey(registry_, kHKeyCurrentUser, Under("tree"), &not_found);
  EXPECT_FALSE(not_found);
  EXPECT_FALSE(modRegistry::KeyExists(registry_, kHKeyCurrentUser, Under("tree")));
  modRegistry::DeleteKey(registry_, kHKeyCurrentUser, Under("tree"), &not_found);
  EXPECT_TRUE(not_found);
}

TEST_F(RegistryTest, AKeyThatGrantsOnlyReadingRefusesWriting) {
  modRegistry::WriteString(registry_, kHKeyCurrentUser, Under("locked"), "kept", "yes");
  SetAccessList(Under("locked"), "D:P(A;;KR;;;WD)");  // everyone may read, nobody write

  HKey key = 0;
  EXPECT_EQ(registry_.OpenKey(kHKeyCurrentUser, Under("locked"), kKeyWrite, &key),
            kRegAccessDenied);
  EXPECT_TRUE(modRegistry::KeyExists(registry_, kHKeyCurrentUser, Under("locked")));
  EXPECT_FALSE(modRegistry::KeyWritable(registry_, kHKeyCurrentUser, Under("locked")));
  bool not_found = true;
  EXPECT_EQ(
      modRegistry::ReadString(registry_, kHKeyCurrentUser, Under("locked"), "kept", &not_found),
      "yes");
  EXPECT_EQ(ErrorOf([&] {
              modRegistry::WriteString(registry_, kHKeyCurrentUser, Under("locked"), "new", "no");
            }),
            kRegAccessDenied);
  SetAccessList(Under("locked"), "D:P(A;;KA;;;WD)");  // so that TearDown can delete it
}

TEST_F(RegistryTest, OnlyHandlesItGaveOutAreValid) {
  HKey key = 0;
  ASSERT_EQ(registry_.OpenKey(kHKeyCurrentUser, kTestRoot, kKeyRead, &key), kRegSuccess);
  EXPECT_EQ(registry_.CloseKey(key), kRegSuccess);
  EXPECT_EQ(registry_.CloseKey(key), kRegInvalidHandle);
  uint32_t size = 0;
  EXPECT_EQ(registry_.QueryValue(key, "x", nullptr, nullptr, &size), kRegInvalidHandle);
  EXPECT_EQ(registry_.OpenKey(0x12345, "x", kKeyRead, &key), kRegInvalidHandle);
  EXPECT_EQ(registry_.CloseKey(kHKeyCurrentUser), kRegSuccess) << "hives are never closed";
}

}  // namespace
}  // namespace zintra::win32

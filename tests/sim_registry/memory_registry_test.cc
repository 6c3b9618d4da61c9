#include "sim/registry/memory_registry.h"

#include <gtest/gtest.h>

namespace zintra::sim {
namespace {

constexpr HKey kCU = kHKeyCurrentUser;

class MemoryRegistryTest : public ::testing::Test {
 protected:
  HKey Open(const std::string& path, uint32_t access, int32_t expected = kRegSuccess) {
    HKey key = 0;
    EXPECT_EQ(reg_.OpenKey(kCU, path, access, &key), expected) << path;
    return key;
  }
  MemoryRegistry reg_;
};

TEST_F(MemoryRegistryTest, KeysAndValuesIgnoreLetterCase) {
  HKey key = 0;
  bool created = false;
  ASSERT_EQ(reg_.CreateKey(kCU, "Software\\Brellow", kKeyWrite, &key, &created), kRegSuccess);
  EXPECT_TRUE(created);
  const uint8_t data[] = {'x', 0};
  EXPECT_EQ(reg_.SetValue(key, "Name", kRegSz, data, 2), kRegSuccess);
  EXPECT_EQ(reg_.CloseKey(key), kRegSuccess);
  HKey read = Open("SOFTWARE\\brellow", kKeyRead);
  uint8_t buffer[1];
  uint32_t type = 0, size = sizeof buffer;
  EXPECT_EQ(reg_.QueryValue(read, "NAME", &type, buffer, &size), kRegMoreData);
  EXPECT_EQ(size, 2u);
  EXPECT_EQ(reg_.QueryValue(read, "name", &type, nullptr, &size), kRegSuccess);
  EXPECT_EQ(type, kRegSz);
  EXPECT_EQ(reg_.SetValue(read, "Other", kRegSz, data, 2), kRegAccessDenied)
      << "a key opened for reading refuses writes";
  reg_.CloseKey(read);
  EXPECT_EQ(reg_.CloseKey(read), kRegInvalidHandle);
  EXPECT_EQ(reg_.OpenHandleCount(), 0u);
  EXPECT_EQ(reg_.CanonicalPath(kCU, "software\\BRELLOW"), "Software\\Brellow");
}

TEST_F(MemoryRegistryTest, AccessRulesRefuseWhatWindowsRefuses) {
  reg_.SetDword(kCU, "Software\\RO\\Sub", "v", 1);
  reg_.SetDword(kCU, "Software\\Denied", "v", 1);
  reg_.SetAccess(kCU, "Software\\RO", KeyAccess::kReadOnly);
  reg_.SetAccess(kCU, "Software\\Denied", KeyAccess::kDenied);
  reg_.CloseKey(Open("Software\\RO\\Sub", kKeyRead));
  Open("Software\\RO\\Sub", kKeyWrite, kRegAccessDenied);
  Open("Software\\Denied", kKeyRead, kRegAccessDenied);
  Open("Software\\Nothing", kKeyRead, kRegFileNotFound);
  HKey key = 0;
  EXPECT_EQ(reg_.CreateKey(kCU, "Software\\RO\\New", kKeyRead, &key, nullptr), kRegAccessDenied);
  EXPECT_EQ(reg_.DeleteKey(kCU, "Software\\RO\\Sub"), kRegAccessDenied);
  EXPECT_EQ(reg_.DeleteKey(kCU, "Software"), kRegAccessDenied) << "a key with subkeys";
  EXPECT_EQ(reg_.DeleteKey(kCU, "Software\\Nothing"), kRegFileNotFound);
  EXPECT_FALSE(reg_.HasKey(kCU, "Software\\RO\\New"));
  EXPECT_THROW(reg_.SetAccess(kCU, "Software\\Nothing", KeyAccess::kDenied), std::invalid_argument);
}

TEST_F(MemoryRegistryTest, EnumerationAndInfoDescribeTheKey) {
  for (const char* name : {"beta", "Alpha", "gamma-with-a-long-name"}) {
    reg_.EnsureKey(kCU, std::string("Software\\E\\") + name);
  }
  reg_.SetString(kCU, "Software\\E", "second", "xyz");
  reg_.SetDword(kCU, "Software\\E", "first", 1);
  HKey key = Open("Software\\E", kKeyRead);
  RegistryKeyInfo info;
  ASSERT_EQ(reg_.QueryInfoKey(key, &info), kRegSuccess);
  EXPECT_EQ(info.sub_keys, 3u);
  EXPECT_EQ(info.max_sub_key_len, 22u);
  EXPECT_EQ(info.values, 2u);
  EXPECT_EQ(info.max_value_len, 4u);
  std::vector<std::string> names;
  for (uint32_t i = 0;; ++i) {
    std::string name;
    uint32_t size = 10;
    int32_t rc = reg_.EnumKey(key, i, &name, &size);
    if (rc == kRegNoMoreItems) break;
    if (rc == kRegMoreData) {
      EXPECT_EQ(size, 22u);
      size += 1;
      rc = reg_.EnumKey(key, i, &name, &size);
    }
    ASSERT_EQ(rc, kRegSuccess);
    names.push_back(name);
  }
  EXPECT_EQ(names, (std::vector<std::string>{"Alpha", "beta", "gamma-with-a-long-name"}));
  std::string value_name;
  uint32_t size = 50, type = 0;
  EXPECT_EQ(reg_.EnumValue(key, 0, &value_name, &size, &type), kRegSuccess);
  EXPECT_EQ(value_name, "second") << "values keep their creation order";
  reg_.CloseKey(key);
}

TEST_F(MemoryRegistryTest, AHandleToADeletedKeyAnswersKeyDeleted) {
  reg_.SetDword(kCU, "Software\\Gone", "v", 1);
  HKey key = Open("Software\\Gone", kKeyAllAccess);
  EXPECT_EQ(reg_.DeleteKey(kCU, "Software\\Gone"), kRegSuccess);
  uint32_t size = 4;
  uint8_t data[4];
  EXPECT_EQ(reg_.QueryValue(key, "v", nullptr, data, &size), kRegKeyDeleted);
  EXPECT_EQ(reg_.CloseKey(key), kRegSuccess);
}

TEST_F(MemoryRegistryTest, FaultsFireOnTheChosenCallsOnly) {
  reg_.EnsureKey(kCU, "Software\\F");
  reg_.FailCall("OpenKey", kRegAccessDenied, /*skip=*/1, /*times=*/2);
  reg_.CloseKey(Open("Software\\F", kKeyRead));
  Open("Software\\F", kKeyRead, kRegAccessDenied);
  Open("Software\\F", kKeyRead, kRegAccessDenied);
  reg_.CloseKey(Open("Software\\F", kKeyRead));
  reg_.FailCall("OpenKey", 1450, 0, -1);
  for (int i = 0; i < 3; ++i) Open("Software\\F", kKeyRead, 1450);
  reg_.ClearFaults();
  reg_.CloseKey(Open("Software\\F", kKeyRead));
}

TEST_F(MemoryRegistryTest, TheObserverHearsEveryPortCallFailedOrNot) {
  reg_.SetDword(kCU, "Software\\F", "N", 7);  // the fixture side is not a port call
  std::vector<std::string> heard;
  reg_.SetCallObserver([&](std::string_view member) { heard.emplace_back(member); });
  reg_.FailCall("QueryValue", kRegAccessDenied);
  HKey key = Open("Software\\F", kKeyRead);
  uint32_t size = 4;
  uint8_t data[4];
  EXPECT_EQ(reg_.QueryValue(key, "N", nullptr, data, &size), kRegAccessDenied);
  EXPECT_EQ(reg_.QueryValue(key, "N", nullptr, data, &size), kRegSuccess);
  reg_.CloseKey(key);
  EXPECT_EQ(heard, (std::vector<std::string>{"OpenKey", "QueryValue", "QueryValue", "CloseKey"}));
  reg_.SetCallObserver(nullptr);
  reg_.CloseKey(Open("Software\\F", kKeyRead));
  EXPECT_EQ(heard.size(), 4u);
}

}  // namespace
}  // namespace zintra::sim

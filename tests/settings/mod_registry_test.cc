#include "src/settings/mod_registry.h"

#include <gtest/gtest.h>

#include "sim/registry/memory_registry.h"
#include "src/core/z_error.h"
#include "tests/support/error_of.h"

namespace zintra {
namespace {

using sim::KeyAccess;
using sim::MemoryRegistry;
constexpr HKey kCU = kHKeyCurrentUser;

class ModRegistryTest : public ::testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(reg_.OpenHandleCount(), 0u) << "a key was left open"; }
  MemoryRegistry reg_;
  bool not_found_ = false;
};

TEST_F(ModRegistryTest, MissingKeysAndValuesAreReportedNotRaised) {
  EXPECT_EQ(modRegistry::ReadString(reg_, kCU, "Software\\None", "x", &not_found_), "");
  EXPECT_TRUE(not_found_);
  reg_.EnsureKey(kCU, "Software\\Some");
  EXPECT_EQ(modRegistry::ReadDword(reg_, kCU, "Software\\Some", "x", &not_found_), 0u);
  EXPECT_TRUE(not_found_);
  modRegistry::DeleteValue(reg_, kCU, "Software\\Some", "x", &not_found_);
  EXPECT_TRUE(not_found_);
  modRegistry::DeleteKey(reg_, kCU, "Software\\None", &not_found_);
  EXPECT_TRUE(not_found_);
}

TEST_F(ModRegistryTest, StringsLoseOnlyTheirTerminatingZero) {
  modRegistry::WriteString(reg_, kCU, "Software\\A\\B", "s", "C:\\Logs");
  EXPECT_EQ(reg_.GetValue(kCU, "Software\\A\\B", "s")->data.size(), 8u);
  EXPECT_EQ(modRegistry::ReadString(reg_, kCU, "Software\\A\\B", "s", &not_found_), "C:\\Logs");
  EXPECT_FALSE(not_found_);
  reg_.PutValue(kCU, "Software\\A", sim::RegistryValue{"raw", kRegSz, {'a', 'b'}});
  EXPECT_EQ(modRegistry::ReadString(reg_, kCU, "Software\\A", "raw", &not_found_), "ab");
  reg_.SetString(kCU, "Software\\A", "long", std::string(2000, 'x'));  // 2001 bytes
  std::optional<ZError> e =
      Raised([&] { modRegistry::ReadString(reg_, kCU, "Software\\A", "long", &not_found_); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), kRegMoreData);
  EXPECT_NE(e->Description().find("HKEY_CURRENT_USER\\Software\\A\\long"), std::string::npos);
}

TEST_F(ModRegistryTest, DeniedAccessIsAnError) {
  modRegistry::WriteDword(reg_, kCU, "Software\\A", "d", 7);
  reg_.SetAccess(kCU, "Software\\A", KeyAccess::kDenied);
  EXPECT_THROW(modRegistry::ReadDword(reg_, kCU, "Software\\A", "d", &not_found_), ZError);
  EXPECT_TRUE(modRegistry::KeyExists(reg_, kCU, "Software\\A"));
  EXPECT_FALSE(modRegistry::KeyWritable(reg_, kCU, "Software\\A"));
  reg_.SetAccess(kCU, "Software\\A", KeyAccess::kReadOnly);
  EXPECT_EQ(modRegistry::ReadDword(reg_, kCU, "Software\\A", "d", &not_found_), 7u);
  EXPECT_FALSE(modRegistry::KeyWritable(reg_, kCU, "Software\\A"));
  EXPECT_EQ(ErrorOf([&] { modRegistry::WriteDword(reg_, kCU, "Software\\A", "d", 8); }),
            kRegAccessDenied);
  EXPECT_FALSE(modRegistry::KeyExists(reg_, kCU, "Software\\B"));
}

TEST_F(ModRegistryTest, DeleteKeyRemovesAWholeTree) {
  const std::string long_name(60, 'n');  // longer than the usual enumeration buffer
  for (const std::string& path :
       {std::string("Software\\T\\a\\b\\c"), std::string("Software\\T\\a\\d"),
        "Software\\T\\" + long_name + "\\e"}) {
    modRegistry::WriteDword(reg_, kCU, path, "v", 1);
  }
  modRegistry::DeleteKey(reg_, kCU, "Software\\T", &not_found_);
  EXPECT_FALSE(not_found_);
  EXPECT_FALSE(reg_.HasKey(kCU, "Software\\T"));
  EXPECT_TRUE(reg_.HasKey(kCU, "Software"));

  modRegistry::WriteDword(reg_, kCU, "Software\\U\\locked", "v", 1);
  reg_.SetAccess(kCU, "Software\\U\\locked", KeyAccess::kReadOnly);
  EXPECT_THROW(modRegistry::DeleteKey(reg_, kCU, "Software\\U", &not_found_), ZError);
  EXPECT_TRUE(reg_.HasKey(kCU, "Software\\U\\locked"));
}

TEST_F(ModRegistryTest, FailingCallsCloseTheirKeys) {
  modRegistry::WriteDword(reg_, kCU, "Software\\A", "d", 7);
  reg_.FailCall("QueryValue", kRegInvalidParameter);
  EXPECT_THROW(modRegistry::ReadDword(reg_, kCU, "Software\\A", "d", &not_found_), ZError);
  reg_.FailCall("SetValue", kRegAccessDenied, 1);
  modRegistry::WriteString(reg_, kCU, "Software\\A", "s", "ok");
  EXPECT_THROW(modRegistry::WriteString(reg_, kCU, "Software\\A", "s", "no"), ZError);
  EXPECT_EQ(reg_.GetValue(kCU, "Software\\A", "s")->AsString(), "ok");
}

}  // namespace
}  // namespace zintra

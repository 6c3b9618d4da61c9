// Registry values read back as expectations compare them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sim/registry/memory_registry.h"
#include "tools/zintra-sim/expectations.h"

namespace zintra::simtool {
namespace {

TEST(RegistryTextTest, ValuesReadAsExpectationsCompareThem) {
  sim::MemoryRegistry registry;
  registry.SetDword(kHKeyLocalMachine, "Software\\X", "Count", 42);
  registry.SetString(kHKeyCurrentUser, "Software\\X", "Name", "Zintra");
  sim::RegistryValue multi;
  multi.name = "List";
  multi.type = kRegMultiSz;
  for (char c : std::string("a\0b\0\0", 5)) multi.data.push_back(static_cast<uint8_t>(c));
  registry.PutValue(kHKeyCurrentUser, "Software\\X", multi);

  EXPECT_EQ(RegistryText(registry, "HKLM\\Software\\X", "Count"), "42");
  EXPECT_EQ(RegistryText(registry, "HKEY_LOCAL_MACHINE\\Software\\X", "Count"), "42");
  EXPECT_EQ(RegistryText(registry, "HKCU\\Software\\X", "Count"), std::nullopt);
  EXPECT_EQ(RegistryText(registry, "HKCU\\Software\\X", "Name"), "Zintra");
  EXPECT_EQ(RegistryText(registry, "hkcu\\Software\\X", "List"), "a; b");
  EXPECT_EQ(RegistryText(registry, "HKCU\\Software\\Y", "Name"), std::nullopt);
}

}  // namespace
}  // namespace zintra::simtool

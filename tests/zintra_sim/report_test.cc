// Pieces of the report and the checks: the screening reason is the one logged for that
// item (by subject and folder), not for another item of the same subject; registry
// values read back as expectations compare them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "sim/registry/memory_registry.h"
#include "tools/zintra-sim/expectations.h"
#include "tools/zintra-sim/why_report.h"

namespace zintra::simtool {
namespace {

TEST(ScreeningReasonTest, TakesTheReasonLoggedForThatItemInThatFolder) {
  std::vector<std::string> log = {
      "M Screening new MailItem 'Quote' in 'Inbox' [Recieved 05-Jan/26 9:00a]",
      "M Item 'Quote' being marked not-logged and aborted because Item has no links or recipients",
      "M Screening new MailItem 'Quote' in 'Sent Items' [Sent 05-Jan/26 9:00a]",
      "M Screening new MailItem 'Other' in 'Sent Items' [Sent 05-Jan/26 9:00a]",
      "M Item 'Quote' being marked not-logged and aborted because a stray line about another item",
      "M Screening new MailItem 'Voice' in 'Inbox' [Recieved 05-Jan/26 9:00a]",
      "M Item 'Voice' skipped because AVT MessageClass",
  };
  EXPECT_EQ(ScreeningReason("Quote", "Inbox", log), "Item has no links or recipients");
  EXPECT_EQ(ScreeningReason("Quote", "Sent Items", log), "");
  EXPECT_EQ(ScreeningReason("Voice", "Inbox", log), "AVT MessageClass");
  EXPECT_EQ(ScreeningReason("Voice", "", log), "AVT MessageClass");
  EXPECT_EQ(ScreeningReason("Nothing", "Inbox", log), "");
}

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

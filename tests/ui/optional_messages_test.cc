#include "src/ui/optional_messages.h"

#include <gtest/gtest.h>

#include "hosts/errorlog/sqlite_error_log.h"
#include "sim/files/memory_file_system.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/ui/recording_dialog_views.h"
#include "sim/ui/recording_msg_box.h"
#include "src/errors/error_handling.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra {
namespace {

constexpr char kSuppressKey[] = "Software\\Brellow\\Zintra\\SuppressDialogs";

class OptionalMessagesTest : public testing::Test {
 protected:
  OptionalMessagesTest() {
    // No log is wanted here: a component that cannot be created makes writes no-ops.
    factory_.SetAvailable(false);
  }

  bool Show(int32_t dialog, sim::OptionalMsgBoxAction action = {}) {
    views_.Script(action);
    return messages_.OptionalMsgBox(dialog, "Folder moved", "Zintra", 0);
  }
  bool StoredFlag(int32_t dialog) const {
    auto value = registry_.GetValue(kHKeyCurrentUser, kSuppressKey, std::to_string(dialog));
    return value && value->AsDword().value_or(0) != 0;
  }

  sim::MemoryRegistry registry_;
  sim::MemoryFileSystem files_;
  sim::SimPlatform platform_;
  hosts::SqliteErrorLogFactory factory_;
  sim::RecordingMsgBox msg_box_;
  sim::RecordingDialogViews views_;
  StringTable strings_;
  ErrorHandling errors_{{factory_, msg_box_, registry_, files_, platform_, strings_}};
  RegSettings settings_{registry_, files_, platform_};
  OptionalMessages messages_{settings_, views_, strings_, errors_};
};

TEST_F(OptionalMessagesTest, ShowsTheFormFilledFromTheStringTable) {
  EXPECT_TRUE(messages_.OptionalMsgBox(3, "Folder moved", "Zintra", 4242));
  ASSERT_EQ(views_.OptionalShown().size(), 1u);
  const auto& shown = views_.OptionalShown()[0];
  EXPECT_EQ(shown.content, (OptionalMsgBoxContent{"Zintra", "Folder moved",
                                                  "Do not show this message again", "OK", 0, 3}));
  EXPECT_EQ(shown.owner, 4242);
  EXPECT_TRUE(shown.hidden_by_ok);
  EXPECT_FALSE(shown.brought_to_front);
  EXPECT_EQ(views_.LiveViews(), 0);  // unloaded after use
}

TEST_F(OptionalMessagesTest, TickingSuppressesOnlyThatDialogNumber) {
  EXPECT_TRUE(Show(3, {.tick = true}));
  EXPECT_TRUE(StoredFlag(3));
  EXPECT_FALSE(Show(3));
  EXPECT_TRUE(Show(4));
  EXPECT_EQ(views_.OptionalShown().size(), 2u);
}

TEST_F(OptionalMessagesTest, ClosingWithoutTickingLeavesTheFlagAlone) {
  EXPECT_TRUE(Show(5, {.close_box = true}));
  EXPECT_TRUE(Show(5));
  EXPECT_FALSE(StoredFlag(5));
  // Closing with the box ticked still counts: the form is read after it closes.
  EXPECT_TRUE(Show(5, {.tick = true, .close_box = true}));
  EXPECT_TRUE(StoredFlag(5));
}

TEST_F(OptionalMessagesTest, UnreadableFlagCountsAsNotSuppressed) {
  registry_.SetDword(kHKeyCurrentUser, kSuppressKey, "6", 1);
  registry_.FailCall("QueryValue", kRegAccessDenied, 0, -1);
  EXPECT_TRUE(Show(6));
  registry_.ClearFaults();
  EXPECT_FALSE(Show(6));
}

TEST_F(OptionalMessagesTest, DebugModeBringsTheFormToTheFront) {
  errors_.SetDebugMode(true);
  Show(1);
  ASSERT_EQ(views_.OptionalShown().size(), 1u);
  EXPECT_TRUE(views_.OptionalShown()[0].brought_to_front);
}

TEST_F(OptionalMessagesTest, CaptionsFollowTheLanguage) {
  StringTable french(Language::kFrench);
  OptionalMessages messages(settings_, views_, french, errors_);
  messages.OptionalMsgBox(1, "m", "c");
  ASSERT_EQ(views_.OptionalShown().size(), 1u);
  EXPECT_EQ(views_.OptionalShown()[0].content.chkDontShow, "Ne plus afficher ce message");
}

}  // namespace
}  // namespace zintra

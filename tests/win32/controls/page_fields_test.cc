// What the options page reads from its edit boxes and how it keeps the folder lists:
// whole numbers within a field's range (anything else refused), and the parallel indexed
// lists of the settings turned into rows and back.
#include <gtest/gtest.h>

#include "win32/controls/folder_lists.h"
#include "win32/controls/page_fields.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"
#include "win32/ports/win32_registry.h"

namespace zintra::win32 {
namespace {

TEST(PageFieldsTest, OnlyWholeNumbersWithinTheRangeAreTaken) {
  EXPECT_EQ(ParseWholeNumber("25", 1, 10000), 25);
  EXPECT_EQ(ParseWholeNumber("  7 ", 1, 10000), 7) << "blanks around are allowed";
  EXPECT_EQ(ParseWholeNumber("1", 1, 10000), 1);
  EXPECT_EQ(ParseWholeNumber("10000", 1, 10000), 10000);
  EXPECT_EQ(ParseWholeNumber("0", 0, 5), 0);
  for (const char* bad : {"", " ", "0", "10001", "-5", "+5", "1 000", "1,000", "2.5", "12x", "x12",
                          "99999999999", "4294967297"}) {
    EXPECT_EQ(ParseWholeNumber(bad, 1, 10000), std::nullopt) << "'" << bad << "'";
  }
  EXPECT_EQ(ParseWholeNumber("2147483647", 0, 2147483647), 2147483647);
  EXPECT_EQ(ParseWholeNumber("2147483648", 0, 2147483647), std::nullopt);
}

TEST(PageFieldsTest, FieldNamesInMessagesLoseTheLabelsColon) {
  EXPECT_EQ(FieldName("Work timer interval (ms):"), "Work timer interval (ms)");
  EXPECT_EQ(FieldName("Dossier du journal :"), "Dossier du journal");
  EXPECT_EQ(FieldName("Log level"), "Log level");
}

// The 16-bit settings are written as 16-bit numbers, the others as 32-bit ones.
TEST(PageFieldsTest, EveryNumberFieldReachesItsSettingAndItsRangeFitsIt) {
  Win32Registry registry;
  Win32FileSystem files;
  Win32Platform platform;
  RegSettings settings(registry, files, platform);
  for (const NumberField& field : NumberFields()) {
    ASSERT_LE(field.min, field.max);
    if (field.small) {
      EXPECT_LE(field.max, 32767) << field.label;
    }
    SetNumber(settings, field, field.max);
    EXPECT_EQ(NumberOf(settings, field), field.max) << field.label;
  }
  EXPECT_EQ(settings.GetRowChunkSize, 10000) << "\"Value must be between 1 and 10,000\"";
  EXPECT_EQ(settings.QueuedWorkTimeInterval, 10000);
}

TEST(FolderListsTest, RowsComeFromTheParallelListsAndGoBackWithTheirCounts) {
  Win32Registry registry;
  Win32FileSystem files;
  Win32Platform platform;
  RegSettings settings(registry, files, platform);
  // Two sets stored, the second with only its contact folder and a flag word.
  settings.FoldersetCount = 2;
  settings.ContactFolderEntryIDs.Add("C1");
  settings.ContactFolderStoreIDs.Add("S1");
  settings.ContactFolderEntryIDs.Add("C2");
  settings.ContactFolderStoreIDs.Add("S2");
  settings.JournalFolderEntryIDs.Add("J1");
  settings.JournalFolderStoreIDs.Add("S1");
  settings.FoldersetFlags.Add(0);
  settings.FoldersetFlags.Add(3);
  std::vector<FolderSetRow> rows = ReadFolderSets(settings);
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0][SetRole::kJournal], (FolderRef{"J1", "S1"}));
  EXPECT_TRUE(rows[1][SetRole::kJournal].empty()) << "a list shorter than its count";
  EXPECT_EQ(rows[1].flags, kFlagLogRoutedItems | kFlagLeavePersonalCopy);

  rows.erase(rows.begin());
  rows[0][SetRole::kSharedTasks] = {"T2", "S9"};
  WriteFolderSets(rows, settings);
  EXPECT_EQ(settings.FoldersetCount, 1);
  EXPECT_EQ(settings.ContactFolderEntryIDs.Count(), 1);
  EXPECT_EQ(settings.ContactFolderEntryIDs.Item(1), "C2");
  EXPECT_EQ(settings.JournalFolderEntryIDs.Item(1), "");
  EXPECT_EQ(settings.SharedTaskListEntryIDs.Item(1), "T2");
  EXPECT_EQ(settings.SharedTaskListStoreIDs.Item(1), "S9");
  EXPECT_EQ(settings.FoldersetFlags.Item(1), 3);

  settings.MonitorFoldersCount = 1;
  settings.MonitorFolderEntryIDs.Add("I");
  settings.MonitorFolderStoreIDs.Add("S");
  settings.MonitorFolderFlags.Add(64);
  std::vector<MonitoredRow> monitored = ReadMonitoredFolders(settings);
  ASSERT_EQ(monitored.size(), 1u);
  monitored.push_back({{"X", "S"}, 2048});
  WriteMonitoredFolders(monitored, settings);
  EXPECT_EQ(settings.MonitorFoldersCount, 2);
  EXPECT_EQ(settings.MonitorFolderEntryIDs.Item(2), "X");
  EXPECT_EQ(settings.MonitorFolderFlags.Item(1), 64);
  EXPECT_EQ(settings.MonitorFolderFlags.Item(2), 2048);
}

}  // namespace
}  // namespace zintra::win32

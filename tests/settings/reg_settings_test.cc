#include "src/settings/reg_settings.h"

#include <gtest/gtest.h>

#include <sstream>

#include "src/core/z_error.h"
#include "tests/settings/settings_fixture.h"
#include "tests/support/error_of.h"

namespace zintra {
namespace {

// Every field as text, so two settings objects compare in one assertion.
std::string Dump(const RegSettings& s) {
  std::ostringstream out;
  auto list = [&](const auto& l) {
    out << '[';
    for (const auto& v : l.Values()) out << v << ';';
    out << ']';
  };
  out << s.LogPath << '|' << s.LogLevel << s.LogReporting << s.LogMaxSizeKB
      << s.SearchEmailAddresses << s.OnlySearchIfNoLinks << s.RunJobsAsync << '|'
      << s.QueuedWorkTimeInterval << '|' << s.QueuedWorkTimechunk << s.ShowZintra2Buttons
      << s.ShowZintra2ButtonsOnInspectors << s.NeverLoadToolbars << s.CacheContactFolders
      << s.KeepCacheSynched << s.StopFillingCachesOnExit << s.UniqueEmailAddresses << '|'
      << s.GetRowChunkSize << '|' << s.FoldersetCount;
  for (const StringList* l :
       {&s.ContactFolderEntryIDs, &s.ContactFolderStoreIDs, &s.EmailFolderEntryIDs,
        &s.EmailFolderStoreIDs, &s.JournalFolderEntryIDs, &s.JournalFolderStoreIDs,
        &s.SharedCalendarEntryIDs, &s.SharedCalendarStoreIDs, &s.SharedJournalEntryIDs,
        &s.SharedJournalStoreIDs, &s.SharedTaskListEntryIDs, &s.SharedTaskListStoreIDs}) {
    list(*l);
  }
  list(s.FoldersetFlags);
  out << s.MonitorMethod << '|' << s.MonitorFoldersCount;
  list(s.MonitorFolderEntryIDs);
  list(s.MonitorFolderStoreIDs);
  list(s.MonitorFolderFlags);
  out << s.AuditTrail << s.KeepSharedCopiesUpToDate << s.KeepLoggedCopiesUpToDate << '|'
      << s.MinAuditInterval << s.ScanInbox << s.IgnoreItemsFromInternal << '|'
      << s.TrackedContactCategories << '|' << s.IgnorePrivateContacts << s.EnableBlanketDomain
      << s.StripAttachments << s.EditFolderFields << s.UseRedemptionCopy << s.MakeWorkingCopy
      << s.DontUseEnterpriseSettings << s.AlwaysUseFolderFields << s.InboxIsOutgoingToo << '|'
      << s.QuickscanOverlapHours << '|' << s.ProcessingDelay;
  return out.str();
}

void ChangeEveryField(RegSettings& s) {
  s.LogPath = "D:\\Logs";
  s.LogLevel = 3;
  s.LogReporting = true;
  s.LogMaxSizeKB = 512;
  s.SearchEmailAddresses = false;
  s.OnlySearchIfNoLinks = true;
  s.RunJobsAsync = false;
  s.QueuedWorkTimeInterval = 50;
  s.QueuedWorkTimechunk = 200;
  s.ShowZintra2Buttons = s.ShowZintra2ButtonsOnInspectors = s.NeverLoadToolbars = true;
  s.CacheContactFolders = s.KeepCacheSynched = false;
  s.StopFillingCachesOnExit = true;
  s.UniqueEmailAddresses = false;
  s.GetRowChunkSize = 250;
  s.FoldersetCount = 2;
  for (StringList* l :
       {&s.ContactFolderEntryIDs, &s.ContactFolderStoreIDs, &s.EmailFolderEntryIDs,
        &s.EmailFolderStoreIDs, &s.JournalFolderEntryIDs, &s.JournalFolderStoreIDs,
        &s.SharedCalendarEntryIDs, &s.SharedCalendarStoreIDs, &s.SharedJournalEntryIDs,
        &s.SharedJournalStoreIDs, &s.SharedTaskListEntryIDs, &s.SharedTaskListStoreIDs}) {
    l->Clear();
    l->Add(l == &s.EmailFolderStoreIDs ? "" : "00AB01");  // a set without an e-mail folder
    l->Add("00CD02");
  }
  s.FoldersetFlags.Clear();
  s.FoldersetFlags.Add(3);
  s.FoldersetFlags.Add(-1);
  s.MonitorMethod = 1;
  s.MonitorFoldersCount = 1;
  s.MonitorFolderEntryIDs.Clear();
  s.MonitorFolderEntryIDs.Add("EF01");
  s.MonitorFolderStoreIDs.Clear();
  s.MonitorFolderStoreIDs.Add("EF02");
  s.MonitorFolderFlags.Clear();
  s.MonitorFolderFlags.Add(131070);
  s.AuditTrail = s.KeepLoggedCopiesUpToDate = true;
  s.KeepSharedCopiesUpToDate = false;
  s.MinAuditInterval = 5;
  s.ScanInbox = s.IgnoreItemsFromInternal = false;
  s.TrackedContactCategories = "Clients;Press";
  s.IgnorePrivateContacts = s.EnableBlanketDomain = false;
  s.StripAttachments = true;
  s.EditFolderFields = s.UseRedemptionCopy = false;
  s.MakeWorkingCopy = s.AlwaysUseFolderFields = s.InboxIsOutgoingToo = true;
  s.QuickscanOverlapHours = 48;
  s.ProcessingDelay = 5000;
}

TEST_F(SettingsTest, AnEmptyStoreYieldsTheDefaults) {
  RegSettings s = ReadAll();
  EXPECT_EQ(s.LogPath, "C:\\Users\\user\\AppData\\Local\\Temp");
  EXPECT_TRUE(s.RunJobsAsync);
  EXPECT_EQ(s.ProcessingDelay, 2000);
  EXPECT_EQ(s.GetRowChunkSize, 100);
  EXPECT_EQ(s.MinAuditInterval, 20);
  EXPECT_EQ(s.LogMaxSizeKB, 2048);
  EXPECT_EQ(s.FoldersetCount, 0);
  EXPECT_EQ(s.ContactFolderEntryIDs.Count(), 0);
  EXPECT_FALSE(s.UsingEnterpriseSettings);
  EXPECT_FALSE(s.MultiUser);
  RegSettings declared = Make();
  declared.LogPath = s.LogPath;
  EXPECT_EQ(Dump(s), Dump(declared)) << "the declared defaults are the read defaults";
  EXPECT_TRUE(warnings_.empty());

  platform_.SetWindowsXp();
  EXPECT_EQ(ReadAll().LogPath, "C:");
}

TEST_F(SettingsTest, SavingWritesOnlyNonDefaultsAndReadsBackTheSame) {
  RegSettings s = ReadAll();
  ChangeEveryField(s);
  s.Save();
  EXPECT_EQ(Dump(ReadAll()), Dump(s));
  EXPECT_EQ(UserValue("", "RunJobsAsync")->AsDword(), 0u);
  EXPECT_EQ(UserValue("\\Foldersets\\Contact\\EntryID", "2")->AsString(), "00CD02");
  EXPECT_EQ(UserValue("\\Logging", "LogPath")->type, kRegSz);
  EXPECT_EQ(UserValue("\\Foldersets\\Flags", "2")->AsDword(), 0xFFFFFFFFu);

  RegSettings defaults = Make();
  defaults.LogPath = "C:\\Users\\user\\AppData\\Local\\Temp";
  defaults.Save();
  EXPECT_EQ(Dump(ReadAll()), Dump(defaults));
  EXPECT_EQ(registry_.Values(kHKeyCurrentUser, "Software\\Brellow\\Zintra").size(), 0u);
  EXPECT_FALSE(UserValue("\\Logging", "LogPath"));
  EXPECT_EQ(registry_.OpenHandleCount(), 0u);
}

TEST_F(SettingsTest, SavedSettingsTravelAsRegText) {
  RegSettings s = ReadAll();
  ChangeEveryField(s);
  s.Save();
  std::string text = sim::RegFile::Export(registry_, kHKeyCurrentUser, kProductKey);
  sim::MemoryRegistry other_machine;
  sim::RegFile::Import(other_machine, text, "zintra.reg");
  RegSettings moved(other_machine, files_, platform_);
  moved.Read(false, false, false);
  EXPECT_EQ(Dump(moved), Dump(s));
}

TEST_F(SettingsTest, ListsAreAsLongAsTheirCountWithMissingElementsDefaulted) {
  Import(R"([HKEY_CURRENT_USER\Software\Brellow\Zintra\Foldersets]
"Count"=dword:00000003
[HKEY_CURRENT_USER\Software\Brellow\Zintra\Foldersets\Contact\EntryID]
"1"="AA"
"3"="CC"
[HKEY_CURRENT_USER\Software\Brellow\Zintra\Foldersets\Flags]
"1"=dword:00000002
[HKEY_CURRENT_USER\Software\Brellow\Zintra\Monitoring\Folders]
"FolderCount"=dword:00002711
)");
  RegSettings s = ReadAll();
  ASSERT_EQ(s.ContactFolderEntryIDs.Count(), 3);
  EXPECT_EQ(s.ContactFolderEntryIDs.Item(2), "");
  EXPECT_EQ(s.ContactFolderEntryIDs.Item(3), "CC");
  EXPECT_EQ(s.SharedTaskListStoreIDs.Count(), 3);
  EXPECT_EQ(s.FoldersetFlags.Values(), (std::vector<int32_t>{2, 0, 0}));
  // 10001 monitored folders is beyond any real profile: read as none, and said so.
  EXPECT_EQ(s.MonitorFoldersCount, 0);
  EXPECT_TRUE(WarnedAbout("Monitoring\\Folders\\FolderCount"));
}

TEST_F(SettingsTest, ProcessingDelayOnlyAppliesBetweenOutlook2000And2007) {
  Import(
      "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra]\r\n\"ProcessingDelay\"=dword:00001388\r\n");
  EXPECT_EQ(ReadAll().ProcessingDelay, 5000);
  EXPECT_EQ(ReadAll(true, false).ProcessingDelay, 0);
  EXPECT_EQ(ReadAll(false, true).ProcessingDelay, 0);
}

TEST_F(SettingsTest, SixteenBitFieldsAboveTheirRangeMakeReadOverflow) {
  Import(
      "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra\\Logging]\r\n"
      "\"MaxLogSizeKB\"=dword:00009c40\r\n");  // 40000
  RegSettings s = Make();
  std::optional<ZError> e = Raised([&] { s.Read(true, false, false); });
  ASSERT_TRUE(e) << "no overflow";
  EXPECT_EQ(e->Number(), kErrOverflow);
  EXPECT_NE(e->Description().find("MaxLogSizeKB"), std::string::npos);
  registry_.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "MaxLogSizeKB", 32767);
  registry_.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Foldersets", "GetRowChunkSize",
                     32768);
  s.Read(true, false, false);  // the chunk size is not read for the critical values
  EXPECT_EQ(s.LogMaxSizeKB, 32767);
  EXPECT_THROW(s.Read(false, false, false), ZError);
}

TEST_F(SettingsTest, MalformedValuesTakeTheirDefaultsAndAreReported) {
  std::string long_text(2100, 'x');
  Import(
      "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra]\r\n"
      "\"RunJobsAsync\"=\"0\"\r\n"
      "\"MinAuditInterval\"=hex:05,00\r\n"
      "\"TrackedContactCategories\"=dword:00000001\r\n"
      "[HKEY_CURRENT_USER\\Software\\Brellow\\Zintra\\Logging]\r\n"
      "\"LogPath\"=\"" +
      long_text + "\"\r\n");
  RegSettings s = ReadAll();
  EXPECT_TRUE(s.RunJobsAsync);
  EXPECT_EQ(s.MinAuditInterval, 20);
  EXPECT_EQ(s.TrackedContactCategories, "");
  EXPECT_EQ(s.LogPath, "C:\\Users\\user\\AppData\\Local\\Temp");
  EXPECT_TRUE(WarnedAbout("HKEY_CURRENT_USER\\Software\\Brellow\\Zintra\\RunJobsAsync"));
  EXPECT_TRUE(WarnedAbout("MinAuditInterval"));
  EXPECT_TRUE(WarnedAbout("TrackedContactCategories"));
  EXPECT_TRUE(WarnedAbout("LogPath"));
}

TEST_F(SettingsTest, AMachineWideInstallKeepsItsSettingsInTheMachineHive) {
  Import(R"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Office\Outlook\Addins\ZintraAddin.Connect]
"LoadBehavior"=dword:00000003
[HKEY_LOCAL_MACHINE\Software\Brellow\Zintra]
"ScanInbox"=dword:00000000
[HKEY_CURRENT_USER\Software\Brellow\Zintra]
"ScanInbox"=dword:00000001
"AuditTrail"=dword:00000001
)");
  RegSettings s = ReadAll();
  EXPECT_TRUE(s.MultiUser);
  EXPECT_FALSE(s.ScanInbox);
  EXPECT_FALSE(s.AuditTrail);
  s.MinAuditInterval = 7;
  s.Save();
  EXPECT_EQ(registry_.GetValue(kHKeyLocalMachine, "Software\\Brellow\\Zintra", "MinAuditInterval")
                ->AsDword(),
            7u);
  EXPECT_FALSE(UserValue("", "MinAuditInterval"));

  s.DialogSuppressed(12, true);
  s.UserFirstRun(false);
  EXPECT_EQ(UserValue("\\SuppressDialogs", "12")->AsDword(), 1u);
  EXPECT_FALSE(registry_.HasKey(kHKeyLocalMachine, "Software\\Brellow\\Zintra\\SuppressDialogs"));
  EXPECT_EQ(UserValue("", "UserFirstRun")->AsDword(), 0u);
  EXPECT_TRUE(s.DialogSuppressed(12));
  EXPECT_FALSE(s.DialogSuppressed(13));
  EXPECT_FALSE(s.UserFirstRun());
  EXPECT_TRUE(s.HasWriteAccess(kLocationMachine));
}

TEST_F(SettingsTest, DialogSuppressResetShowsEveryMessageAgain) {
  RegSettings s = Make();
  for (int dialog : {1, 2, 30}) s.DialogSuppressed(dialog, true);
  registry_.EnsureKey(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\SuppressDialogs\\Old\\Deep");
  s.DialogSuppressed(2, false);
  EXPECT_FALSE(s.DialogSuppressed(2));
  EXPECT_FALSE(UserValue("\\SuppressDialogs", "2")) << "False is the default, not stored";
  s.DialogSuppressReset();
  EXPECT_FALSE(s.DialogSuppressed(1));
  EXPECT_FALSE(registry_.HasKey(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\SuppressDialogs"));
  EXPECT_TRUE(registry_.HasKey(kHKeyCurrentUser, "Software\\Brellow\\Zintra"));

  s.DialogSuppressed(4, true);
  registry_.SetAccess(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\SuppressDialogs",
                      sim::KeyAccess::kReadOnly);
  s.DialogSuppressReset();
  EXPECT_TRUE(s.DialogSuppressed(4));
  EXPECT_TRUE(WarnedAbout("SuppressDialogs"));
}

TEST_F(SettingsTest, WriteAccessFollowsTheResolvedHive) {
  RegSettings s = ReadAll();
  EXPECT_FALSE(s.HasWriteAccess(kLocationDefault)) << "no product key yet";
  registry_.EnsureKey(kHKeyCurrentUser, "Software\\Brellow\\Zintra");
  EXPECT_TRUE(s.HasWriteAccess(kLocationDefault));
  registry_.SetAccess(kHKeyCurrentUser, "Software\\Brellow\\Zintra", sim::KeyAccess::kReadOnly);
  EXPECT_FALSE(s.HasWriteAccess(kLocationUser));

  // A save the registry refuses keeps the old values and says why; nothing throws.
  s.AuditTrail = true;
  s.Save();
  EXPECT_FALSE(ReadAll().AuditTrail);
  EXPECT_TRUE(WarnedAbout("AuditTrail"));
}

TEST_F(SettingsTest, WriteAddinLoaderRegistersWithOutlookInTheChosenHive) {
  RegSettings s = Make();
  EXPECT_TRUE(s.WriteAddinLoader(kLocationUser));
  auto value = [&](HKey hive, const char* name) {
    return registry_.GetValue(hive, kAddinLoaderKey, name);
  };
  EXPECT_EQ(value(kHKeyCurrentUser, "FriendlyName")->AsString(), "Zintra");
  EXPECT_EQ(value(kHKeyCurrentUser, "Description")->AsString(), "Zintra 3.0");
  EXPECT_EQ(value(kHKeyCurrentUser, "LoadBehavior")->AsDword(), 3u);
  EXPECT_FALSE(value(kHKeyLocalMachine, "LoadBehavior"));
  EXPECT_TRUE(s.WriteAddinLoader(kLocationDefault));
  EXPECT_EQ(value(kHKeyLocalMachine, "LoadBehavior")->AsDword(), 3u);
  EXPECT_TRUE(RegSettings(registry_, files_, platform_).MultiUser);

  registry_.EnsureKey(kHKeyLocalMachine, "SOFTWARE\\Microsoft");
  registry_.SetAccess(kHKeyLocalMachine, "SOFTWARE\\Microsoft", sim::KeyAccess::kReadOnly);
  EXPECT_FALSE(s.WriteAddinLoader(kLocationMachine));
}

TEST_F(SettingsTest, FindFoldersetIndexComparesBothIdentifiers) {
  RegSettings s = Make();
  s.FoldersetCount = 3;
  for (const char* id : {"bad", "A1", "A1"}) s.ContactFolderEntryIDs.Add(id);
  for (const char* id : {"S1", "S1", "S2"}) s.ContactFolderStoreIDs.Add(id);
  // The library compares without case and refuses identifiers that are not hexadecimal.
  EntryIdComparer compare = [](const std::string& a, const std::string& b) {
    if (a == "bad" || b == "bad") throw ZError(-2147024809, "invalid entry ID");
    return text::EqualsNoCase(a, b);
  };
  EXPECT_EQ(s.utilFindFoldersetIndex("a1", "s2", compare), 3);
  EXPECT_EQ(s.utilFindFoldersetIndex("A1", "S1", compare), 2);
  EXPECT_EQ(s.utilFindFoldersetIndex("A1", "S9", compare), std::nullopt);
  s.FoldersetCount = 2;
  EXPECT_EQ(s.utilFindFoldersetIndex("a1", "s2", compare), std::nullopt);
}

TEST_F(SettingsTest, CopiesAreIndependent) {
  RegSettings s = Make();
  s.FoldersetCount = 1;
  s.ContactFolderEntryIDs.Add("A1");
  RegSettings old = s;
  s.ContactFolderEntryIDs.Item(1) = "B2";
  s.RunJobsAsync = false;
  EXPECT_EQ(old.ContactFolderEntryIDs.Item(1), "A1");
  EXPECT_TRUE(old.RunJobsAsync);
}

}  // namespace
}  // namespace zintra

// The enterprise settings file named by the policy key, and its precedence.
#include <gtest/gtest.h>

#include "src/settings/reg_settings.h"
#include "src/settings/settings_file.h"
#include "tests/settings/settings_fixture.h"

namespace zintra {
namespace {

constexpr char kFile[] = "\\\\corp\\policy\\zintra.txt";

class EnterpriseTest : public SettingsTest {
 protected:
  void SetUp() override {
    Import(R"([HKEY_LOCAL_MACHINE\Software\Policies\Brellow\Zintra]
"EnterpriseSettingsPath"="\\\\corp\\policy\\zintra.txt"
[HKEY_CURRENT_USER\Software\Brellow\Zintra]
"RunJobsAsync"=dword:00000000
"MinAuditInterval"=dword:00000063
[HKEY_CURRENT_USER\Software\Brellow\Zintra\Logging]
"LogLevel"=dword:00000002
)");
    files_.AddFile(kFile,
                   "; Zintra3.0.x Settings File\r\n"
                   "<Software\\Brellow\\Zintra\\MinAuditInterval>45</Software\\Brellow\\Zintra\\"
                   "MinAuditInterval>\r\n"
                   "<SOFTWARE\\Brellow\\Zintra\\Logging\\LogLevel>3</SOFTWARE\\Brellow\\Zintra\\"
                   "Logging\\LogLevel>\r\n"
                   "; a comment line\r\n"
                   "<Software\\Brellow\\Zintra\\Foldersets\\Count>1</Software\\Brellow\\"
                   "Zintra\\Foldersets\\Count>\r\n"
                   "<Software\\Brellow\\Zintra\\Foldersets\\Contact\\EntryID\\1>00FF</Software\\"
                   "Brellow\\Zintra\\Foldersets\\Contact\\EntryID\\1>\r\n");
  }
};

TEST_F(EnterpriseTest, TheFileWinsExceptForRegistryOnlyValues) {
  RegSettings s = ReadAll();
  EXPECT_TRUE(s.UsingEnterpriseSettings);
  EXPECT_EQ(s.MinAuditInterval, 45);
  EXPECT_TRUE(s.RunJobsAsync) << "missing from the file: the default, not the registry";
  EXPECT_EQ(s.LogLevel, 2) << "logging values always come from the registry";
  ASSERT_EQ(s.ContactFolderEntryIDs.Count(), 1);
  EXPECT_EQ(s.ContactFolderEntryIDs.Item(1), "00FF");
}

TEST_F(EnterpriseTest, APerUserPathWinsOverTheMachinePath) {
  registry_.SetString(kHKeyCurrentUser, kPolicyKey, "EnterpriseSettingsPath", "C:\\mine.txt");
  files_.AddFile("C:\\mine.txt",
                 "<Software\\Brellow\\Zintra\\MinAuditInterval>7"
                 "</Software\\Brellow\\Zintra\\MinAuditInterval>");
  EXPECT_EQ(Make().EnterpriseSettingsPath(), "C:\\mine.txt");
  EXPECT_EQ(ReadAll().MinAuditInterval, 7);
  registry_.SetString(kHKeyCurrentUser, kPolicyKey, "EnterpriseSettingsPath", "");
  EXPECT_EQ(Make().EnterpriseSettingsPath(), kFile);
}

TEST_F(EnterpriseTest, AUserMayOptOutOnlyWhenThePolicyAllowsIt) {
  registry_.SetDword(kHKeyCurrentUser, kProductKey, "DontUseEnterpriseSettings", 1);
  RegSettings s = ReadAll();
  EXPECT_TRUE(s.AllowLocalOverride());
  EXPECT_FALSE(s.UsingEnterpriseSettings);
  EXPECT_EQ(s.MinAuditInterval, 99);

  registry_.SetDword(kHKeyLocalMachine, kPolicyKey, "AllowLocalOverride", 0);
  s = ReadAll();
  EXPECT_FALSE(s.AllowLocalOverride());
  EXPECT_TRUE(s.UsingEnterpriseSettings);
  EXPECT_EQ(s.MinAuditInterval, 45);
  // Only the machine's policy counts.
  registry_.SetDword(kHKeyCurrentUser, kPolicyKey, "AllowLocalOverride", 1);
  EXPECT_TRUE(ReadAll().UsingEnterpriseSettings);
}

TEST_F(EnterpriseTest, SavingRewritesTheFileWithOneEntryPerLine) {
  RegSettings s = ReadAll();
  s.MinAuditInterval = 20;  // the default: removed from the file
  s.ScanInbox = false;
  s.LogLevel = 1;  // registry-only: stays out of the file
  s.Save();
  EXPECT_EQ(*files_.Contents(kFile),
            "; Zintra3.0.x Settings File\r\n"
            "<SOFTWARE\\Brellow\\Zintra\\Logging\\LogLevel>3</SOFTWARE\\Brellow\\Zintra\\Logging"
            "\\LogLevel>\r\n"
            "<Software\\Brellow\\Zintra\\Foldersets\\Count>1</Software\\Brellow\\Zintra\\"
            "Foldersets\\Count>\r\n"
            "<Software\\Brellow\\Zintra\\Foldersets\\Contact\\EntryID\\1>00FF</Software\\Brellow"
            "\\Zintra\\Foldersets\\Contact\\EntryID\\1>\r\n"
            "<Software\\Brellow\\Zintra\\ScanInbox>0</Software\\Brellow\\Zintra\\ScanInbox>\r\n");
  EXPECT_EQ(UserValue("\\Logging", "LogLevel")->AsDword(), 1u);
  RegSettings again = ReadAll();
  EXPECT_FALSE(again.ScanInbox);
  EXPECT_EQ(again.MinAuditInterval, 20);
}

TEST_F(EnterpriseTest, AnOptedOutSaveLeavesTheFileWithTheHeaderOnly) {
  registry_.SetDword(kHKeyCurrentUser, kProductKey, "DontUseEnterpriseSettings", 1);
  RegSettings s = ReadAll();
  s.Save();
  EXPECT_EQ(*files_.Contents(kFile), "; Zintra3.0.x Settings File\r\n");
  EXPECT_EQ(ReadAll().MinAuditInterval, 99) << "the user's own values are kept";
}

TEST_F(EnterpriseTest, WriteAccessInFileModeIsTheFiles) {
  RegSettings s = ReadAll();
  EXPECT_TRUE(s.HasWriteAccess(kLocationDefault));
  files_.SetReadOnly(kFile, true);
  EXPECT_FALSE(s.HasWriteAccess(kLocationDefault));
  s.ScanInbox = false;
  s.Save();
  EXPECT_TRUE(WarnedAbout(kFile));
  EXPECT_TRUE(ReadAll().ScanInbox);
}

TEST_F(EnterpriseTest, AnUnreadableFileGivesDefaultsAndIsNotOverwritten) {
  files_.SetUnopenable(kFile, true);
  RegSettings s = ReadAll();
  EXPECT_TRUE(s.UsingEnterpriseSettings);
  EXPECT_EQ(s.MinAuditInterval, 20);
  EXPECT_TRUE(WarnedAbout(kFile));
  files_.SetUnopenable(kFile, false);
  s.Save();
  EXPECT_EQ(ReadAll().MinAuditInterval, 45) << "the administrator's values survive";

  // A file that is not there yet is simply created by the first save.
  registry_.SetString(kHKeyLocalMachine, kPolicyKey, "EnterpriseSettingsPath", "C:\\new.txt");
  s = ReadAll();
  s.AuditTrail = true;
  s.Save();
  EXPECT_TRUE(ReadAll().AuditTrail);
}

TEST_F(EnterpriseTest, MalformedEntriesTakeTheirDefaults) {
  files_.AddFile(kFile,
                 "<Software\\Brellow\\Zintra\\QuickscanOverlapHours>many</Software\\Brellow\\"
                 "Zintra\\QuickscanOverlapHours>"
                 "<Software\\Brellow\\Zintra\\TrackedContactCategories>A>B</Software\\Brellow\\"
                 "Zintra\\TrackedContactCategories>"
                 "<Software\\Brellow\\Zintra\\MinAuditInterval>5");
  RegSettings s = ReadAll();
  EXPECT_EQ(s.QuickscanOverlapHours, 0);
  EXPECT_EQ(s.TrackedContactCategories, "A>B");
  EXPECT_EQ(s.MinAuditInterval, 20);
  EXPECT_TRUE(WarnedAbout("QuickscanOverlapHours"));
  EXPECT_TRUE(WarnedAbout("no closing tag"));
  // Saving closes the broken entry without losing what follows it.
  s.MinAuditInterval = 30;
  s.Save();
  RegSettings again = ReadAll();
  EXPECT_EQ(again.MinAuditInterval, 30);
  EXPECT_EQ(again.TrackedContactCategories, "A>B");
}

TEST(SettingsFileTest, InsertLinebreaksEndsEachCompleteEntry) {
  EXPECT_EQ(SettingsFile::InsertLinebreaks("<a>1</a><b>2</b>"), "<a>1</a>\r\n<b>2</b>\r\n");
  EXPECT_EQ(SettingsFile::InsertLinebreaks("<a>1"), "<a>1");
  EXPECT_EQ(SettingsFile::InsertLinebreaks(""), "");
  EXPECT_EQ(RegSettings::InsertLinebreaks("<a>x>y</a>"), "<a>x>\r\ny</a>");
}

TEST(SettingsFileTest, EntriesAreFoundWithoutCaseAndTheFirstWins) {
  SettingsFile file;
  file.Load("; header\r\n<K\\A>1</K\\A>\n<k\\a>2</k\\a>\r; <K\\B>3</K\\B>\r\n<K\\C></K\\C>");
  std::string text;
  EXPECT_EQ(file.Get("k\\A", &text), SettingsFile::Lookup::kFound);
  EXPECT_EQ(text, "1");
  EXPECT_EQ(file.Get("K\\B", &text), SettingsFile::Lookup::kMissing);
  EXPECT_EQ(file.Get("K\\C", &text), SettingsFile::Lookup::kFound);
  EXPECT_EQ(text, "");
  file.Set("K\\A", "9");
  file.Set("K\\D", "4");
  EXPECT_TRUE(file.Delete("K\\C"));
  EXPECT_FALSE(file.Delete("K\\C"));
  EXPECT_EQ(file.buffer(), "<K\\A>9</K\\A><k\\a>2</k\\a><K\\D>4</K\\D>");
  // Once the first entry is gone, the duplicate behind it is the one found.
  EXPECT_TRUE(file.Delete("K\\A"));
  EXPECT_EQ(file.Get("K\\A", &text), SettingsFile::Lookup::kFound);
  EXPECT_EQ(text, "2");
  // Values of every length and shape keep the later entries reachable.
  file.Set("K\\A", "a much longer value than before");
  file.Set("K\\A", "<K\\D>");
  EXPECT_EQ(file.Get("K\\D", &text), SettingsFile::Lookup::kFound);
  // A tag inside a value counts, exactly as a plain search of the text finds it.
  EXPECT_EQ(text, "</k\\a><K\\D>4");
  file.Set("K\\A", "");
  EXPECT_EQ(file.Get("K\\D", &text), SettingsFile::Lookup::kFound);
  EXPECT_EQ(text, "4");
}

}  // namespace
}  // namespace zintra

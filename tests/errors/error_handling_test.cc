#include "src/errors/error_handling.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "hosts/errorlog/sqlite_error_log.h"
#include "sim/files/memory_file_system.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/ui/recording_msg_box.h"
#include "src/errors/cached_error.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "tests/errors/temp_folder.h"

namespace zintra {
namespace {

using testing_support::TempFolder;

constexpr char kLoggingKey[] = "Software\\Brellow\\Zintra\\Logging";

class ErrorHandlingTest : public testing::Test {
 protected:
  ErrorHandlingTest() {
    SetLogPath(tmp_.str());
    SetLevel(3);
  }

  void SetLevel(uint32_t level) {
    registry_.SetDword(kHKeyCurrentUser, kLoggingKey, "LogLevel", level);
  }
  void SetLogPath(const std::string& path) {
    registry_.SetString(kHKeyCurrentUser, kLoggingKey, "LogPath", path);
  }
  std::vector<hosts::ErrorLogRow> Rows() {
    if (factory_.Created().empty()) return {};
    return factory_.Created().back()->Rows();
  }
  static CachedError ThreeStepRecord() {
    CachedError rec(ZError(91, "Object not set", "ZintraAddin", "", 0, 1413), "JobLog", "Activate",
                    57);
    rec.SetTo(rec.ToZError(), "JobQueue", "RunJobs");
    rec.SetTo(rec.ToZError(), "frmTimer", "tmr_Timer", 12);
    return rec;
  }

  TempFolder tmp_;
  sim::MemoryRegistry registry_;
  sim::MemoryFileSystem files_;
  sim::SimPlatform platform_;
  hosts::SqliteErrorLogFactory factory_{tmp_.path()};
  sim::RecordingMsgBox msg_box_;
  StringTable strings_;
  ErrorHandling errors_{{factory_, msg_box_, registry_, files_, platform_, strings_}};
};

struct LevelCase {
  uint32_t level;
  size_t messages, warnings, errors;
};

class LogLevelTest : public ErrorHandlingTest, public testing::WithParamInterface<LevelCase> {};

TEST_P(LogLevelTest, KeepsWhatTheLevelAllows) {
  SetLevel(GetParam().level);
  errors_.WriteLogMessage("plain", false);
  errors_.WriteLogMessage("flagged", true);
  errors_.LogWarning("warned");
  ThreeStepRecord().Log(errors_);
  size_t messages = 0, warnings = 0, errors = 0;
  for (const auto& row : Rows()) {
    messages += row.kind == "Message";
    warnings += row.kind == "Warning";
    errors += row.kind == "Error";
  }
  EXPECT_EQ(messages, GetParam().messages);
  EXPECT_EQ(warnings, GetParam().warnings);
  EXPECT_EQ(errors, GetParam().errors);
  EXPECT_EQ(errors_.LogLevel(), static_cast<int32_t>(GetParam().level));
}

INSTANTIATE_TEST_SUITE_P(Levels, LogLevelTest,
                         testing::Values(LevelCase{3, 1, 2, 1}, LevelCase{2, 0, 2, 1},
                                         LevelCase{1, 0, 0, 1}, LevelCase{0, 0, 0, 0}));

TEST_F(ErrorHandlingTest, ErrorRowCarriesTheRecordAndTheVersionColumns) {
  platform_.SetFileVersion("C:\\Program Files\\Zintra\\ZintraControls.ocx", {3, 0, 4, 2});
  platform_.SetFileVersion("C:\\Program Files\\Zintra\\TovuRedemption.dll", {4, 6, 0, 1});
  platform_.SetFileVersion("C:\\Program Files\\Zintra\\ZintraKeepAlive.exe", {1, 0, 0, 3});
  platform_.SetFileVersion("C:\\Program Files\\Zintra\\Quillbar.dll", {2, 1, 0, 0});
  errors_.SetAddinFolder("C:\\Program Files\\Zintra\\");
  errors_.SetAddinVersion("3.0.12");
  errors_.SetOutlookVersions("11.0.0.8312", "11.0.8312");

  ThreeStepRecord().Log(errors_);
  errors_.SetRunJobsAsync(false);
  errors_.LogWarning("after the setting is known");

  auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  const auto& row = rows[0];
  EXPECT_EQ(row.app_id, "Zintra3");
  EXPECT_EQ(row.error_number, 91);
  EXPECT_EQ(row.description, "Object not set");
  EXPECT_EQ(row.last_dll_error, "1413");
  EXPECT_EQ(row.source, "ZintraAddin");
  EXPECT_EQ(row.module, "frmTimer");
  EXPECT_EQ(row.procedure, "tmr_Timer");
  EXPECT_EQ(row.line, "12");
  EXPECT_EQ(row.trail, "JobLog.Activate(57)-->JobQueue.RunJobs-->frmTimer.tmr_Timer(12)");
  EXPECT_EQ(row.versions.addin, "3.0.12");
  EXPECT_EQ(row.versions.controls, "3.0.4.2 (ZINTRACONTROLS.OCX)");
  EXPECT_EQ(row.versions.outlook, "11.0.0.8312 (OUTLOOK)");
  EXPECT_EQ(row.versions.outlook_product, "11.0.8312 (OLPROD)");
  EXPECT_EQ(row.versions.library, "4.6.0.1 (TOVUREDEMPTION.DLL)");
  EXPECT_EQ(row.versions.others, "\r\n1.0.0.3 (ZINTRAKEEPALIVE.EXE)\r\n2.1.0.0 (QUILLBAR.DLL)");
  EXPECT_EQ(rows[1].versions.others,
            "\r\n1.0.0.3 (ZINTRAKEEPALIVE.EXE)\r\n2.1.0.0 (QUILLBAR.DLL)\r\nAsyncMode=False");
}

TEST_F(ErrorHandlingTest, VersionsFallBackToTheFiles) {
  registry_.SetString(kHKeyLocalMachine, "Software\\Microsoft\\Office\\9.0\\Outlook\\InstallRoot",
                      "Path", "C:\\Office\\");
  platform_.SetFileVersion("C:\\Office\\OUTLOOK.EXE", {9, 0, 0, 6627});
  platform_.SetFileVersion("C:\\Zintra\\ZintraAddin.dll", {3, 0, 0, 12});
  errors_.SetAddinFolder("C:\\Zintra");
  ErrorLogVersions v = errors_.Versions();
  EXPECT_EQ(v.outlook, "9.0.0.6627 (OUTLOOK)");
  EXPECT_EQ(v.addin, "3.0.0.12");
  EXPECT_EQ(v.library, " (TOVUREDEMPTION.DLL)");
}

TEST_F(ErrorHandlingTest, RecordWithNumberZeroIsNeitherLoggedNorShown) {
  CachedError none;
  none.Log(errors_);
  none.Display(errors_);
  EXPECT_TRUE(factory_.Created().empty());
  EXPECT_TRUE(msg_box_.Shown().empty());
}

TEST_F(ErrorHandlingTest, DisplayShowsACriticalBoxUnderTheProductName) {
  CachedError rec = ThreeStepRecord();
  rec.Display(errors_);
  ASSERT_EQ(msg_box_.Shown().size(), 1u);
  EXPECT_EQ(msg_box_.Shown()[0].prompt, rec.toString(true));
  EXPECT_EQ(msg_box_.Shown()[0].buttons, kMsgBoxCritical);
  EXPECT_EQ(msg_box_.Shown()[0].title, "Zintra");
}

TEST_F(ErrorHandlingTest, LogFileFollowsTheLogPathSetting) {
  SetLogPath(tmp_.str() + "\\logs\\");
  errors_.WriteLogMessage("m", false);
  EXPECT_EQ(errors_.LogFilePath(), tmp_.str() + "\\logs\\ZINTRAERRORS.MDB");
  EXPECT_TRUE(std::filesystem::exists(tmp_.path() / "logs" / "ZINTRAERRORS.MDB"));
}

TEST_F(ErrorHandlingTest, BlankLogPathPutsTheFileInTheDefaultFolder) {
  SetLogPath("  ");
  errors_.LogWarning("w");
  EXPECT_EQ(errors_.LogFilePath(), "C:\\Users\\user\\AppData\\Local\\Temp\\ZINTRAERRORS.MDB");
  EXPECT_TRUE(std::filesystem::exists(tmp_.path() / "C" / "Users" / "user" / "AppData" / "Local" /
                                      "Temp" / "ZINTRAERRORS.MDB"));
}

TEST_F(ErrorHandlingTest, MissingComponentOrUnopenableFileMakesWritesDoNothing) {
  factory_.SetAvailable(false);
  EXPECT_NO_THROW(errors_.LogWarning("lost"));
  factory_.SetAvailable(true);
  EXPECT_NO_THROW(ThreeStepRecord().Log(errors_));
  // The component is created once: a later availability changes nothing.
  EXPECT_TRUE(factory_.Created().empty());
  EXPECT_EQ(errors_.LogFilePath(), "");

  hosts::SqliteErrorLogFactory factory(tmp_.path());
  ErrorHandling other({factory, msg_box_, registry_, files_, platform_, strings_});
  std::filesystem::create_directories(tmp_.path() / "ZINTRAERRORS.MDB");
  EXPECT_NO_THROW(other.LogWarning("lost"));
  EXPECT_EQ(other.LogFilePath(), "");
}

TEST_F(ErrorHandlingTest, CapComesFromTheSettings) {
  registry_.SetDword(kHKeyCurrentUser, kLoggingKey, "MaxLogSizeKB", 16);
  for (int i = 0; i < 120; ++i) errors_.LogWarning(std::string(400, 'w'));
  EXPECT_LE(std::filesystem::file_size(tmp_.path() / "ZINTRAERRORS.MDB"), 16 * 1024u);
}

TEST_F(ErrorHandlingTest, OversizedCapStillOpensTheLogWithTheDefaultCap) {
  registry_.SetDword(kHKeyCurrentUser, kLoggingKey, "MaxLogSizeKB", 40000);
  errors_.LogWarning("still logged");
  ASSERT_EQ(Rows().size(), 1u);
  EXPECT_EQ(Rows()[0].description, "still logged");
}

TEST_F(ErrorHandlingTest, ChangedLogPathMovesTheFileAndLevelApplies) {
  errors_.LogWarning("first");
  RegSettings old_settings(registry_, files_, platform_);
  old_settings.Read(true, false, false);
  RegSettings new_settings = old_settings;
  new_settings.LogPath = tmp_.str() + "\\moved";
  new_settings.LogLevel = 1;
  errors_.Addin_RegSettingsChanged(old_settings, new_settings);
  errors_.LogWarning("dropped at level 1");
  ThreeStepRecord().Log(errors_);

  EXPECT_FALSE(std::filesystem::exists(tmp_.path() / "ZINTRAERRORS.MDB"));
  EXPECT_EQ(errors_.LogFilePath(), tmp_.str() + "\\moved\\ZINTRAERRORS.MDB");
  auto rows = hosts::SqliteErrorLog::ReadRows(tmp_.path() / "moved" / "ZINTRAERRORS.MDB");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].description, "first");
  EXPECT_EQ(rows[1].kind, "Error");
}

TEST_F(ErrorHandlingTest, FailedMoveKeepsTheOldFileAndSaysWhy) {
  errors_.LogWarning("first");
  { std::ofstream blocker(tmp_.path() / "blocker"); }
  RegSettings settings(registry_, files_, platform_);
  settings.Read(true, false, false);
  RegSettings moved = settings;
  moved.LogPath = tmp_.str() + "\\blocker\\sub";
  errors_.Addin_RegSettingsChanged(settings, moved);
  auto rows = Rows();
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1].description.rfind("Could not move the error log to '", 0), 0u);
  EXPECT_EQ(errors_.LogFilePath(), tmp_.str() + "\\ZINTRAERRORS.MDB");
}

}  // namespace
}  // namespace zintra

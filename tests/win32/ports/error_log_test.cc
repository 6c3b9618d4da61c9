// The error-log store over SQLite built for this target, on the platform's files.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "hosts/errorlog/sqlite_error_log.h"
#include "win32/com/windows_api.h"
#include "win32/ports/win32_error_log_factory.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"

namespace zintra::win32 {
namespace {

class ErrorLogTest : public ::testing::Test {
 protected:
  // A user name with an accent puts the temporary folder outside ASCII.
  void SetUp() override {
    root_ = Win32Platform().TempPath() + "zintra-log-" + std::to_string(GetCurrentProcessId());
    folder_ = root_ + "\\Jos\xe9";
    CreateDirectoryA(root_.c_str(), nullptr);
    ASSERT_TRUE(CreateDirectoryA(folder_.c_str(), nullptr));
  }
  void TearDown() override {
    for (const char* name : {"\\ZINTRAERRORS.MDB", "\\d\xe9plac\xe9.mdb"}) {
      DeleteFileA((folder_ + name).c_str());
      DeleteFileA((folder_ + name + "-journal").c_str());
    }
    EXPECT_TRUE(RemoveDirectoryA(folder_.c_str())) << "a file was left behind";
    RemoveDirectoryA(root_.c_str());
  }

  std::shared_ptr<hosts::SqliteErrorLog> Create() {
    return std::dynamic_pointer_cast<hosts::SqliteErrorLog>(
        Win32ErrorLogFactory().CreateErrorLog());
  }

  std::string root_, folder_;
  ErrorLogVersions versions_{"Zintra.dll 3.0.0", "", "Outlook 16", "", "Library 6.1", ""};
};

TEST_F(ErrorLogTest, EntriesSurviveReopeningAndMoving) {
  const std::string path = folder_ + "\\ZINTRAERRORS.MDB";
  const std::string moved = folder_ + "\\d\xe9plac\xe9.mdb";
  {
    auto log = Create();
    ASSERT_NE(log, nullptr);
    log->Open(path, 0, true);
    log->LogError("Zintra", "Object required", "0", 424, "JobQueue", "modJobs", "Run", "12",
                  "Run<Start", versions_);
  }
  ASSERT_TRUE(Win32FileSystem().FileExists(path));
  {
    auto log = Create();
    log->Open(path, 0, false);
    log->LogMessage("Zintra", "Careful", true, versions_);
    log->Relocate(moved);
    EXPECT_EQ(log->Path(), moved);
    log->LogMessage("Zintra", "After the move", false, versions_);
  }
  EXPECT_FALSE(Win32FileSystem().FileExists(path));
  const auto rows = hosts::SqliteErrorLog::ReadRows(Create()->ToNative(moved));
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].kind, "Error");
  EXPECT_EQ(rows[0].error_number, 424);
  EXPECT_EQ(rows[0].versions.library, "Library 6.1");
  EXPECT_EQ(rows[1].kind, "Warning");
  EXPECT_EQ(rows[2].description, "After the move");
}

TEST_F(ErrorLogTest, TheSizeCapDropsTheOldestEntries) {
  const std::string path = folder_ + "\\ZINTRAERRORS.MDB";
  auto log = Create();
  log->Open(path, 16, true);
  const std::string text(2000, 'x');
  for (int i = 0; i < 40; ++i) {
    log->LogMessage("Zintra", std::to_string(i) + " " + text, false, versions_);
  }
  auto rows = log->Rows();
  ASSERT_FALSE(rows.empty());
  EXPECT_LT(rows.size(), 40u);
  EXPECT_EQ(rows.back().description, "39 " + text) << "the newest entry is kept";
  WIN32_FILE_ATTRIBUTE_DATA data{};
  ASSERT_TRUE(GetFileAttributesExA(path.c_str(), GetFileExInfoStandard, &data));
  EXPECT_LE(data.nFileSizeLow, 16u * 1024u) << "freed pages leave the file";
}

}  // namespace
}  // namespace zintra::win32

// The error-log store over SQLite built for this target, on the platform's files.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sim/errorlog/sqlite_error_log.h"
#include "src/core/z_error.h"
#include "win32/com/windows_api.h"
#include "win32/ports/win32_error_log_factory.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"

namespace zintra::win32 {
namespace {

class ErrorLogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    folder_ = Win32Platform().TempPath() + "zintra-log-" + std::to_string(GetCurrentProcessId());
    CreateDirectoryA(folder_.c_str(), nullptr);
  }
  void TearDown() override {
    for (const char* name : {"\\ZINTRAERRORS.MDB", "\\moved\\ZINTRAERRORS.MDB",
                             "\\ZINTRAERRORS.MDB-journal", "\\moved\\ZINTRAERRORS.MDB-journal"}) {
      DeleteFileA((folder_ + name).c_str());
    }
    RemoveDirectoryA((folder_ + "\\moved").c_str());
    RemoveDirectoryA(folder_.c_str());
  }

  std::shared_ptr<sim::SqliteErrorLog> Create() {
    return std::dynamic_pointer_cast<sim::SqliteErrorLog>(factory_.CreateErrorLog());
  }

  Win32ErrorLogFactory factory_;
  std::string folder_;
  ErrorLogVersions versions_{"Zintra.dll 3.0.0", "", "Outlook 16", "", "Library 6.1", ""};
};

TEST_F(ErrorLogTest, EntriesSurviveReopeningAndMoving) {
  const std::string path = folder_ + "\\ZINTRAERRORS.MDB";
  {
    auto log = Create();
    ASSERT_NE(log, nullptr);
    log->Open(path, 0, true);
    EXPECT_EQ(log->Path(), path);
    log->LogError("Zintra", "Object required", "0", 424, "JobQueue", "modJobs", "Run", "12",
                  "Run<Start", versions_);
    log->LogMessage("Zintra", "Started", false, versions_);
  }
  EXPECT_TRUE(Win32FileSystem().FileExists(path));

  auto log = Create();
  log->Open(path, 0, false);
  log->LogMessage("Zintra", "Careful", true, versions_);
  auto rows = log->Rows();
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].kind, "Error");
  EXPECT_EQ(rows[0].error_number, 424);
  EXPECT_EQ(rows[0].trail, "Run<Start");
  EXPECT_EQ(rows[0].versions.library, "Library 6.1");
  EXPECT_EQ(rows[1].kind, "Message");
  EXPECT_EQ(rows[2].kind, "Warning");

  CreateDirectoryA((folder_ + "\\moved").c_str(), nullptr);
  const std::string moved = folder_ + "\\moved\\ZINTRAERRORS.MDB";
  log->Relocate(moved);
  EXPECT_EQ(log->Path(), moved);
  EXPECT_FALSE(Win32FileSystem().FileExists(path));
  log->LogMessage("Zintra", "After the move", false, versions_);
  EXPECT_EQ(log->Rows().size(), 4u);
}

TEST_F(ErrorLogTest, PathsInTheSystemCodePageReachTheirFiles) {
  // A user name with an accent puts the temporary folder outside ASCII.
  const std::string folder = folder_ + "\\Jos\xe9";
  const std::string path = folder + "\\ZINTRAERRORS.MDB";
  const std::string moved = folder + "\\d\xe9plac\xe9.mdb";
  ASSERT_TRUE(CreateDirectoryA(folder.c_str(), nullptr));
  {
    auto log = Create();
    log->Open(path, 0, true);
    log->LogMessage("Zintra", "Started", false, versions_);
    EXPECT_TRUE(Win32FileSystem().FileExists(path));
    log->Relocate(moved);
    EXPECT_EQ(log->Path(), moved);
    log->LogMessage("Zintra", "Moved", false, versions_);
  }
  EXPECT_FALSE(Win32FileSystem().FileExists(path));
  EXPECT_TRUE(Win32FileSystem().FileExists(moved));
  auto log = Create();
  log->Open(moved, 0, false);
  EXPECT_EQ(log->Rows().size(), 2u);
  log.reset();
  DeleteFileA(moved.c_str());
  DeleteFileA((moved + "-journal").c_str());
  EXPECT_TRUE(RemoveDirectoryA(folder.c_str())) << "a file was left in the folder";
}

TEST_F(ErrorLogTest, TheSizeCapDropsTheOldestEntries) {
  auto log = Create();
  log->Open(folder_ + "\\ZINTRAERRORS.MDB", 16, true);
  const std::string text(2000, 'x');
  for (int i = 0; i < 40; ++i) {
    log->LogMessage("Zintra", std::to_string(i) + " " + text, false, versions_);
  }
  EXPECT_LE(log->DatabaseBytes(), 16 * 1024);
  auto rows = log->Rows();
  ASSERT_FALSE(rows.empty());
  EXPECT_LT(rows.size(), 40u);
  EXPECT_EQ(rows.back().description, "39 " + text) << "the newest entry is kept";
  WIN32_FILE_ATTRIBUTE_DATA data{};
  ASSERT_TRUE(
      GetFileAttributesExA((folder_ + "\\ZINTRAERRORS.MDB").c_str(), GetFileExInfoStandard, &data));
  EXPECT_LE(data.nFileSizeLow, 16u * 1024u) << "freed pages leave the file";
}

TEST_F(ErrorLogTest, FilesThatCannotBeOpenedThrowPathFileAccess) {
  auto log = Create();
  try {
    log->Open(folder_ + "\\missing.mdb", 0, false);
    ADD_FAILURE() << "opened a missing log without create";
  } catch (const ZError& error) {
    EXPECT_EQ(error.Number(), 75);
  }
  EXPECT_EQ(log->Path(), "");
  try {
    log->LogMessage("Zintra", "nowhere", false, versions_);
    ADD_FAILURE() << "wrote to a log that is not open";
  } catch (const ZError& error) {
    EXPECT_EQ(error.Number(), 91);
  }
}

}  // namespace
}  // namespace zintra::win32

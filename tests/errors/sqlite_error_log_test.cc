#include "hosts/errorlog/sqlite_error_log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "src/core/z_error.h"
#include "tests/errors/temp_folder.h"
#include "tests/support/error_of.h"

namespace zintra::hosts {
namespace {

using testing_support::TempFolder;

ErrorLogVersions SampleVersions() {
  return {"3.0.12",
          "3.0.4 (ZINTRACONTROLS.OCX)",
          "11.0 (OUTLOOK)",
          "11.0.8 (OLPROD)",
          "4.6.0.1 (TOVUREDEMPTION.DLL)",
          "\r\n1.0 (ZINTRAKEEPALIVE.EXE)\r\n2.1 (QUILLBAR.DLL)"};
}

class SqliteErrorLogTest : public testing::Test {
 protected:
  std::string LogFile() const { return tmp_.str() + "\\ZINTRAERRORS.MDB"; }
  TempFolder tmp_;
  SqliteErrorLog log_{tmp_.path()};
};

TEST_F(SqliteErrorLogTest, KeepsEveryColumnOfErrorsAndMessages) {
  log_.Open(LogFile(), 2048, true);
  log_.LogError("Zintra3", "Disk on fire", "32", 1234, "ZintraAddin", "frmTimer", "tmr_Timer", "9",
                "JobProcess.Activate(120)-->frmTimer.tmr_Timer(9)", SampleVersions());
  log_.LogMessage("Zintra3", "Screening 'x'", false, SampleVersions());
  log_.LogMessage("Zintra3", "Folder 'Inbox' vanished", true, SampleVersions());

  auto rows = SqliteErrorLog::ReadRows(tmp_.path() / "ZINTRAERRORS.MDB");
  ASSERT_EQ(rows.size(), 3u);
  EXPECT_EQ(rows[0].kind, "Error");
  EXPECT_EQ(rows[0].app_id, "Zintra3");
  EXPECT_EQ(rows[0].description, "Disk on fire");
  EXPECT_EQ(rows[0].last_dll_error, "32");
  EXPECT_EQ(rows[0].error_number, 1234);
  EXPECT_EQ(rows[0].source, "ZintraAddin");
  EXPECT_EQ(rows[0].module, "frmTimer");
  EXPECT_EQ(rows[0].procedure, "tmr_Timer");
  EXPECT_EQ(rows[0].line, "9");
  EXPECT_EQ(rows[0].trail, "JobProcess.Activate(120)-->frmTimer.tmr_Timer(9)");
  EXPECT_EQ(rows[0].versions.others, SampleVersions().others);
  EXPECT_EQ(rows[0].versions.library, SampleVersions().library);
  EXPECT_FALSE(rows[0].logged_at.empty());
  EXPECT_EQ(rows[1].kind, "Message");
  EXPECT_EQ(rows[1].description, "Screening 'x'");
  EXPECT_EQ(rows[2].kind, "Warning");
  EXPECT_EQ(rows[2].versions.outlook_product, "11.0.8 (OLPROD)");
  EXPECT_LT(rows[1].id, rows[2].id);
}

TEST_F(SqliteErrorLogTest, CapDropsTheOldestEntriesAndKeepsTheFileWithinIt) {
  constexpr int32_t kCapKb = 32;
  log_.Open(LogFile(), kCapKb, true);
  const std::string padding(300, 'x');
  for (int i = 0; i < 600; ++i) {
    log_.LogMessage("Zintra3", "entry " + std::to_string(i) + " " + padding, false,
                    SampleVersions());
    ASSERT_LE(std::filesystem::file_size(log_.NativePath()), kCapKb * 1024u) << i;
  }
  auto rows = log_.Rows();
  ASSERT_FALSE(rows.empty());
  EXPECT_LT(rows.size(), 600u);
  // What survives is the newest, contiguous run.
  EXPECT_EQ(rows.back().description.substr(0, 10), "entry 599 ");
  for (size_t i = 1; i < rows.size(); ++i) EXPECT_EQ(rows[i].id, rows[i - 1].id + 1);
  // A reasonable share of the cap is used, not a handful of rows.
  EXPECT_GT(rows.size(), 25u);
}

TEST_F(SqliteErrorLogTest, ReopeningWithASmallerCapTrimsAtOnce) {
  log_.Open(LogFile(), 0, true);
  for (int i = 0; i < 300; ++i) {
    log_.LogMessage("Zintra3", std::string(400, 'y'), true, SampleVersions());
  }
  EXPECT_GT(log_.DatabaseBytes(), 64 * 1024);
  log_.Open(LogFile(), 32, true);
  EXPECT_LE(std::filesystem::file_size(log_.NativePath()), 32 * 1024u);
  EXPECT_FALSE(log_.Rows().empty());
}

TEST_F(SqliteErrorLogTest, RelocateMovesTheFileAndLaterWritesGoThere) {
  log_.Open(LogFile(), 2048, true);
  log_.LogMessage("Zintra3", "before", false, SampleVersions());
  std::string moved = tmp_.str() + "\\elsewhere\\ZINTRAERRORS.MDB";
  log_.Relocate(moved);
  log_.LogMessage("Zintra3", "after", false, SampleVersions());

  EXPECT_FALSE(std::filesystem::exists(tmp_.path() / "ZINTRAERRORS.MDB"));
  EXPECT_EQ(log_.Path(), moved);
  auto rows = SqliteErrorLog::ReadRows(tmp_.path() / "elsewhere" / "ZINTRAERRORS.MDB");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[0].description, "before");
  EXPECT_EQ(rows[1].description, "after");
}

TEST_F(SqliteErrorLogTest, FailuresRaiseErrors) {
  EXPECT_EQ(ErrorOf([&] { log_.LogMessage("Zintra3", "too early", false, SampleVersions()); }),
            kErrObjectNotSet);
  // A folder where the file should be cannot be opened as a database.
  std::filesystem::create_directories(tmp_.path() / "ZINTRAERRORS.MDB");
  std::optional<ZError> e = Raised([&] { log_.Open(LogFile(), 2048, true); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), 75);
  EXPECT_NE(e->Description().find("ZINTRAERRORS.MDB"), std::string::npos);
  EXPECT_EQ(log_.Path(), "");
  // Without create a missing file is not made.
  EXPECT_THROW(log_.Open(tmp_.str() + "\\missing\\X.MDB", 2048, false), ZError);

  SqliteErrorLogFactory factory(tmp_.path());
  factory.SetAvailable(false);
  EXPECT_EQ(ErrorOf([&] { factory.CreateErrorLog(); }), 429);
  factory.SetAvailable(true);
  EXPECT_NE(factory.CreateErrorLog(), nullptr);
  EXPECT_EQ(factory.Created().size(), 1u);
}

}  // namespace
}  // namespace zintra::hosts

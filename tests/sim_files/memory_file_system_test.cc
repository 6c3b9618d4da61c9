#include "sim/files/memory_file_system.h"

#include <gtest/gtest.h>

#include "sim/platform/sim_platform.h"
#include "src/core/z_error.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

TEST(MemoryFileSystemTest, FilesLiveInFoldersThatMustExist) {
  MemoryFileSystem fs;
  EXPECT_EQ(ErrorOf([&] { fs.WriteAll("C:\\Logs\\a.txt", "x"); }), kErrPathNotFound);
  fs.MakeFolder("C:\\Logs");
  fs.WriteAll("C:\\Logs\\a.txt", "one");
  fs.Append("c:/logs/A.TXT", "two");
  EXPECT_EQ(fs.ReadAll("C:\\LOGS\\a.txt"), "onetwo");
  EXPECT_TRUE(fs.FileExists("C:\\Logs\\a.txt"));
  EXPECT_TRUE(fs.FolderExists("C:\\Logs\\"));
  EXPECT_FALSE(fs.FolderExists("C:\\Logs\\a.txt"));
  EXPECT_EQ(ErrorOf([&] { fs.ReadAll("C:\\Logs\\b.txt"); }), kErrFileNotFound);
  EXPECT_EQ(ErrorOf([&] { fs.MakeFolder("C:\\Logs"); }), kErrPathFileAccess);
  fs.Append("\\\\server\\share\\new.txt", "");
  EXPECT_EQ(fs.Contents("\\\\server\\share\\new.txt"), "");
  fs.Remove("C:\\Logs\\a.txt");
  EXPECT_FALSE(fs.FileExists("C:\\Logs\\a.txt"));
}

TEST(MemoryFileSystemTest, ReadOnlyAndUnopenableFilesRefuseAsWindowsDoes) {
  MemoryFileSystem fs;
  fs.AddFile("C:\\p\\ro.txt", "keep");
  fs.AddFile("C:\\p\\locked.txt", "secret");
  fs.SetReadOnly("C:\\p\\ro.txt", true);
  fs.SetUnopenable("C:\\p\\locked.txt", true);
  EXPECT_EQ(fs.ReadAll("C:\\p\\ro.txt"), "keep");
  EXPECT_EQ(ErrorOf([&] { fs.WriteAll("C:\\p\\ro.txt", ""); }), kErrPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { fs.Append("C:\\p\\ro.txt", ""); }), kErrPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { fs.Remove("C:\\p\\ro.txt"); }), kErrPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { fs.ReadAll("C:\\p\\locked.txt"); }), kErrPermissionDenied);
  EXPECT_EQ(ErrorOf([&] { fs.WriteAll("C:\\p\\locked.txt", ""); }), kErrPermissionDenied);
  EXPECT_EQ(fs.Contents("C:\\p\\ro.txt"), "keep");
  EXPECT_EQ(fs.Contents("C:\\p\\locked.txt"), "secret");
}

TEST(MemoryFileSystemTest, InjectedFailuresNameThePath) {
  MemoryFileSystem fs;
  fs.AddFile("C:\\a.txt", "x");
  fs.FailCall("ReadAll", kErrPathFileAccess, 1);
  EXPECT_EQ(fs.ReadAll("C:\\a.txt"), "x");
  std::optional<ZError> e = Raised([&] { fs.ReadAll("C:\\a.txt"); });
  ASSERT_TRUE(e);
  EXPECT_EQ(e->Number(), kErrPathFileAccess);
  EXPECT_NE(e->Description().find("C:\\a.txt"), std::string::npos);
  EXPECT_EQ(fs.ReadAll("C:\\a.txt"), "x");
}

TEST(SimPlatformTest, AnswersWhatTheTestSet) {
  SimPlatform platform;
  EXPECT_TRUE(platform.OperatingSystemVersion().IsVistaOrLater());
  platform.SetWindowsXp();
  EXPECT_FALSE(platform.OperatingSystemVersion().IsVistaOrLater());
  EXPECT_EQ(platform.FileVersion("C:\\Zintra.dll"), std::nullopt);
  platform.SetFileVersion("C:\\Zintra.dll", FileVersionInfo{3, 0, 12, 4});
  ASSERT_TRUE(platform.FileVersion("c:\\zintra.DLL"));
  EXPECT_EQ(platform.FileVersion("c:\\zintra.DLL")->build, 12);
  platform.SetUserInterfaceLanguage(0x0C0C);
  EXPECT_EQ(platform.UserInterfaceLanguage(), 0x0C0C);
}

}  // namespace
}  // namespace zintra::sim

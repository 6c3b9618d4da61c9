// The file system and machine facts against the platform's own files and calls.
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "src/core/z_error.h"
#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"
#include "win32/ports/win32_file_system.h"
#include "win32/ports/win32_platform.h"

namespace zintra::win32 {
namespace {

class FilesTest : public ::testing::Test {
 protected:
  void SetUp() override {
    root_ = Win32Platform().TempPath() + "zintra-ports-" + std::to_string(GetCurrentProcessId());
    files_.MakeFolder(root_);
  }
  void TearDown() override {
    for (const char* name : {"\\a.txt", "\\ro.txt", "\\locked.txt", "\\big.bin"}) {
      SetFileAttributesA((root_ + name).c_str(), FILE_ATTRIBUTE_NORMAL);
      DeleteFileA((root_ + name).c_str());
    }
    RemoveDirectoryA((root_ + "\\sub").c_str());
    RemoveDirectoryA(root_.c_str());
  }

  int32_t ErrorOf(const std::function<void()>& call) {
    try {
      call();
    } catch (const ZError& error) {
      EXPECT_NE(error.Description().find(root_), std::string::npos) << error.Description();
      return error.Number();
    }
    return 0;
  }

  Win32FileSystem files_;
  std::string root_;
};

TEST_F(FilesTest, WritesAppendsReadsAndRemovesBytesUnchanged) {
  const std::string path = root_ + "\\a.txt";
  const std::string bytes("line one\r\n\xe9\0tail", 16);
  files_.WriteAll(path, bytes);
  EXPECT_EQ(files_.ReadAll(path), bytes);
  files_.Append(path, "more");
  files_.Append(path, "");
  EXPECT_EQ(files_.ReadAll(path), bytes + "more");
  files_.WriteAll(path, "short");
  EXPECT_EQ(files_.ReadAll(path), "short") << "writing truncates";
  EXPECT_TRUE(files_.FileExists(path));
  EXPECT_FALSE(files_.FolderExists(path));
  files_.Remove(path);
  EXPECT_FALSE(files_.FileExists(path));

  const std::string big_path = root_ + "\\big.bin";
  std::string big(300 * 1024, '\0');
  for (size_t i = 0; i < big.size(); ++i) big[i] = static_cast<char>(i * 7);
  files_.Append(big_path, big);
  EXPECT_EQ(files_.ReadAll(big_path), big);
}

TEST_F(FilesTest, FoldersAreMadeOneAtATime) {
  EXPECT_TRUE(files_.FolderExists(root_));
  EXPECT_FALSE(files_.FileExists(root_));
  files_.MakeFolder(root_ + "\\sub");
  EXPECT_TRUE(files_.FolderExists(root_ + "\\sub\\"));
  EXPECT_EQ(ErrorOf([&] { files_.MakeFolder(root_ + "\\sub"); }), kErrPathFileAccess);
  EXPECT_EQ(ErrorOf([&] { files_.MakeFolder(root_ + "\\no\\sub"); }), kErrPathNotFound);
}

TEST_F(FilesTest, FailuresBecomeTheRunTimesFileErrors) {
  const std::string missing = root_ + "\\missing.txt";
  EXPECT_EQ(ErrorOf([&] { files_.ReadAll(missing); }), kErrFileNotFound);
  EXPECT_EQ(ErrorOf([&] { files_.Remove(missing); }), kErrFileNotFound);
  EXPECT_EQ(ErrorOf([&] { files_.ReadAll(root_ + "\\nofolder\\x.txt"); }), kErrPathNotFound);
  EXPECT_EQ(ErrorOf([&] { files_.WriteAll(root_ + "\\nofolder\\x.txt", "x"); }), kErrPathNotFound);
  EXPECT_EQ(ErrorOf([&] { files_.WriteAll(root_, "x"); }), kErrPathFileAccess) << "a folder";
  EXPECT_EQ(ErrorOf([&] { files_.Remove(root_); }), kErrPathFileAccess) << "a folder";

  const std::string read_only = root_ + "\\ro.txt";
  files_.WriteAll(read_only, "keep");
  SetFileAttributesA(read_only.c_str(), FILE_ATTRIBUTE_READONLY);
  // Wine run by root lets anyone write a read-only file; the check needs a platform that
  // refuses.
  UniqueKernelHandle probe(CreateFileA(read_only.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!probe.valid()) {
    EXPECT_EQ(ErrorOf([&] { files_.WriteAll(read_only, "x"); }), kErrPathFileAccess);
    EXPECT_EQ(ErrorOf([&] { files_.Remove(read_only); }), kErrPathFileAccess);
    EXPECT_EQ(files_.ReadAll(read_only), "keep");
  }
  probe.reset();

  const std::string locked = root_ + "\\locked.txt";
  files_.WriteAll(locked, "held");
  {
    UniqueKernelHandle holder(CreateFileA(locked.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                          FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(holder.valid());
    EXPECT_EQ(ErrorOf([&] { files_.ReadAll(locked); }), kErrPermissionDenied);
    EXPECT_EQ(ErrorOf([&] { files_.Append(locked, "x"); }), kErrPermissionDenied);
  }
  EXPECT_EQ(files_.ReadAll(locked), "held");
  EXPECT_FALSE(files_.FileExists(""));
  EXPECT_FALSE(files_.FolderExists(""));
}

TEST(Win32Platform, AnswersTheMachinesFacts) {
  Win32Platform platform;
  const std::string temp = platform.TempPath();
  ASSERT_FALSE(temp.empty());
  EXPECT_EQ(temp.back(), '\\');
  EXPECT_TRUE(Win32FileSystem().FolderExists(temp));

  const OsVersionInfo os = platform.OperatingSystemVersion();
  EXPECT_EQ(os.platform_id, 2u);
  EXPECT_GE(os.major, 5u);
  EXPECT_GT(os.build, 0u);
  EXPECT_NE(platform.UserInterfaceLanguage(), 0);
}

TEST(Win32Platform, ReadsTheVersionResourceOfSystemFiles) {
  Win32Platform platform;
  char system[MAX_PATH];
  ASSERT_GT(GetSystemDirectoryA(system, MAX_PATH), 0u);
  const auto kernel = platform.FileVersion(std::string(system) + "\\kernel32.dll");
  ASSERT_TRUE(kernel.has_value());
  EXPECT_GE(kernel->major, 5);
  EXPECT_EQ(platform.FileVersion(std::string(system) + "\\no-such-file.dll"), std::nullopt);

  // A file without a version resource: this test program itself.
  char self[MAX_PATH];
  ASSERT_GT(GetModuleFileNameA(nullptr, self, MAX_PATH), 0u);
  EXPECT_EQ(platform.FileVersion(self), std::nullopt);
}

}  // namespace
}  // namespace zintra::win32

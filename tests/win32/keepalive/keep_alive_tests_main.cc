// The keep-alive tests' main: started with kPlayOutlookSwitch the program is the Outlook
// of the abrupt-end test, otherwise the test program.
#include <gtest/gtest.h>

#include <string>

#include "tests/win32/keepalive/keep_alive_host.h"
// after windows.h
#include <shellapi.h>

int main(int argc, char** argv) {
  int count = 0;
  LPWSTR* args = CommandLineToArgvW(GetCommandLineW(), &count);
  if (args && count == 3 && std::wstring(args[1]) == zintra::win32::testing::kPlayOutlookSwitch) {
    std::wstring event_name = args[2];
    LocalFree(args);
    return zintra::win32::testing::PlayOutlook(event_name);
  }
  if (args) LocalFree(args);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}

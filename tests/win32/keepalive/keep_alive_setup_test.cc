// The keep-alive program's command line and the class keys its registration writes.
#include <gtest/gtest.h>

#include "win32/addin/reg_key.h"
#include "win32/keepalive/keep_alive_command.h"
#include "win32/keepalive/keep_alive_registration.h"

namespace zintra::win32::testing {
namespace {

using Action = KeepAliveCommand::Action;

TEST(KeepAliveCommandTest, ReadsCOMsAndTheInstallersSwitches) {
  struct Case {
    std::vector<std::wstring> args;
    Action action;
    bool machine;
  };
  const Case cases[] = {
      {{L"-Embedding"}, Action::kServe, false},  // as COM starts a local server
      {{L"/Embedding"}, Action::kServe, false},
      {{L"/RegServer"}, Action::kRegister, false},
      {{L"-regserver", L"/MACHINE"}, Action::kRegister, true},
      {{L"/Machine", L"/UnregServer"}, Action::kUnregister, true},
      {{L"/UnRegServer"}, Action::kUnregister, false},
  };
  for (const Case& c : cases) {
    KeepAliveCommand command = KeepAliveCommand::Parse(c.args);
    EXPECT_EQ(command.action, c.action) << ::testing::PrintToString(c.args);
    EXPECT_EQ(command.per_machine, c.machine) << ::testing::PrintToString(c.args);
  }
}

TEST(KeepAliveCommandTest, AnythingElseIsAUsageError) {
  const std::vector<std::vector<std::wstring>> bad = {
      {},
      {L"/Machine"},
      {L"/RegServer", L"/UnregServer"},
      {L"/Embedding", L"/Machine"},
      {L"RegServer"},
      {L"/RegServer", L"C:\\file.txt"},
      {L"/"},
  };
  for (const auto& args : bad) {
    EXPECT_EQ(KeepAliveCommand::Parse(args).action, Action::kUsage)
        << ::testing::PrintToString(args);
  }
}

std::wstring DefaultValue(HKEY hive, const std::wstring& key) {
  wchar_t text[512] = {};
  DWORD size = sizeof(text);
  if (RegGetValueW(hive, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &size) !=
      ERROR_SUCCESS) {
    return L"(missing)";
  }
  return text;
}

// The keys COM reads to start a local server by ProgID; the class id is the one the
// add-in's installer package writes (installer/zintra.wxs), spelled out here.
TEST(KeepAliveRegistrationTest, WritesTheLocalServerClassPerUserAndRemovesItAll) {
  const std::wstring clsid = L"Software\\Classes\\CLSID\\{136B76B5-1DE6-4486-BA20-73E19DF74AAA}";
  const std::wstring prog_id = L"Software\\Classes\\ZintraKeepAlive.KeepAlive";
  if (KeyExists(HKEY_CURRENT_USER, prog_id)) GTEST_SKIP() << "registered on this machine";
  const bool had_clsid_key = KeyExists(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID");
  KeepAliveRegistration registration(false);
  const std::wstring exe = L"C:\\Program Files\\Zintra\\ZintraKeepAlive.exe";
  ASSERT_EQ(registration.Register(exe), S_OK);
  EXPECT_EQ(DefaultValue(HKEY_CURRENT_USER, clsid + L"\\LocalServer32"), L"\"" + exe + L"\"");
  EXPECT_EQ(DefaultValue(HKEY_CURRENT_USER, clsid + L"\\ProgID"), L"ZintraKeepAlive.KeepAlive");
  EXPECT_EQ(DefaultValue(HKEY_CURRENT_USER, prog_id + L"\\CLSID"),
            L"{136B76B5-1DE6-4486-BA20-73E19DF74AAA}");
  EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, prog_id)) << "a per-user registration";
  EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, clsid + L"\\InprocServer32"));

  EXPECT_EQ(registration.Unregister(), S_OK);
  EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, clsid));
  EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, prog_id));
  EXPECT_EQ(KeyExists(HKEY_CURRENT_USER, L"Software\\Classes\\CLSID"), had_clsid_key);
  EXPECT_EQ(registration.Unregister(), S_OK) << "removing what is not registered";
  EXPECT_EQ(registration.Register(L""), SELFREG_E_CLASS);
}

}  // namespace
}  // namespace zintra::win32::testing

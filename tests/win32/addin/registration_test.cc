// Self-registration of ZintraAddin.dll, per user and per machine, against the real
// registry: what it writes, and that removing it leaves the registry as it was found.
#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>

#include "tests/win32/addin/addin_dll.h"
#include "tests/win32/addin/registry_snapshot.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/addin/reg_key.h"
#include "win32/addin/server_registration.h"
#include "win32/com/unicode.h"

namespace zintra::win32::testing {
namespace {

constexpr wchar_t kLoaderKey[] =
    L"Software\\Microsoft\\Office\\Outlook\\Addins\\ZintraAddin.Connect";
constexpr wchar_t kAddinsKey[] = L"Software\\Microsoft\\Office\\Outlook\\Addins";

std::wstring ReadString(HKEY hive, const std::wstring& path, const std::wstring& name) {
  RegKey key;
  if (key.Open(hive, path, KEY_READ) != ERROR_SUCCESS) return L"<no key>";
  wchar_t data[1024] = {};
  DWORD size = sizeof data - sizeof(wchar_t);
  DWORD type = 0;
  if (RegQueryValueExW(key.Get(), name.c_str(), nullptr, &type, reinterpret_cast<BYTE*>(data),
                       &size) != ERROR_SUCCESS) {
    return L"<no value>";
  }
  return type == REG_SZ ? std::wstring(data) : L"<not a string>";
}

DWORD ReadDword(HKEY hive, const std::wstring& path, const std::wstring& name) {
  RegKey key;
  DWORD value = 0xFFFFFFFF;
  DWORD size = sizeof value;
  if (key.Open(hive, path, KEY_READ) == ERROR_SUCCESS) {
    RegQueryValueExW(key.Get(), name.c_str(), nullptr, nullptr, reinterpret_cast<BYTE*>(&value),
                     &size);
  }
  return value;
}

// Everything registration may touch in one hive: the keys it writes in full, and the
// keys that enclose them (their values and the names of their subkeys), which
// registration may create and removal may prune.
struct HiveSnapshot {
  std::map<std::wstring, RegistrySnapshot> parts;

  static HiveSnapshot Take(HKEY hive) {
    HiveSnapshot s;
    for (const wchar_t* enclosing :
         {L"Software", L"Software\\Classes", L"Software\\Classes\\CLSID", L"Software\\Microsoft"}) {
      s.parts[enclosing] = RegistrySnapshot::Take(hive, enclosing, 0);
    }
    std::wstring classes = L"Software\\Classes\\";
    for (const std::wstring& own :
         {classes + L"CLSID\\" + GuidText(kClsidConnect),
          classes + L"CLSID\\" + GuidText(kClsidWordLetterHandler),
          classes + L"ZintraAddin.Connect", classes + L"ZintraAddin.WordLetterHandler",
          std::wstring(L"Software\\Microsoft\\Office")}) {
      s.parts[own] = RegistrySnapshot::Take(hive, own);
    }
    return s;
  }
  void ExpectSameAs(const HiveSnapshot& before) const {
    std::string changed;
    for (const auto& [root, snapshot] : parts) {
      for (const auto& k : snapshot.Differences(before.parts.at(root))) {
        changed += " " + Narrow(root + L"\\" + k);
      }
    }
    EXPECT_TRUE(changed.empty()) << "changed keys:" << changed;
  }
};

struct Scope {
  const char* name;
  RegistrationScope scope;
  HKEY hive;
  friend void PrintTo(const Scope& s, std::ostream* os) { *os << s.name; }
};

class RegistrationTest : public ::testing::TestWithParam<Scope> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(dll_.Loaded()) << "ZintraAddin.dll not found next to the test program";
    if (KeyExists(GetParam().hive, L"Software\\Classes\\ZintraAddin.Connect") ||
        KeyExists(GetParam().hive, kLoaderKey)) {
      GTEST_SKIP() << "the add-in is registered on this machine; these tests would remove it";
    }
  }
  HRESULT Register() const {
    return GetParam().scope == RegistrationScope::kUser ? dll_.RegisterServer()
                                                        : dll_.Install(true, L"machine");
  }
  HRESULT Unregister() const {
    return GetParam().scope == RegistrationScope::kUser ? dll_.UnregisterServer()
                                                        : dll_.Install(false, L"MACHINE");
  }
  HKEY Hive() const { return GetParam().hive; }

  AddinDll dll_;
};

TEST_P(RegistrationTest, WritesTheClassesAndOutlooksLoaderValues) {
  ASSERT_EQ(Register(), S_OK);
  std::wstring clsid = GuidText(kClsidConnect);
  std::wstring classes = L"Software\\Classes\\";
  EXPECT_EQ(ReadString(Hive(), classes + L"CLSID\\" + clsid + L"\\InprocServer32", L""),
            dll_.Path());
  EXPECT_EQ(
      ReadString(Hive(), classes + L"CLSID\\" + clsid + L"\\InprocServer32", L"ThreadingModel"),
      L"Apartment");
  EXPECT_EQ(ReadString(Hive(), classes + L"CLSID\\" + clsid + L"\\ProgID", L""),
            L"ZintraAddin.Connect");
  EXPECT_EQ(ReadString(Hive(), classes + L"ZintraAddin.Connect\\CLSID", L""), clsid);
  EXPECT_EQ(ReadString(Hive(), classes + L"ZintraAddin.WordLetterHandler\\CLSID", L""),
            GuidText(kClsidWordLetterHandler));
  EXPECT_EQ(ReadString(Hive(), kLoaderKey, L"FriendlyName"), L"Zintra");
  EXPECT_EQ(ReadString(Hive(), kLoaderKey, L"Description"), L"Zintra 3.0");
  EXPECT_EQ(ReadDword(Hive(), kLoaderKey, L"LoadBehavior"), 3u);
  // The other scope is left alone.
  HKEY other = Hive() == HKEY_CURRENT_USER ? HKEY_LOCAL_MACHINE : HKEY_CURRENT_USER;
  EXPECT_FALSE(KeyExists(other, kLoaderKey));
  EXPECT_EQ(Unregister(), S_OK);
}

TEST_P(RegistrationTest, RemovingLeavesTheRegistryAsFound) {
  // Found without Outlook's add-in keys (empty ones go; any other add-in's stay), so
  // that registration has enclosing keys to create and removal has to take away.
  PruneEmptyKeys(Hive(), kAddinsKey);
  HiveSnapshot before = HiveSnapshot::Take(Hive());
  // Registered twice (an update over an installed copy), removed once.
  ASSERT_EQ(Register(), S_OK);
  ASSERT_EQ(Register(), S_OK);
  EXPECT_EQ(Unregister(), S_OK);
  HiveSnapshot::Take(Hive()).ExpectSameAs(before);
  // Removing what is not registered succeeds and changes nothing.
  EXPECT_EQ(Unregister(), S_OK);
  HiveSnapshot::Take(Hive()).ExpectSameAs(before);
}

TEST_P(RegistrationTest, KeysSharedWithOtherAddinsStay) {
  // Another add-in registered with Outlook: the Addins key it lives in is not ours.
  std::wstring other = std::wstring(kAddinsKey) + L"\\Other.Connect";
  RegKey key;
  ASSERT_EQ(key.Create(Hive(), other, KEY_WRITE), ERROR_SUCCESS);
  ASSERT_EQ(key.SetString(L"FriendlyName", L"Other"), ERROR_SUCCESS);
  key.Close();
  HiveSnapshot before = HiveSnapshot::Take(Hive());
  ASSERT_EQ(Register(), S_OK);
  EXPECT_EQ(Unregister(), S_OK);
  HiveSnapshot::Take(Hive()).ExpectSameAs(before);
  EXPECT_EQ(ReadString(Hive(), other, L"FriendlyName"), L"Other");
  DeleteKeyTree(Hive(), other);
  PruneEmptyKeys(Hive(), kAddinsKey);
}

INSTANTIATE_TEST_SUITE_P(
    Scopes, RegistrationTest,
    ::testing::Values(Scope{"PerUser", RegistrationScope::kUser, HKEY_CURRENT_USER},
                      Scope{"PerMachine", RegistrationScope::kMachine, HKEY_LOCAL_MACHINE}),
    [](const auto& p) { return std::string(p.param.name); });

TEST(DllInstallTest, RefusesAnUnknownScope) {
  AddinDll dll;
  ASSERT_TRUE(dll.Loaded());
  EXPECT_EQ(dll.Install(true, L"everyone"), E_INVALIDARG);
  EXPECT_FALSE(KeyExists(HKEY_CURRENT_USER, kLoaderKey));
  EXPECT_FALSE(KeyExists(HKEY_LOCAL_MACHINE, kLoaderKey));
}

}  // namespace
}  // namespace zintra::win32::testing

#include "win32/addin/server_registration.h"

#include "src/settings/reg_settings.h"
#include "win32/addin/idt_extensibility2_com.h"
#include "win32/addin/reg_key.h"
#include "win32/com/unicode.h"

namespace zintra::win32 {

namespace {

constexpr wchar_t kSoftware[] = L"Software";
constexpr wchar_t kClassesUnderSoftware[] = L"Classes\\";
// Outlook's loader key, below Software, and the enclosing keys that may be pruned.
constexpr wchar_t kAddinsUnderSoftware[] = L"Microsoft\\Office\\Outlook\\Addins";

struct ServerClass {
  const CLSID& clsid;
  const wchar_t* prog_id;
  const wchar_t* name;
};

const ServerClass kClasses[] = {
    {kClsidConnect, kConnectProgId, L"Zintra 3.0"},
    {kClsidWordLetterHandler, kWordLetterHandlerProgId, L"Zintra Word letter handler"},
};

// The loader key's path below Software, from the one definition the settings use.
std::wstring LoaderKeyUnderSoftware() {
  std::wstring key = Widen(kAddinLoaderKey);
  size_t slash = key.find(L'\\');
  return key.substr(slash + 1);
}

}  // namespace

std::wstring GuidText(const GUID& guid) {
  wchar_t text[40] = {};
  StringFromGUID2(guid, text, 40);
  return text;
}

HKEY ServerRegistration::Hive() const {
  return scope_ == RegistrationScope::kUser ? HKEY_CURRENT_USER : HKEY_LOCAL_MACHINE;
}

LONG ServerRegistration::WriteClassKeys(const CLSID& clsid, const std::wstring& prog_id,
                                        const std::wstring& name, const std::wstring& dll_path) {
  std::wstring classes = std::wstring(kSoftware) + L"\\" + kClassesUnderSoftware;
  std::wstring clsid_key = classes + L"CLSID\\" + GuidText(clsid);
  RegKey key;
  LONG r = key.Create(Hive(), clsid_key, KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", name);
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), clsid_key + L"\\InprocServer32", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", dll_path);
  if (r == ERROR_SUCCESS) r = key.SetString(L"ThreadingModel", L"Apartment");
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), clsid_key + L"\\ProgID", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", prog_id);
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), classes + prog_id, KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", name);
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), classes + prog_id + L"\\CLSID", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", GuidText(clsid));
  return r;
}

HRESULT ServerRegistration::Register(const std::wstring& dll_path) {
  if (dll_path.empty()) return SELFREG_E_CLASS;
  LONG r = ERROR_SUCCESS;
  for (const ServerClass& c : kClasses) {
    r = WriteClassKeys(c.clsid, c.prog_id, c.name, dll_path);
    if (r != ERROR_SUCCESS) break;
  }
  if (r == ERROR_SUCCESS) {
    RegSettings settings(registry_, file_system_, platform_);
    if (!settings.WriteAddinLoader(scope_ == RegistrationScope::kUser ? kLocationUser
                                                                      : kLocationMachine)) {
      r = ERROR_ACCESS_DENIED;  // the only way the loader key fails once classes could be written
    }
  }
  if (r == ERROR_SUCCESS) return S_OK;
  Unregister();
  return r == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
}

HRESULT ServerRegistration::Unregister() {
  RegKey software;
  LONG r = software.Open(Hive(), kSoftware, KEY_READ | KEY_WRITE);
  if (r == ERROR_FILE_NOT_FOUND) return S_OK;
  if (r != ERROR_SUCCESS) return r == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
  LONG failed = ERROR_SUCCESS;
  auto remove = [&](const std::wstring& path) {
    if (LONG d = DeleteKeyTree(software.Get(), path); d != ERROR_SUCCESS) failed = d;
  };
  for (const ServerClass& c : kClasses) {
    remove(std::wstring(kClassesUnderSoftware) + L"CLSID\\" + GuidText(c.clsid));
    remove(std::wstring(kClassesUnderSoftware) + c.prog_id);
  }
  remove(LoaderKeyUnderSoftware());
  PruneEmptyKeys(software.Get(), std::wstring(kClassesUnderSoftware) + L"CLSID");
  PruneEmptyKeys(software.Get(), kAddinsUnderSoftware);
  if (failed == ERROR_SUCCESS) return S_OK;
  return failed == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
}

}  // namespace zintra::win32

#include "win32/keepalive/keep_alive_registration.h"

#include "win32/addin/reg_key.h"
#include "win32/keepalive/keep_alive_ids.h"

namespace zintra::win32 {
namespace {

constexpr wchar_t kSoftware[] = L"Software";
constexpr wchar_t kClassesUnderSoftware[] = L"Classes\\";

std::wstring ClassIdText() {
  wchar_t text[40] = {};
  StringFromGUID2(kClsidKeepAlive, text, 40);
  return text;
}

HRESULT ResultOf(LONG r) {
  if (r == ERROR_SUCCESS) return S_OK;
  return r == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
}

}  // namespace

HRESULT KeepAliveRegistration::Register(const std::wstring& exe_path) {
  if (exe_path.empty()) return SELFREG_E_CLASS;
  const std::wstring classes = std::wstring(kSoftware) + L"\\" + kClassesUnderSoftware;
  const std::wstring clsid_key = classes + L"CLSID\\" + ClassIdText();
  RegKey key;
  LONG r = key.Create(Hive(), clsid_key, KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", kKeepAliveClassName);
  // Quoted: the path usually holds spaces ("Program Files"), and COM runs the command.
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), clsid_key + L"\\LocalServer32", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", L"\"" + exe_path + L"\"");
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), clsid_key + L"\\ProgID", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", kKeepAliveProgIdW);
  if (r == ERROR_SUCCESS) r = key.Create(Hive(), classes + kKeepAliveProgIdW, KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", kKeepAliveClassName);
  if (r == ERROR_SUCCESS) {
    r = key.Create(Hive(), classes + kKeepAliveProgIdW + L"\\CLSID", KEY_WRITE);
  }
  if (r == ERROR_SUCCESS) r = key.SetString(L"", ClassIdText());
  key.Close();
  if (r == ERROR_SUCCESS) return S_OK;
  Unregister();
  return ResultOf(r);
}

HRESULT KeepAliveRegistration::Unregister() {
  RegKey software;
  LONG r = software.Open(Hive(), kSoftware, KEY_READ | KEY_WRITE);
  if (r == ERROR_FILE_NOT_FOUND) return S_OK;
  if (r != ERROR_SUCCESS) return ResultOf(r);
  LONG failed = ERROR_SUCCESS;
  for (const std::wstring& path : {std::wstring(kClassesUnderSoftware) + L"CLSID\\" + ClassIdText(),
                                   std::wstring(kClassesUnderSoftware) + kKeepAliveProgIdW}) {
    if (LONG d = DeleteKeyTree(software.Get(), path); d != ERROR_SUCCESS) failed = d;
  }
  PruneEmptyKeys(software.Get(), std::wstring(kClassesUnderSoftware) + L"CLSID");
  return ResultOf(failed);
}

}  // namespace zintra::win32

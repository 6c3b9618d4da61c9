#include "win32/controls/control_registration.h"

#include <olectl.h>

#include "win32/addin/reg_key.h"
#include "win32/addin/server_registration.h"
#include "win32/controls/options_page_control.h"

namespace zintra::win32 {
namespace {

constexpr wchar_t kClasses[] = L"Software\\Classes\\";
constexpr wchar_t kName[] = L"Zintra Options Page";

LONG WriteKeys(HKEY hive, const std::wstring& file_path) {
  const std::wstring clsid = GuidText(kClsidOptionsPage);
  const std::wstring class_key = std::wstring(kClasses) + L"CLSID\\" + clsid;
  const std::wstring prog_key = std::wstring(kClasses) + kOptionsPageProgIdW;
  RegKey key;
  LONG rc = key.Create(hive, class_key, KEY_WRITE);
  if (rc == ERROR_SUCCESS) rc = key.SetString(L"", kName);
  RegKey server;
  if (rc == ERROR_SUCCESS) rc = server.Create(hive, class_key + L"\\InprocServer32", KEY_WRITE);
  if (rc == ERROR_SUCCESS) rc = server.SetString(L"", file_path);
  if (rc == ERROR_SUCCESS) rc = server.SetString(L"ThreadingModel", L"Apartment");
  RegKey prog_id;
  if (rc == ERROR_SUCCESS) rc = prog_id.Create(hive, class_key + L"\\ProgID", KEY_WRITE);
  if (rc == ERROR_SUCCESS) rc = prog_id.SetString(L"", kOptionsPageProgIdW);
  RegKey by_name;
  if (rc == ERROR_SUCCESS) rc = by_name.Create(hive, prog_key, KEY_WRITE);
  if (rc == ERROR_SUCCESS) rc = by_name.SetString(L"", kName);
  RegKey by_name_clsid;
  if (rc == ERROR_SUCCESS) rc = by_name_clsid.Create(hive, prog_key + L"\\CLSID", KEY_WRITE);
  if (rc == ERROR_SUCCESS) rc = by_name_clsid.SetString(L"", clsid);
  return rc;
}

}  // namespace

HRESULT RegisterOptionsPage(HKEY hive, const std::wstring& file_path) {
  LONG rc = WriteKeys(hive, file_path);
  if (rc == ERROR_SUCCESS) return S_OK;
  UnregisterOptionsPage(hive);
  return rc == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
}

HRESULT UnregisterOptionsPage(HKEY hive) {
  const std::wstring clsid = GuidText(kClsidOptionsPage);
  LONG a = DeleteKeyTree(hive, std::wstring(kClasses) + L"CLSID\\" + clsid);
  LONG b = DeleteKeyTree(hive, std::wstring(kClasses) + kOptionsPageProgIdW);
  PruneEmptyKeys(hive, L"Software\\Classes\\CLSID");
  for (LONG rc : {a, b}) {
    if (rc != ERROR_SUCCESS && rc != ERROR_FILE_NOT_FOUND) {
      return rc == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
    }
  }
  return S_OK;
}

}  // namespace zintra::win32

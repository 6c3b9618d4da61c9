#include "win32/toolbar_library/toolbar_registration.h"

#include <olectl.h>

#include "win32/addin/reg_key.h"
#include "win32/toolbar_library/toolbar_helper_object.h"

namespace zintra::win32 {

namespace {

constexpr wchar_t kSoftware[] = L"Software";
constexpr wchar_t kClasses[] = L"Classes\\";

std::wstring ClsidText() {
  wchar_t text[40] = {};
  StringFromGUID2(kClsidToolbarHelper, text, 40);
  return text;
}

HRESULT Result(LONG r) {
  if (r == ERROR_SUCCESS) return S_OK;
  return r == ERROR_ACCESS_DENIED ? E_ACCESSDENIED : SELFREG_E_CLASS;
}

}  // namespace

HRESULT ToolbarRegistration::Register(const std::wstring& dll_path) {
  if (dll_path.empty()) return SELFREG_E_CLASS;
  const std::wstring software = std::wstring(kSoftware) + L"\\" + kClasses;
  const std::wstring clsid_key = software + L"CLSID\\" + ClsidText();
  const std::wstring prog_id_key = software + kToolbarHelperProgIdW;
  RegKey key;
  LONG r = key.Create(hive_, clsid_key, KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", kToolbarHelperName);
  if (r == ERROR_SUCCESS) r = key.Create(hive_, clsid_key + L"\\InprocServer32", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", dll_path);
  if (r == ERROR_SUCCESS) r = key.SetString(L"ThreadingModel", L"Apartment");
  if (r == ERROR_SUCCESS) r = key.Create(hive_, clsid_key + L"\\ProgID", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", kToolbarHelperProgIdW);
  if (r == ERROR_SUCCESS) r = key.Create(hive_, prog_id_key, KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", kToolbarHelperName);
  if (r == ERROR_SUCCESS) r = key.Create(hive_, prog_id_key + L"\\CLSID", KEY_WRITE);
  if (r == ERROR_SUCCESS) r = key.SetString(L"", ClsidText());
  key.Close();
  if (r != ERROR_SUCCESS) Unregister();
  return Result(r);
}

HRESULT ToolbarRegistration::Unregister() {
  RegKey software;
  LONG r = software.Open(hive_, kSoftware, KEY_READ | KEY_WRITE);
  if (r == ERROR_FILE_NOT_FOUND) return S_OK;
  if (r != ERROR_SUCCESS) return Result(r);
  LONG failed = ERROR_SUCCESS;
  for (const std::wstring& path : {std::wstring(kClasses) + L"CLSID\\" + ClsidText(),
                                   std::wstring(kClasses) + kToolbarHelperProgIdW}) {
    if (LONG d = DeleteKeyTree(software.Get(), path); d != ERROR_SUCCESS) failed = d;
  }
  PruneEmptyKeys(software.Get(), std::wstring(kClasses) + L"CLSID");
  return Result(failed);
}

}  // namespace zintra::win32

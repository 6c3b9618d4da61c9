#include "win32/ports/win32_platform.h"

#include <vector>

#include "win32/com/unicode.h"
#include "win32/com/windows_api.h"

#include <winver.h>

namespace zintra::win32 {
namespace {

using RtlGetVersionFn = LONG(WINAPI*)(OSVERSIONINFOW*);

}  // namespace

std::string Win32Platform::TempPath() {
  char buffer[MAX_PATH + 1];
  DWORD length = GetTempPathA(sizeof(buffer), buffer);
  if (length == 0) return std::string();
  if (length < sizeof(buffer)) return std::string(buffer, length);
  std::vector<char> large(length + 1);
  length = GetTempPathA(static_cast<DWORD>(large.size()), large.data());
  return length > 0 && length < large.size() ? std::string(large.data(), length) : std::string();
}

OsVersionInfo Win32Platform::OperatingSystemVersion() {
  OsVersionInfo info;
  OSVERSIONINFOW version{};
  version.dwOSVersionInfoSize = sizeof(version);
  bool known = false;
  if (HMODULE ntdll = GetModuleHandleA("ntdll.dll")) {
    void* address = reinterpret_cast<void*>(GetProcAddress(ntdll, "RtlGetVersion"));
    if (address != nullptr) {
      known = reinterpret_cast<RtlGetVersionFn>(address)(&version) == 0;
    }
  }
  if (!known) known = GetVersionExW(&version) != 0;
  if (!known) return info;
  info.major = version.dwMajorVersion;
  info.minor = version.dwMinorVersion;
  info.build = version.dwBuildNumber;
  info.platform_id = version.dwPlatformId;
  info.service_pack = Narrow(version.szCSDVersion);
  return info;
}

uint16_t Win32Platform::UserInterfaceLanguage() { return GetUserDefaultUILanguage(); }

std::optional<FileVersionInfo> Win32Platform::FileVersion(const std::string& path) {
  DWORD ignored = 0;
  DWORD size = GetFileVersionInfoSizeA(path.c_str(), &ignored);
  if (size == 0) return std::nullopt;
  std::vector<uint8_t> block(size);
  if (!GetFileVersionInfoA(path.c_str(), 0, size, block.data())) return std::nullopt;
  VS_FIXEDFILEINFO* fixed = nullptr;
  UINT fixed_size = 0;
  if (!VerQueryValueA(block.data(), "\\", reinterpret_cast<void**>(&fixed), &fixed_size) ||
      fixed == nullptr || fixed_size < sizeof(VS_FIXEDFILEINFO) ||
      fixed->dwSignature != VS_FFI_SIGNATURE) {
    return std::nullopt;
  }
  return FileVersionInfo{HIWORD(fixed->dwFileVersionMS), LOWORD(fixed->dwFileVersionMS),
                         HIWORD(fixed->dwFileVersionLS), LOWORD(fixed->dwFileVersionLS)};
}

}  // namespace zintra::win32

#include "win32/ports/win32_file_system.h"

#include <algorithm>

#include "src/core/z_error.h"
#include "win32/com/unique_handles.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {
namespace {

constexpr char kFileSystemSource[] = "FileSystem";

const char* Reason(int32_t number) {
  switch (number) {
    case kErrFileNotFound:
      return "File not found";
    case kErrPermissionDenied:
      return "Permission denied";
    case kErrPathNotFound:
      return "Path not found";
    default:
      return "Path/File access error";
  }
}

[[noreturn]] void Fail(DWORD error, const std::string& path) {
  const int32_t number = FileErrorNumber(error);
  throw ZError(
      number,
      std::string(Reason(number)) + ": '" + path + "' (system error " + std::to_string(error) + ")",
      kFileSystemSource);
}

UniqueKernelHandle OpenFile(const std::string& path, DWORD access, DWORD disposition) {
  if (path.empty()) Fail(ERROR_INVALID_NAME, path);
  UniqueKernelHandle file(CreateFileA(path.c_str(), access, FILE_SHARE_READ, nullptr, disposition,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file.valid()) Fail(GetLastError(), path);
  return file;
}

void WriteBytes(HANDLE file, const std::string& contents, const std::string& path) {
  size_t done = 0;
  while (done < contents.size()) {
    const DWORD chunk = static_cast<DWORD>(std::min<size_t>(contents.size() - done, 1u << 24));
    DWORD written = 0;
    if (!WriteFile(file, contents.data() + done, chunk, &written, nullptr) || written == 0) {
      Fail(GetLastError(), path);
    }
    done += written;
  }
}

DWORD Attributes(const std::string& path) {
  return path.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesA(path.c_str());
}

}  // namespace

int32_t FileErrorNumber(unsigned long win32_error) {
  switch (win32_error) {
    case ERROR_FILE_NOT_FOUND:
      return kErrFileNotFound;
    case ERROR_PATH_NOT_FOUND:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
    case ERROR_INVALID_DRIVE:
      return kErrPathNotFound;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return kErrPermissionDenied;
    default:
      return kErrPathFileAccess;
  }
}

std::string Win32FileSystem::ReadAll(const std::string& path) {
  UniqueKernelHandle file = OpenFile(path, GENERIC_READ, OPEN_EXISTING);
  std::string contents;
  LARGE_INTEGER size{};
  if (GetFileSizeEx(file.get(), &size)) contents.reserve(static_cast<size_t>(size.QuadPart));
  char buffer[64 * 1024];
  for (;;) {
    DWORD read = 0;
    if (!ReadFile(file.get(), buffer, sizeof(buffer), &read, nullptr)) Fail(GetLastError(), path);
    if (read == 0) break;
    contents.append(buffer, read);
  }
  return contents;
}

void Win32FileSystem::WriteAll(const std::string& path, const std::string& contents) {
  UniqueKernelHandle file = OpenFile(path, GENERIC_WRITE, CREATE_ALWAYS);
  WriteBytes(file.get(), contents, path);
}

void Win32FileSystem::Append(const std::string& path, const std::string& contents) {
  UniqueKernelHandle file = OpenFile(path, FILE_APPEND_DATA, OPEN_ALWAYS);
  WriteBytes(file.get(), contents, path);
}

bool Win32FileSystem::FileExists(const std::string& path) {
  DWORD attributes = Attributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool Win32FileSystem::FolderExists(const std::string& path) {
  DWORD attributes = Attributes(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

void Win32FileSystem::Remove(const std::string& path) {
  if (FolderExists(path)) Fail(ERROR_ACCESS_DENIED, path);  // Kill removes files only
  if (!DeleteFileA(path.c_str())) Fail(GetLastError(), path);
}

void Win32FileSystem::MakeFolder(const std::string& path) {
  if (!CreateDirectoryA(path.c_str(), nullptr)) Fail(GetLastError(), path);
}

}  // namespace zintra::win32

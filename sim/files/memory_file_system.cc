#include "sim/files/memory_file_system.h"

#include <stdexcept>

#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra::sim {

namespace {

[[noreturn]] void Fail(int32_t number, const std::string& what, const std::string& path) {
  throw ZError(number, what + ": '" + path + "'", "MemoryFileSystem");
}

bool IsRoot(const std::string& key) {
  if (key.size() == 2 && key[1] == ':') return true;
  if (key.rfind("\\\\", 0) == 0) {
    // \\server\share: exactly one backslash after the server name.
    size_t slash = key.find('\\', 2);
    return slash != std::string::npos && key.find('\\', slash + 1) == std::string::npos;
  }
  return false;
}

}  // namespace

std::string MemoryFileSystem::Key(const std::string& path) {
  std::string key = text::LCase(text::Replace(path, "/", "\\"));
  while (key.size() > 1 && key.back() == '\\') key.pop_back();
  return key;
}

std::string MemoryFileSystem::ParentKey(const std::string& key) {
  size_t slash = key.rfind('\\');
  return slash == std::string::npos ? std::string() : key.substr(0, slash);
}

bool MemoryFileSystem::FolderKeyExists(const std::string& key) const {
  return IsRoot(key) || folders_.count(key) != 0;
}

void MemoryFileSystem::CheckFault(const std::string& member, const std::string& path) {
  auto it = faults_.find(member);
  if (it == faults_.end()) return;
  Fault& fault = it->second;
  if (fault.skip > 0) {
    --fault.skip;
    return;
  }
  int32_t error = fault.error;
  if (fault.times > 0 && --fault.times == 0) faults_.erase(it);
  Fail(error, "Injected failure of " + member, path);
}

MemoryFileSystem::File& MemoryFileSystem::Existing(const std::string& path) {
  auto it = files_.find(Key(path));
  if (it == files_.end()) {
    if (!FolderKeyExists(ParentKey(Key(path)))) Fail(kErrPathNotFound, "Path not found", path);
    Fail(kErrFileNotFound, "File not found", path);
  }
  if (it->second.unopenable) Fail(kErrPermissionDenied, "Permission denied", path);
  return it->second;
}

MemoryFileSystem::File& MemoryFileSystem::Writable(const std::string& path) {
  const std::string key = Key(path);
  auto it = files_.find(key);
  if (it == files_.end()) {
    if (path.empty() || folders_.count(key))
      Fail(kErrPathFileAccess, "Path/File access error", path);
    if (!FolderKeyExists(ParentKey(key))) Fail(kErrPathNotFound, "Path not found", path);
    return files_[key] = File{path, {}, false, false};
  }
  if (it->second.unopenable) Fail(kErrPermissionDenied, "Permission denied", path);
  if (it->second.read_only) Fail(kErrPathFileAccess, "Path/File access error", path);
  return it->second;
}

std::string MemoryFileSystem::ReadAll(const std::string& path) {
  CheckFault("ReadAll", path);
  return Existing(path).contents;
}

void MemoryFileSystem::WriteAll(const std::string& path, const std::string& contents) {
  CheckFault("WriteAll", path);
  Writable(path).contents = contents;
}

void MemoryFileSystem::Append(const std::string& path, const std::string& contents) {
  CheckFault("Append", path);
  Writable(path).contents += contents;
}

bool MemoryFileSystem::FileExists(const std::string& path) { return files_.count(Key(path)) != 0; }

bool MemoryFileSystem::FolderExists(const std::string& path) { return FolderKeyExists(Key(path)); }

void MemoryFileSystem::Remove(const std::string& path) {
  CheckFault("Remove", path);
  File& file = Existing(path);
  if (file.read_only) Fail(kErrPathFileAccess, "Path/File access error", path);
  files_.erase(Key(path));
}

void MemoryFileSystem::MakeFolder(const std::string& path) {
  CheckFault("MakeFolder", path);
  const std::string key = Key(path);
  if (FolderKeyExists(key) || files_.count(key)) {
    Fail(kErrPathFileAccess, "Path/File access error", path);
  }
  if (!FolderKeyExists(ParentKey(key))) Fail(kErrPathNotFound, "Path not found", path);
  folders_.insert(key);
}

void MemoryFileSystem::AddFile(const std::string& path, const std::string& contents) {
  const std::string key = Key(path);
  AddFolder(ParentKey(key));
  File& file = files_[key];
  if (file.path.empty()) file.path = path;
  file.contents = contents;
}

void MemoryFileSystem::AddFolder(const std::string& path) {
  for (std::string key = Key(path); !key.empty() && !FolderKeyExists(key); key = ParentKey(key)) {
    folders_.insert(key);
  }
}

std::optional<std::string> MemoryFileSystem::Contents(const std::string& path) const {
  auto it = files_.find(Key(path));
  if (it == files_.end()) return std::nullopt;
  return it->second.contents;
}

void MemoryFileSystem::SetReadOnly(const std::string& path, bool read_only) {
  auto it = files_.find(Key(path));
  if (it == files_.end()) throw std::invalid_argument("MemoryFileSystem: no file '" + path + "'");
  it->second.read_only = read_only;
}

void MemoryFileSystem::SetUnopenable(const std::string& path, bool unopenable) {
  auto it = files_.find(Key(path));
  if (it == files_.end()) throw std::invalid_argument("MemoryFileSystem: no file '" + path + "'");
  it->second.unopenable = unopenable;
}

void MemoryFileSystem::FailCall(const std::string& member, int32_t error, int skip, int times) {
  faults_[member] = Fault{error, skip, times};
}

}  // namespace zintra::sim

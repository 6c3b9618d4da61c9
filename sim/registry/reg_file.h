// RegFile: registry fixtures in the text that regedit reads and writes. The header line
// is "Windows Registry Editor Version 5.00" (UTF-16LE with a byte-order mark as regedit
// saves it, or the same text in UTF-8) or "REGEDIT4". Understood: [key] and [-key] lines,
// "name"= / @= values as "string", dword:XXXXXXXX, hex:.. and hex(n):.. (continued over
// lines ending in "\"; the strings hex(1), hex(2) and hex(7) are UTF-16LE in a version 5
// file), "name"=- deletions, and ";" comments. Only HKEY_CURRENT_USER and
// HKEY_LOCAL_MACHINE (or HKCU, HKLM) are known, and keys at most 512 levels deep.
//
// Import checks the whole text before it changes anything: a syntax error throws
// RegFileError naming the source and line, and the registry is left as it was. Import
// and Export work on the fixture side of MemoryRegistry (no access rules).
#pragma once

#include <stdexcept>
#include <string>

#include "sim/registry/memory_registry.h"

namespace zintra::sim {

enum class RegEncoding { kUtf16, kUtf8 };

class RegFileError : public std::runtime_error {
 public:
  RegFileError(const std::string& source, int line, const std::string& problem)
      : std::runtime_error(source + ":" + std::to_string(line) + ": " + problem), line_(line) {}
  int line() const { return line_; }

 private:
  int line_;
};

class RegFile {
 public:
  // Applies `bytes` (a whole .reg file) to `registry`; `source` names it in errors.
  static void Import(MemoryRegistry& registry, const std::string& bytes, const std::string& source);
  // The key hive\path and its subtree as regedit exports them (CR LF line ends).
  // Throws std::invalid_argument when the key does not exist.
  static std::string Export(const MemoryRegistry& registry, HKey hive, const std::string& path,
                            RegEncoding encoding = RegEncoding::kUtf16);
};

}  // namespace zintra::sim

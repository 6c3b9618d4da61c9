// RegFile::Export: the key and its subtree, keys in alphabetical order, values in the
// order they were created, as regedit writes them.
#include <cstdio>
#include <stdexcept>

#include "sim/registry/reg_file.h"
#include "sim/registry/utf16.h"
#include "src/core/text.h"

namespace zintra::sim {

namespace {

constexpr size_t kHexLineWidth = 76;

std::string Quote(const std::string& text) {
  return "\"" + text::Replace(text::Replace(text, "\\", "\\\\"), "\"", "\\\"") + "\"";
}

std::string HiveName(HKey hive) {
  return hive == kHKeyCurrentUser ? "HKEY_CURRENT_USER" : "HKEY_LOCAL_MACHINE";
}

// A REG_SZ that regedit can write as "text": zero-terminated, no zero inside, and no
// line break, which would end the line in the middle of the text.
bool IsPlainString(const RegistryValue& value) {
  if (value.type != kRegSz || value.data.empty() || value.data.back() != 0) return false;
  for (size_t i = 0; i + 1 < value.data.size(); ++i) {
    if (value.data[i] == 0 || value.data[i] == '\r' || value.data[i] == '\n') return false;
  }
  return true;
}

std::string HexData(const std::string& prefix, const std::string& bytes) {
  std::string out = prefix;
  size_t line_length = prefix.size();
  char digits[4];
  for (size_t i = 0; i < bytes.size(); ++i) {
    std::snprintf(digits, sizeof digits, "%02x", static_cast<uint8_t>(bytes[i]));
    out += digits;
    line_length += 2;
    if (i + 1 < bytes.size()) {
      out += ",";
      ++line_length;
      if (line_length > kHexLineWidth) {
        out += "\\\r\n  ";
        line_length = 2;
      }
    }
  }
  return out;
}

std::string FormatValue(const RegistryValue& value, bool unicode) {
  std::string line = value.name.empty() ? "@=" : Quote(value.name) + "=";
  if (IsPlainString(value)) return line + Quote(value.AsString());
  if (std::optional<uint32_t> dword = value.AsDword()) {
    char digits[16];
    std::snprintf(digits, sizeof digits, "%08x", *dword);
    return line + "dword:" + digits;
  }
  std::string bytes(value.data.begin(), value.data.end());
  if (unicode &&
      (value.type == kRegSz || value.type == kRegExpandSz || value.type == kRegMultiSz)) {
    bytes = Utf8ToUtf16Le(bytes);
  }
  if (value.type == kRegBinary) return HexData(line + "hex:", bytes);
  char kind[16];
  std::snprintf(kind, sizeof kind, "hex(%x):", value.type);
  return HexData(line + kind, bytes);
}

}  // namespace

std::string RegFile::Export(const MemoryRegistry& registry, HKey hive, const std::string& path,
                            RegEncoding encoding) {
  if (path.empty() || !registry.HasKey(hive, path)) {
    throw std::invalid_argument("RegFile::Export: no key '" + path + "'");
  }
  const bool unicode = true;  // both encodings carry the 5.00 format
  std::string out = "Windows Registry Editor Version 5.00\r\n\r\n";
  // One pass over the tree: a key hundreds of levels deep is not walked to from the hive
  // once per key above it.
  registry.VisitTree(hive, path,
                     [&](const std::string& key_path, const std::vector<RegistryValue>& values) {
                       out += "[" + HiveName(hive) + "\\" + key_path + "]\r\n";
                       for (const RegistryValue& value : values) {
                         out += FormatValue(value, unicode) + "\r\n";
                       }
                       out += "\r\n";
                     });
  if (encoding == RegEncoding::kUtf8) return out;
  return "\xFF\xFE" + Utf8ToUtf16Le(out);
}

}  // namespace zintra::sim

// RegFile::Import: parse everything into operations first, then apply them.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <optional>
#include <vector>

#include "sim/registry/reg_file.h"
#include "sim/registry/utf16.h"
#include "src/core/text.h"

namespace zintra::sim {

namespace {

constexpr char kHeader5[] = "Windows Registry Editor Version 5.00";
constexpr char kHeader4[] = "REGEDIT4";

// One [key] or [-key] line with the value lines under it: the key's path is kept once
// and walked once, however many values follow.
struct Section {
  bool delete_key;
  HKey hive;
  std::string path;
  std::vector<ValueEdit> edits;
};

struct Line {
  int number;
  std::string text;
};

std::string StripBlanks(const std::string& s) {
  size_t begin = s.find_first_not_of(" \t");
  if (begin == std::string::npos) return {};
  size_t end = s.find_last_not_of(" \t");
  return s.substr(begin, end - begin + 1);
}

// Where `c` next occurs in text at or after `from` (text.size() if nowhere); memchr, as
// an exported tree's lines are long.
size_t NextOf(const std::string& text, size_t from, char c) {
  const void* at = std::memchr(text.data() + from, c, text.size() - from);
  return at ? static_cast<size_t>(static_cast<const char*>(at) - text.data()) : text.size();
}

std::vector<Line> SplitLines(const std::string& text) {
  std::vector<Line> lines;
  size_t pos = 0;
  int number = 1;
  // The next CR and the next LF, each looked for again only once passed, so that a
  // file with only one kind of line end is still read in linear time.
  size_t cr = NextOf(text, 0, '\r');
  size_t lf = NextOf(text, 0, '\n');
  while (pos <= text.size()) {
    if (cr < pos) cr = NextOf(text, pos, '\r');
    if (lf < pos) lf = NextOf(text, pos, '\n');
    size_t end = std::min(cr, lf);
    lines.push_back(Line{number++, text.substr(pos, end - pos)});
    if (end == text.size()) break;
    pos = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
  return lines;
}

// How many '\\' the path holds, counted up to kMaxKeyDepth.
size_t Separators(const std::string& path) {
  size_t count = 0;
  for (size_t at = NextOf(path, 0, '\\'); at < path.size() && count < kMaxKeyDepth;
       at = NextOf(path, at + 1, '\\')) {
    ++count;
  }
  return count;
}

class Parser {
 public:
  Parser(const std::string& source, std::vector<Line> lines)
      : source_(source), lines_(std::move(lines)) {}

  std::vector<Section> Parse() {
    size_t index = 0;
    while (index < lines_.size() && StripBlanks(lines_[index].text).empty()) ++index;
    if (index == lines_.size()) Fail(1, "empty file, no header line");
    const std::string header = StripBlanks(lines_[index].text);
    if (header == kHeader5) {
      unicode_ = true;
    } else if (header != kHeader4) {
      Fail(lines_[index].number, "expected the header \"" + std::string(kHeader5) + "\"");
    }
    for (++index; index < lines_.size(); ++index) ParseLine(&index);
    return std::move(sections_);
  }

 private:
  [[noreturn]] void Fail(int line, const std::string& problem) const {
    throw RegFileError(source_, line, problem);
  }

  void ParseLine(size_t* index) {
    const int number = lines_[*index].number;
    const std::string line = StripBlanks(lines_[*index].text);
    if (line.empty() || line[0] == ';') return;
    if (line[0] == '[') return ParseKey(number, line);
    if (line[0] != '"' && line[0] != '@') Fail(number, "not a key, value or comment line");
    if (sections_.empty()) Fail(number, "a value before any [key] line");
    if (sections_.back().delete_key) Fail(number, "a value under a key that is being deleted");
    size_t pos = 0;
    RegistryValue value;
    if (line[0] == '@') {
      pos = 1;
    } else {
      value.name = ParseQuoted(number, line, &pos);
    }
    while (pos < line.size() && (line[pos] == ' ' || line[pos] == '\t')) ++pos;
    if (pos >= line.size() || line[pos] != '=') Fail(number, "expected '=' after the value name");
    std::string data = StripBlanks(line.substr(pos + 1));
    if (data == "-") {
      sections_.back().edits.push_back(ValueEdit{std::move(value), true});
      return;
    }
    if (!data.empty() && data[0] == '"') {
      size_t at = 0;
      std::string text = ParseQuoted(number, data, &at);
      if (!StripBlanks(data.substr(at)).empty()) Fail(number, "text after the closing quote");
      value.type = kRegSz;
      value.data.assign(text.begin(), text.end());
      value.data.push_back(0);
    } else if (text::StartsWith(text::LCase(data), "dword:")) {
      value.type = kRegDword;
      uint32_t number_value = ParseDword(number, data.substr(6));
      for (int shift = 0; shift < 32; shift += 8) {
        value.data.push_back(static_cast<uint8_t>(number_value >> shift));
      }
    } else if (text::StartsWith(text::LCase(data), "hex")) {
      ParseHex(index, number, data, &value);
    } else {
      Fail(number, "value data is not \"text\", dword:, hex: or -");
    }
    sections_.back().edits.push_back(ValueEdit{std::move(value), false});
  }

  void ParseKey(int number, const std::string& line) {
    size_t close = line.rfind(']');
    if (close == std::string::npos) Fail(number, "a key line without its closing ']'");
    if (!StripBlanks(line.substr(close + 1)).empty()) Fail(number, "text after ']'");
    std::string name = line.substr(1, close - 1);
    const bool delete_key = !name.empty() && name[0] == '-';
    if (delete_key) name.erase(0, 1);
    size_t slash = name.find('\\');
    const std::string hive_name = text::UCase(name.substr(0, slash));
    HKey hive = 0;
    if (hive_name == "HKEY_CURRENT_USER" || hive_name == "HKCU") {
      hive = kHKeyCurrentUser;
    } else if (hive_name == "HKEY_LOCAL_MACHINE" || hive_name == "HKLM") {
      hive = kHKeyLocalMachine;
    } else {
      Fail(number, "unknown hive '" + name.substr(0, slash) + "'");
    }
    std::string path = slash == std::string::npos ? std::string() : name.substr(slash + 1);
    if (path.empty()) Fail(number, "a hive cannot be created or deleted");
    if (Separators(path) >= kMaxKeyDepth) {
      Fail(number, "a key more than " + std::to_string(kMaxKeyDepth) + " levels deep");
    }
    sections_.push_back(Section{delete_key, hive, std::move(path), {}});
  }

  // A "..." string starting at line[*pos]; \\ and \" are the only escapes.
  std::string ParseQuoted(int number, const std::string& line, size_t* pos) const {
    std::string out;
    for (size_t i = *pos + 1; i < line.size(); ++i) {
      if (line[i] == '"') {
        *pos = i + 1;
        return out;
      }
      if (line[i] == '\\') {
        if (i + 1 >= line.size() || (line[i + 1] != '\\' && line[i + 1] != '"')) {
          Fail(number, "a backslash in quoted text must be written \\\\");
        }
        ++i;
      }
      out.push_back(line[i]);
    }
    Fail(number, "quoted text without its closing quote");
  }

  uint32_t ParseDword(int number, const std::string& digits) const {
    std::string trimmed = StripBlanks(digits);
    if (trimmed.empty() || trimmed.size() > 8 ||
        trimmed.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
      Fail(number, "dword: needs 1 to 8 hexadecimal digits, found '" + trimmed + "'");
    }
    return static_cast<uint32_t>(std::stoul(trimmed, nullptr, 16));
  }

  void ParseHex(size_t* index, int number, const std::string& first, RegistryValue* value) {
    size_t colon = first.find(':');
    if (colon == std::string::npos) Fail(number, "hex data without ':'");
    std::string kind = text::LCase(first.substr(0, colon));
    value->type = kRegBinary;
    if (kind != "hex") {
      // A value type is a DWORD: at most eight hexadecimal digits.
      if (kind.size() < 6 || kind.size() > 13 || kind.compare(0, 4, "hex(") != 0 ||
          kind.back() != ')' || kind.find_first_not_of("0123456789abcdef", 4) != kind.size() - 1) {
        Fail(number, "unknown value type '" + first.substr(0, colon) + "'");
      }
      value->type = static_cast<uint32_t>(std::stoul(kind.substr(4, kind.size() - 5), nullptr, 16));
    }
    std::string bytes_text = StripBlanks(first.substr(colon + 1));
    // A line that ends in a backslash goes on in the next line. Only the new line is
    // stripped, so data continued over many lines is read in linear time.
    while (!bytes_text.empty() && bytes_text.back() == '\\') {
      bytes_text.pop_back();
      if (++*index >= lines_.size()) Fail(number, "the file ends inside continued hex data");
      std::string next = StripBlanks(lines_[*index].text);
      if (next.empty()) Fail(number, "a blank line inside continued hex data");
      bytes_text += next;
    }
    std::string bytes;
    std::vector<std::string> parts = text::Split(bytes_text, ",");
    for (size_t i = 0; i < parts.size(); ++i) {
      std::string part = StripBlanks(parts[i]);
      if (part.empty() && i + 1 == parts.size()) break;  // trailing comma
      if (part.empty() && parts.size() == 1) break;      // no data at all
      if (part.empty() || part.size() > 2 ||
          part.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos) {
        Fail(number, "hex data must be two-digit bytes separated by commas, found '" + part + "'");
      }
      bytes.push_back(static_cast<char>(std::stoul(part, nullptr, 16)));
    }
    if (unicode_ &&
        (value->type == kRegSz || value->type == kRegExpandSz || value->type == kRegMultiSz)) {
      if (bytes.size() % 2 != 0) Fail(number, "UTF-16 string data with an odd number of bytes");
      bytes = Utf16LeToUtf8(bytes);
    }
    value->data.assign(bytes.begin(), bytes.end());
  }

  std::string source_;
  std::vector<Line> lines_;
  bool unicode_ = false;
  std::vector<Section> sections_;
};

std::string Decode(const std::string& bytes, const std::string& source) {
  if (bytes.size() >= 2 && static_cast<uint8_t>(bytes[0]) == 0xFF &&
      static_cast<uint8_t>(bytes[1]) == 0xFE) {
    if (bytes.size() % 2 != 0) {
      throw RegFileError(source, 1, "UTF-16 text with an odd number of bytes");
    }
    return Utf16LeToUtf8(std::string_view(bytes).substr(2));
  }
  if (bytes.compare(0, 3, "\xEF\xBB\xBF") == 0) return bytes.substr(3);
  return bytes;
}

}  // namespace

void RegFile::Import(MemoryRegistry& registry, const std::string& bytes,
                     const std::string& source) {
  std::vector<Section> sections = Parser(source, SplitLines(Decode(bytes, source))).Parse();
  for (Section& section : sections) {
    if (section.delete_key) {
      registry.RemoveKey(section.hive, section.path);
    } else {
      registry.EditValues(section.hive, section.path, std::move(section.edits));
    }
  }
}

}  // namespace zintra::sim

#include "src/settings/settings_file.h"

#include "src/core/text.h"

namespace zintra {

namespace {

constexpr char kHeader[] = "; Zintra3.0.x Settings File";

std::string OpeningTag(const std::string& full_name) { return "<" + full_name + ">"; }
std::string ClosingTag(const std::string& full_name) { return "</" + full_name + ">"; }

}  // namespace

void SettingsFile::Load(const std::string& contents) {
  buffer_.clear();
  size_t pos = 0;
  while (pos < contents.size()) {
    size_t end = contents.find_first_of("\r\n", pos);
    if (end == std::string::npos) end = contents.size();
    if (contents.compare(pos, 1, ";") != 0) buffer_.append(contents, pos, end - pos);
    pos = end;
    if (pos < contents.size() && contents[pos] == '\r') ++pos;
    if (pos < contents.size() && contents[pos] == '\n') ++pos;
  }
  loaded_ = true;
}

void SettingsFile::Clear() {
  buffer_.clear();
  loaded_ = false;
}

std::string SettingsFile::Contents() const {
  return std::string(kHeader) + "\r\n" + InsertLinebreaks(buffer_);
}

SettingsFile::Lookup SettingsFile::Get(const std::string& full_name, std::string* text) const {
  text->clear();
  const std::string open = OpeningTag(full_name);
  size_t start = text::FindNoCase(buffer_, open);
  if (start == std::string::npos) return Lookup::kMissing;
  start += open.size();
  size_t end = text::FindNoCase(buffer_, ClosingTag(full_name), start);
  if (end == std::string::npos) return Lookup::kUnterminated;
  *text = buffer_.substr(start, end - start);
  return Lookup::kFound;
}

void SettingsFile::Set(const std::string& full_name, const std::string& text) {
  const std::string open = OpeningTag(full_name);
  const std::string close = ClosingTag(full_name);
  size_t start = text::FindNoCase(buffer_, open);
  if (start == std::string::npos) {
    buffer_ += open + text + close;
    return;
  }
  start += open.size();
  size_t end = text::FindNoCase(buffer_, close, start);
  if (end == std::string::npos) {
    buffer_.insert(start, text + close);
    return;
  }
  buffer_.replace(start, end - start, text);
}

bool SettingsFile::Delete(const std::string& full_name) {
  const std::string open = OpeningTag(full_name);
  const std::string close = ClosingTag(full_name);
  size_t start = text::FindNoCase(buffer_, open);
  if (start == std::string::npos) return false;
  size_t end = text::FindNoCase(buffer_, close, start + open.size());
  if (end == std::string::npos) return false;
  buffer_.erase(start, end + close.size() - start);
  return true;
}

std::string SettingsFile::InsertLinebreaks(const std::string& text) {
  std::string out = text;
  size_t count = 0;
  size_t pos = out.find('>');
  while (pos != std::string::npos) {
    ++count;
    size_t next = pos + 1;
    if (count % 2 == 0) {
      out.insert(next, "\r\n");
      next += 2;
    }
    pos = out.find('>', next);
  }
  return out;
}

}  // namespace zintra

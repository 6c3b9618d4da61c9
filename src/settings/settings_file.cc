#include "src/settings/settings_file.h"

#include "src/core/text.h"

namespace zintra {

namespace {

constexpr char kHeader[] = "; Zintra3.0.x Settings File";

std::string OpeningTag(const std::string& full_name) { return "<" + full_name + ">"; }
std::string ClosingTag(const std::string& full_name) { return "</" + full_name + ">"; }

}  // namespace

size_t SettingsFile::FindOpening(const std::string& full_name) const {
  if (!index_valid_) {
    // Every occurrence of an opening tag starts at a "<" and ends at the next ">",
    // since names hold neither.
    index_.clear();
    for (size_t open = buffer_.find('<'); open != std::string::npos;
         open = buffer_.find('<', open + 1)) {
      size_t close = buffer_.find('>', open + 1);
      if (close == std::string::npos) break;
      index_.emplace(text::LCase(std::string_view(buffer_).substr(open + 1, close - open - 1)),
                     open);
    }
    index_valid_ = true;
  }
  auto it = index_.find(text::LCase(full_name));
  return it == index_.end() ? std::string::npos : it->second;
}

void SettingsFile::Load(const std::string& contents) {
  Invalidate();
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
  Invalidate();
  buffer_.clear();
  loaded_ = false;
}

std::string SettingsFile::Contents() const {
  return std::string(kHeader) + "\r\n" + InsertLinebreaks(buffer_);
}

SettingsFile::Lookup SettingsFile::Get(const std::string& full_name, std::string* text) const {
  text->clear();
  size_t start = FindOpening(full_name);
  if (start == std::string::npos) return Lookup::kMissing;
  start += full_name.size() + 2;
  size_t end = text::FindNoCase(buffer_, ClosingTag(full_name), start);
  if (end == std::string::npos) return Lookup::kUnterminated;
  *text = buffer_.substr(start, end - start);
  return Lookup::kFound;
}

void SettingsFile::Set(const std::string& full_name, const std::string& text) {
  const std::string open = OpeningTag(full_name);
  const std::string close = ClosingTag(full_name);
  const bool plain = text.find_first_of("<>") == std::string::npos;
  size_t start = FindOpening(full_name);
  if (start == std::string::npos) {
    if (plain) index_.emplace(text::LCase(full_name), buffer_.size());
    if (!plain) Invalidate();
    buffer_ += open + text + close;
    return;
  }
  start += open.size();
  size_t end = text::FindNoCase(buffer_, close, start);
  if (end == std::string::npos) {
    Invalidate();
    buffer_.insert(start, text + close);
    return;
  }
  const bool was_plain = buffer_.find_first_of("<>", start) >= end;
  const long long delta = static_cast<long long>(text.size()) - static_cast<long long>(end - start);
  buffer_.replace(start, end - start, text);
  if (!plain || !was_plain) {
    Invalidate();
  } else if (delta != 0) {
    for (auto& [name, position] : index_) {
      if (position > start)
        position = static_cast<size_t>(static_cast<long long>(position) + delta);
    }
  }
}

bool SettingsFile::Delete(const std::string& full_name) {
  const std::string close = ClosingTag(full_name);
  size_t start = FindOpening(full_name);
  if (start == std::string::npos) return false;
  size_t end = text::FindNoCase(buffer_, close, start + full_name.size() + 2);
  if (end == std::string::npos) return false;
  buffer_.erase(start, end + close.size() - start);
  Invalidate();  // a later duplicate of the entry may now be the first
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

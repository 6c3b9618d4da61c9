// SettingsFile: the in-memory buffer of an enterprise settings file. The file is a
// header comment line followed by entries "<" full name ">" value "</" full name ">",
// where the full name is the product key, a backslash and the value name. Loading drops
// every line that starts with ";" and joins the others with no separator; saving writes
// the header and the buffer with a line end after each entry. Tags are found without
// regard to letter case; the first occurrence of an entry wins. Pure text: the owner
// does the file I/O. Opening tags are found through an index of every "<...>" in the
// buffer, so reading all values of a large file stays linear.
#pragma once

#include <string>
#include <unordered_map>

namespace zintra {

class SettingsFile {
 public:
  enum class Lookup { kFound, kMissing, kUnterminated };

  // Replaces the buffer with the non-comment lines of `contents` (CR LF, CR or LF ends
  // a line).
  void Load(const std::string& contents);
  // Empties the buffer and marks it unloaded.
  void Clear();
  bool loaded() const { return loaded_; }
  void set_loaded(bool loaded) { loaded_ = loaded; }
  const std::string& buffer() const { return buffer_; }

  // The text of the file as it is saved: the header line, then the entries.
  std::string Contents() const;

  // The value text of `full_name`: kMissing without its opening tag, kUnterminated when
  // no closing tag follows it (the text is then left empty).
  Lookup Get(const std::string& full_name, std::string* text) const;
  // Replaces the value text, or appends a new entry at the end when the opening tag is
  // absent. An unterminated entry is closed directly behind its opening tag, so that
  // the text after it is kept.
  void Set(const std::string& full_name, const std::string& text);
  // Removes the entry with both tags; false when there was no complete entry.
  bool Delete(const std::string& full_name);

  // Puts CR LF directly behind every second ">".
  static std::string InsertLinebreaks(const std::string& text);

 private:
  // Position of the first opening tag of `full_name`, or npos.
  size_t FindOpening(const std::string& full_name) const;
  void Invalidate() { index_valid_ = false; }

  std::string buffer_;
  bool loaded_ = false;
  // Lower-case name -> position of its first "<name>"; rebuilt when a change could
  // have created or removed tags.
  mutable std::unordered_map<std::string, size_t> index_;
  mutable bool index_valid_ = false;
};

}  // namespace zintra

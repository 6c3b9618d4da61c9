// JsonSource: a JSON document read from a file together with the line on which each
// value starts, so that a reader can name the line of a field it rejects; and JsonNode,
// a cursor into it that reads fields strictly (wrong type, missing required field or
// unknown field -> InputError naming the file, line and JSON pointer of the field).
#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <nlohmann/json.hpp>

namespace zintra::simtool {

class JsonSource {
 public:
  // Throws InputError on a syntax error (with its line and column).
  JsonSource(const std::string& text, std::string file);
  const nlohmann::json& Root() const { return root_; }
  const std::string& File() const { return file_; }
  // The line a value (by JSON pointer) starts on; the nearest enclosing value's line
  // when the pointer was not seen (a missing field: its object's line).
  int LineOf(const std::string& pointer) const;

 private:
  std::string file_;
  nlohmann::json root_;
  std::unordered_map<std::string, int> lines_;
};

class JsonNode {
 public:
  JsonNode(const JsonSource& source, const nlohmann::json& value, std::string pointer)
      : source_(&source), value_(&value), pointer_(std::move(pointer)) {}

  const nlohmann::json& Value() const { return *value_; }
  const std::string& Pointer() const { return pointer_; }
  int Line() const { return source_->LineOf(pointer_); }
  [[noreturn]] void Fail(const std::string& problem) const;

  bool IsObject() const { return value_->is_object(); }
  bool IsArray() const { return value_->is_array(); }
  bool IsString() const { return value_->is_string(); }
  // Object access; every call checks this node is an object.
  bool Has(const std::string& key) const;
  std::optional<JsonNode> Get(const std::string& key) const;
  JsonNode Need(const std::string& key) const;
  // Rejects fields not in `known` (a misspelt field would otherwise be ignored).
  void OnlyKeys(std::initializer_list<const char*> known) const;
  // Array access (this node must be an array).
  std::vector<JsonNode> Elements() const;
  // The object's members in file order.
  std::vector<std::pair<std::string, JsonNode>> Members() const;

  // This node as a typed value, or InputError.
  std::string AsString() const;
  int64_t AsInt(int64_t min, int64_t max) const;
  bool AsBool() const;
  std::vector<std::string> AsStrings() const;  // a string or an array of strings
  // A scalar shown as text: strings as they are, numbers and booleans as written.
  std::string AsScalarText() const;

  // Optional fields with defaults.
  std::string String(const std::string& key, const std::string& fallback = "") const;
  int64_t Int(const std::string& key, int64_t fallback, int64_t min, int64_t max) const;
  bool Bool(const std::string& key, bool fallback) const;

 private:
  void NeedObject() const;
  const JsonSource* source_;
  const nlohmann::json* value_;
  std::string pointer_;
};

// The JSON pointer escape of one key ("~" -> "~0", "/" -> "~1").
std::string PointerEscape(const std::string& key);

// A document as written to a file (indented by two). Text that is not UTF-8 (a mail
// header in an 8-bit charset that named none) is written with U+FFFD in place of the
// bytes instead of failing the whole output.
template <typename Json>
std::string JsonText(const Json& j) {
  return j.dump(2, ' ', false, Json::error_handler_t::replace);
}

}  // namespace zintra::simtool

#include "tools/zintra-sim/json_source.h"

#include <iterator>

#include "tools/zintra-sim/input_error.h"

namespace zintra::simtool {

namespace {

using nlohmann::json;

constexpr size_t kMaxJsonDepth = 64;

// Reads the text character by character for the SAX pass, counting the lines passed.
struct LineState {
  int line = 1;
  char last = 0;
};

class CountingIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator() = default;
  CountingIterator(const char* p, LineState* state) : p_(p), state_(state) {}
  reference operator*() const { return *p_; }
  CountingIterator& operator++() {
    state_->last = *p_;
    if (*p_ == '\n') ++state_->line;
    ++p_;
    return *this;
  }
  CountingIterator operator++(int) {
    CountingIterator old = *this;
    ++*this;
    return old;
  }
  bool operator==(const CountingIterator& o) const { return p_ == o.p_; }

 private:
  const char* p_ = nullptr;
  LineState* state_ = nullptr;
};

// Records the line on which every value starts, by JSON pointer.
class LineRecorder {
 public:
  LineRecorder(LineState& state, std::unordered_map<std::string, int>& lines)
      : state_(state), lines_(lines) {}

  bool null() { return Scalar(); }
  bool boolean(bool) { return Scalar(); }
  bool number_integer(json::number_integer_t) { return Number(); }
  bool number_unsigned(json::number_unsigned_t) { return Number(); }
  bool number_float(json::number_float_t, const std::string&) { return Number(); }
  bool string(std::string&) { return Scalar(); }
  bool binary(json::binary_t&) { return Scalar(); }
  bool start_object(std::size_t) {
    frames_.push_back({Begin(state_.line), false, 0});
    return frames_.size() <= kMaxJsonDepth;
  }
  bool key(std::string& k) {
    key_ = k;
    return true;
  }
  bool end_object() {
    frames_.pop_back();
    return true;
  }
  bool start_array(std::size_t) {
    frames_.push_back({Begin(state_.line), true, 0});
    return frames_.size() <= kMaxJsonDepth;
  }
  // The line of the value nested too deep, 0 when none is.
  int too_deep_line() const { return frames_.size() > kMaxJsonDepth ? state_.line : 0; }
  bool end_array() {
    frames_.pop_back();
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) {
    return false;
  }

 private:
  struct Frame {
    std::string pointer;
    bool array;
    size_t index;
  };
  std::string Begin(int line) {
    std::string p;
    if (!frames_.empty()) {
      Frame& top = frames_.back();
      p = top.pointer + "/" + (top.array ? std::to_string(top.index++) : PointerEscape(key_));
    }
    lines_.emplace(p, line);
    return p;
  }
  bool Scalar() {
    Begin(state_.line);
    return true;
  }
  // A number is known to end only once the character after it is read.
  bool Number() {
    Begin(state_.last == '\n' ? state_.line - 1 : state_.line);
    return true;
  }

  LineState& state_;
  std::unordered_map<std::string, int>& lines_;
  std::vector<Frame> frames_;
  std::string key_;
};

std::string TypeName(const json& v) {
  switch (v.type()) {
    case json::value_t::null:
      return "null";
    case json::value_t::object:
      return "an object";
    case json::value_t::array:
      return "an array";
    case json::value_t::string:
      return "the text \"" + Excerpt(v.get<std::string>()) + "\"";
    case json::value_t::boolean:
      return v.get<bool>() ? "true" : "false";
    default:
      return "the number " + Excerpt(v.dump());
  }
}

}  // namespace

std::string PointerEscape(const std::string& key) {
  std::string out;
  for (char c : key) {
    if (c == '~') {
      out += "~0";
    } else if (c == '/') {
      out += "~1";
    } else {
      out += c;
    }
  }
  return out;
}

JsonSource::JsonSource(const std::string& text, std::string file) : file_(std::move(file)) {
  try {
    root_ = json::parse(text);
  } catch (const json::parse_error& e) {
    // "[json.exception.parse_error.101] parse error at line 3, column 5: ..." -> line 3
    int line = 0;
    std::string what = e.what();
    size_t at = what.find("at line ");
    if (at != std::string::npos) line = std::atoi(what.c_str() + at + 8);
    size_t colon = what.find(": ", what.find("parse error"));
    throw InputError(
        file_, line, "",
        "not valid JSON: " + (colon == std::string::npos ? what : what.substr(colon + 2)));
  } catch (const json::exception& e) {
    // A number too large for a double: "[json.exception.out_of_range.406] number overflow
    // parsing '1e999'".
    std::string what = e.what();
    size_t bracket = what.find("] ");
    throw InputError(
        file_, 0, "",
        "not valid JSON: " + (bracket == std::string::npos ? what : what.substr(bracket + 2)));
  }
  LineState state;
  LineRecorder recorder(state, lines_);
  json::sax_parse(CountingIterator(text.data(), &state),
                  CountingIterator(text.data() + text.size(), &state), &recorder);
  // The readers walk the document recursively; no scenario nests anywhere near this.
  if (int line = recorder.too_deep_line()) {
    throw InputError(file_, line, "",
                     "values nested more than " + std::to_string(kMaxJsonDepth) + " deep");
  }
}

int JsonSource::LineOf(const std::string& pointer) const {
  std::string p = pointer;
  while (true) {
    auto it = lines_.find(p);
    if (it != lines_.end()) return it->second;
    if (p.empty()) return 0;
    p.erase(p.rfind('/'));
  }
}

void JsonNode::Fail(const std::string& problem) const {
  throw InputError(source_->File(), Line(), pointer_.empty() ? "/" : pointer_, problem);
}

void JsonNode::NeedObject() const {
  if (!value_->is_object()) Fail("expected an object, found " + TypeName(*value_));
}

bool JsonNode::Has(const std::string& key) const {
  NeedObject();
  return value_->contains(key);
}

std::optional<JsonNode> JsonNode::Get(const std::string& key) const {
  NeedObject();
  auto it = value_->find(key);
  if (it == value_->end()) return std::nullopt;
  return JsonNode(*source_, *it, pointer_ + "/" + PointerEscape(key));
}

JsonNode JsonNode::Need(const std::string& key) const {
  auto node = Get(key);
  if (!node) Fail("the field \"" + key + "\" is required");
  return *node;
}

void JsonNode::OnlyKeys(std::initializer_list<const char*> known) const {
  NeedObject();
  for (const auto& [key, value] : value_->items()) {
    bool ok = false;
    std::string list;
    for (const char* k : known) {
      ok = ok || key == k;
      list += (list.empty() ? "" : ", ") + std::string(k);
    }
    if (!ok) {
      JsonNode(*source_, value, pointer_ + "/" + PointerEscape(key))
          .Fail("unknown field; expected one of: " + list);
    }
  }
}

std::vector<JsonNode> JsonNode::Elements() const {
  if (!value_->is_array()) Fail("expected an array, found " + TypeName(*value_));
  std::vector<JsonNode> out;
  for (size_t i = 0; i < value_->size(); ++i) {
    out.emplace_back(*source_, (*value_)[i], pointer_ + "/" + std::to_string(i));
  }
  return out;
}

std::vector<std::pair<std::string, JsonNode>> JsonNode::Members() const {
  NeedObject();
  std::vector<std::pair<std::string, JsonNode>> out;
  for (const auto& [key, value] : value_->items()) {
    out.emplace_back(key, JsonNode(*source_, value, pointer_ + "/" + PointerEscape(key)));
  }
  return out;
}

std::string JsonNode::AsString() const {
  if (!value_->is_string()) Fail("expected text, found " + TypeName(*value_));
  return value_->get<std::string>();
}

int64_t JsonNode::AsInt(int64_t min, int64_t max) const {
  if (!value_->is_number_integer()) Fail("expected a whole number, found " + TypeName(*value_));
  int64_t v = value_->get<int64_t>();
  if (v < min || v > max) {
    Fail("expected a number from " + std::to_string(min) + " to " + std::to_string(max) +
         ", found " + std::to_string(v));
  }
  return v;
}

bool JsonNode::AsBool() const {
  if (!value_->is_boolean()) Fail("expected true or false, found " + TypeName(*value_));
  return value_->get<bool>();
}

std::vector<std::string> JsonNode::AsStrings() const {
  if (value_->is_string()) return {value_->get<std::string>()};
  std::vector<std::string> out;
  for (const JsonNode& e : Elements()) out.push_back(e.AsString());
  return out;
}

std::string JsonNode::AsScalarText() const {
  if (value_->is_string()) return value_->get<std::string>();
  if (value_->is_boolean()) return value_->get<bool>() ? "True" : "False";
  if (value_->is_number()) return value_->dump();
  if (value_->is_null()) return "";
  Fail("expected text, a number or true/false, found " + TypeName(*value_));
}

std::string JsonNode::String(const std::string& key, const std::string& fallback) const {
  auto n = Get(key);
  return n ? n->AsString() : fallback;
}

int64_t JsonNode::Int(const std::string& key, int64_t fallback, int64_t min, int64_t max) const {
  auto n = Get(key);
  return n ? n->AsInt(min, max) : fallback;
}

bool JsonNode::Bool(const std::string& key, bool fallback) const {
  auto n = Get(key);
  return n ? n->AsBool() : fallback;
}

}  // namespace zintra::simtool

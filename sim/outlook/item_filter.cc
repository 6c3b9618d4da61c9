#include "sim/outlook/item_filter.h"

#include <cctype>
#include <charconv>
#include <functional>
#include <optional>
#include <vector>

#include "sim/outlook/message_props.h"
#include "sim/outlook/profile.h"
#include "src/core/date.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

namespace {

enum class Op { kEq, kNe, kLt, kGt, kLe, kGe };
enum class FieldKind { kText, kDate, kNumber, kCategories, kAny };

[[noreturn]] void Fail(const std::string& why) {
  throw ZError(kMapiInvalidParameter, "Cannot parse condition. " + why);
}

// Reads one field of a message. Named fields cache their tag per store: a folder's
// items share one store, so a Find over a large folder resolves each name once.
struct Field {
  FieldKind kind = FieldKind::kText;
  int32_t tag = 0;                    // a fixed property
  std::optional<NamedPropKey> named;  // or a named one
  uint16_t named_type = kPtString8;
  bool any_type = false;  // user property: whatever type is stored
  mutable const StoreRecord* cached_store = nullptr;
  mutable int32_t cached_tag = 0;

  // nullptr when the message lacks the field.
  const Value* Read(const MessageRecord& m) const {
    if (!named) return m.props.Get(tag);
    const StoreRecord* store = Profile::StoreOf(m);
    if (store != cached_store) {
      auto id = const_cast<StoreRecord*>(store)->names.IdFor(*named, false);
      cached_tag = id ? PropTag(*id, any_type ? kPtUnspecified : named_type) : 0;
      cached_store = store;
    }
    return cached_tag == 0 ? nullptr : m.props.Get(cached_tag);
  }
};

Field ResolveField(const std::string& raw) {
  std::string name = text::LCase(raw);
  Field f;
  auto fixed = [&f](int32_t tag, FieldKind kind) {
    f.tag = tag;
    f.kind = kind;
    return f;
  };
  auto by_name = [&f](NamedPropKey key, uint16_t type, FieldKind kind) {
    f.named = std::move(key);
    f.named_type = type;
    f.kind = kind;
    return f;
  };
  if (name == "subject") return fixed(kPrSubject, FieldKind::kText);
  if (name == "body") return fixed(kPrBody, FieldKind::kText);
  if (name == "messageclass") return fixed(kPrMessageClass, FieldKind::kText);
  if (name == "fullname") return fixed(kPrDisplayName, FieldKind::kText);
  if (name == "sensitivity") return fixed(kPrSensitivity, FieldKind::kNumber);
  if (name == "creationtime" || name == "created") return fixed(kPrCreationTime, FieldKind::kDate);
  if (name == "lastmodificationtime" || name == "modified") {
    return fixed(kPrLastModificationTime, FieldKind::kDate);
  }
  if (name == "senton" || name == "sent") return fixed(kPrClientSubmitTime, FieldKind::kDate);
  if (name == "receivedtime" || name == "received") {
    return fixed(kPrMessageDeliveryTime, FieldKind::kDate);
  }
  if (name == "email1address") return by_name(named::Email(1), kPtString8, FieldKind::kText);
  if (name == "email2address") return by_name(named::Email(2), kPtString8, FieldKind::kText);
  if (name == "email3address") return by_name(named::Email(3), kPtString8, FieldKind::kText);
  if (name == "categories") return by_name(named::Keywords(), kPtMvString8, FieldKind::kCategories);
  if (name == "companies") return by_name(named::Companies(), kPtString8, FieldKind::kText);
  if (name == "owner") return by_name(named::TaskOwner(), kPtString8, FieldKind::kText);
  if (name == "type") return by_name(named::JournalType(), kPtString8, FieldKind::kText);
  f.any_type = true;
  return by_name(named::UserProperty(raw), kPtUnspecified, FieldKind::kAny);
}

template <typename T>
bool Compare(const T& a, const T& b, Op op) {
  switch (op) {
    case Op::kEq:
      return a == b;
    case Op::kNe:
      return !(a == b);
    case Op::kLt:
      return a < b;
    case Op::kGt:
      return b < a;
    case Op::kLe:
      return !(b < a);
    case Op::kGe:
      return !(a < b);
  }
  return false;
}

struct Literal {
  std::string text;
  bool quoted = false;
};

bool CompareValue(const Value* found, FieldKind kind, Op op, const Literal& lit) {
  if (found == nullptr || found->IsEmpty()) return false;
  const Value& v = *found;
  if (kind == FieldKind::kCategories) {
    if (v.Type() != ValueType::kStringArray) return false;
    bool any = false;
    for (const std::string& c : v.ToStringArray()) any = any || text::EqualsNoCase(c, lit.text);
    return op == Op::kNe ? !any : (op == Op::kEq && any);
  }
  try {
    if (v.Type() == ValueType::kDate) {
      auto date = ParseFilterDate(lit.text);
      if (!date) return false;
      return Compare(v.ToDate(), *date, op);
    }
    if (v.Type() == ValueType::kBoolean) {
      return Compare(v.ToBool(), Value(lit.text).ToBool(), op);
    }
    if (v.IsNumeric()) return Compare(v.ToDouble(), Value(lit.text).ToDouble(), op);
  } catch (const ZError&) {
    return false;
  }
  if (op == Op::kEq) return text::EqualsNoCase(v.ToString(), lit.text);
  if (op == Op::kNe) return !text::EqualsNoCase(v.ToString(), lit.text);
  return Compare(text::LCase(v.ToString()), text::LCase(lit.text), op);
}

}  // namespace

struct ItemFilter::Node {
  enum class Type { kAnd, kOr, kNot, kCompare } type;
  std::shared_ptr<const Node> left, right;
  Field field;
  Op op = Op::kEq;
  Literal literal;

  bool Eval(const MessageRecord& m) const {
    switch (type) {
      case Type::kAnd:
        return left->Eval(m) && right->Eval(m);
      case Type::kOr:
        return left->Eval(m) || right->Eval(m);
      case Type::kNot:
        return !left->Eval(m);
      case Type::kCompare:
        return CompareValue(field.Read(m), field.kind, op, literal);
    }
    return false;
  }
};

namespace {

using NodePtr = std::shared_ptr<const ItemFilter::Node>;

class Parser {
 public:
  explicit Parser(const std::string& s) : s_(s) {}

  NodePtr Parse() {
    NodePtr root = Condition();
    SkipSpace();
    if (pos_ != s_.size()) Fail("Unexpected text at position " + std::to_string(pos_ + 1) + ".");
    return root;
  }

 private:
  void SkipSpace() {
    while (pos_ < s_.size() && std::isspace(static_cast<unsigned char>(s_[pos_]))) ++pos_;
  }
  bool Keyword(std::string_view word) {
    SkipSpace();
    if (s_.size() - pos_ < word.size()) return false;
    if (!text::EqualsNoCase(std::string_view(s_).substr(pos_, word.size()), word)) return false;
    size_t end = pos_ + word.size();
    if (end < s_.size() && (std::isalnum(static_cast<unsigned char>(s_[end])) || s_[end] == '_')) {
      return false;
    }
    pos_ = end;
    return true;
  }
  bool Char(char c) {
    SkipSpace();
    if (pos_ < s_.size() && s_[pos_] == c) {
      ++pos_;
      return true;
    }
    return false;
  }
  NodePtr Join(ItemFilter::Node::Type type, NodePtr left, NodePtr right) {
    auto n = std::make_shared<ItemFilter::Node>();
    n->type = type;
    n->left = std::move(left);
    n->right = std::move(right);
    return n;
  }
  NodePtr Condition() {
    NodePtr left = Term();
    while (Keyword("or")) left = Join(ItemFilter::Node::Type::kOr, left, Term());
    return left;
  }
  NodePtr Term() {
    NodePtr left = Factor();
    while (Keyword("and")) left = Join(ItemFilter::Node::Type::kAnd, left, Factor());
    return left;
  }
  NodePtr Factor() {
    if (Keyword("not")) return Join(ItemFilter::Node::Type::kNot, Factor(), nullptr);
    if (Char('(')) {
      NodePtr inner = Condition();
      if (!Char(')')) Fail("A closing parenthesis is missing.");
      return inner;
    }
    return Comparison();
  }
  NodePtr Comparison() {
    if (!Char('[')) Fail("A property name in brackets is expected.");
    size_t close = s_.find(']', pos_);
    if (close == std::string::npos) Fail("A closing bracket is missing.");
    std::string name = text::Trim(s_.substr(pos_, close - pos_));
    if (name.empty()) Fail("A property name is empty.");
    pos_ = close + 1;
    auto n = std::make_shared<ItemFilter::Node>();
    n->type = ItemFilter::Node::Type::kCompare;
    n->field = ResolveField(name);
    n->op = Operator();
    n->literal = ReadLiteral();
    return n;
  }
  Op Operator() {
    SkipSpace();
    auto take = [this](std::string_view t) {
      if (s_.compare(pos_, t.size(), t) == 0) {
        pos_ += t.size();
        return true;
      }
      return false;
    };
    if (take("<>")) return Op::kNe;
    if (take("<=")) return Op::kLe;
    if (take(">=")) return Op::kGe;
    if (take("=")) return Op::kEq;
    if (take("<")) return Op::kLt;
    if (take(">")) return Op::kGt;
    Fail("A comparison operator is expected.");
  }
  Literal ReadLiteral() {
    SkipSpace();
    if (pos_ >= s_.size()) Fail("A value is expected.");
    char q = s_[pos_];
    Literal lit;
    if (q == '"' || q == '\'') {
      lit.quoted = true;
      ++pos_;
      for (;;) {
        if (pos_ >= s_.size()) Fail("A closing quote is missing.");
        char c = s_[pos_++];
        if (c == q) {
          if (pos_ < s_.size() && s_[pos_] == q) {
            lit.text.push_back(q);
            ++pos_;
            continue;
          }
          break;
        }
        lit.text.push_back(c);
      }
      return lit;
    }
    size_t start = pos_;
    while (pos_ < s_.size() && !std::isspace(static_cast<unsigned char>(s_[pos_])) &&
           s_[pos_] != ')') {
      ++pos_;
    }
    lit.text = s_.substr(start, pos_ - start);
    return lit;
  }

  const std::string& s_;
  size_t pos_ = 0;
};

int ReadInt(const std::string& s, size_t& pos) {
  int value = 0;
  auto [ptr, ec] = std::from_chars(s.data() + pos, s.data() + s.size(), value);
  if (ec != std::errc()) return -1;
  pos = static_cast<size_t>(ptr - s.data());
  return value;
}

}  // namespace

std::optional<double> ParseFilterDate(const std::string& raw) {
  std::string s = text::Trim(raw);
  size_t pos = 0;
  int month = ReadInt(s, pos);
  if (month < 1 || pos >= s.size() || s[pos++] != '/') return std::nullopt;
  int day = ReadInt(s, pos);
  if (day < 1 || pos >= s.size() || s[pos++] != '/') return std::nullopt;
  int year = ReadInt(s, pos);
  if (year < 0 || month > 12 || day > 31) return std::nullopt;
  if (year < 100) year += year < 30 ? 2000 : 1900;
  int hour = 0, minute = 0, second = 0;
  while (pos < s.size() && s[pos] == ' ') ++pos;
  if (pos < s.size()) {
    hour = ReadInt(s, pos);
    if (hour < 0 || pos >= s.size() || s[pos++] != ':') return std::nullopt;
    minute = ReadInt(s, pos);
    if (minute < 0) return std::nullopt;
    if (pos < s.size() && s[pos] == ':') {
      ++pos;
      second = ReadInt(s, pos);
      if (second < 0) return std::nullopt;
    }
    std::string rest = text::UCase(text::Trim(s.substr(pos)));
    if (rest == "PM" && hour < 12)
      hour += 12;
    else if (rest == "AM" && hour == 12)
      hour = 0;
    else if (!rest.empty() && rest != "AM" && rest != "PM")
      return std::nullopt;
  }
  return MakeDate(year, month, day, hour, minute, second);
}

ItemFilter ItemFilter::Compile(const std::string& filter) {
  return ItemFilter(Parser(filter).Parse());
}

bool ItemFilter::Matches(const MessageRecord& message) const {
  return !message.unreadable && root_->Eval(message);
}

}  // namespace zintra::sim

#include "tools/zintra-sim/vcard_reader.h"

#include <algorithm>
#include <cctype>

#include "src/core/text.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/text_decoding.h"

namespace zintra::simtool {

namespace {

struct LogicalLine {
  std::string text;
  int line = 0;
};

bool IsQuotedPrintable(const std::string& line) {
  size_t colon = line.find(':');
  return colon != std::string::npos &&
         text::FindNoCase(line.substr(0, colon), "QUOTED-PRINTABLE") != std::string::npos;
}

bool IsBase64(const std::string& line) {
  size_t colon = line.find(':');
  if (colon == std::string::npos) return false;
  std::string head = text::UCase(line.substr(0, colon));
  return head.find("BASE64") != std::string::npos || head.find("ENCODING=B") != std::string::npos;
}

// Physical lines -> logical lines: folding, quoted-printable soft breaks and the
// unfolded base64 blocks of 2.1 are joined.
std::vector<LogicalLine> Unfold(const std::string& text) {
  std::vector<LogicalLine> out;
  bool base64 = false;
  size_t pos = 0;
  int number = 0;
  if (text.compare(0, 3, "\xEF\xBB\xBF") == 0) pos = 3;
  while (pos <= text.size()) {
    size_t end = text.find('\n', pos);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(pos, end - pos);
    if (!line.empty() && line.back() == '\r') line.pop_back();
    ++number;
    pos = end + 1;
    if (line.empty()) {
      // A soft line break before a blank line ends the value there.
      if (!out.empty() && IsQuotedPrintable(out.back().text) && out.back().text.back() == '=') {
        out.back().text.pop_back();
      }
      base64 = false;
      if (end == text.size()) break;
      continue;
    }
    bool continues = !out.empty() && (line[0] == ' ' || line[0] == '\t');
    if (continues) {
      out.back().text += line.substr(1);
      continue;
    }
    if (!out.empty() && IsQuotedPrintable(out.back().text) && out.back().text.back() == '=') {
      out.back().text.pop_back();
      out.back().text += line;
      continue;
    }
    if (base64 && line.find(':') == std::string::npos) {
      out.back().text += line;
      continue;
    }
    out.push_back({line, number});
    base64 = IsBase64(line);
  }
  return out;
}

std::string Unescape(const std::string& v) {
  std::string out;
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i] == '\\' && i + 1 < v.size()) {
      char c = v[++i];
      out += (c == 'n' || c == 'N') ? '\n' : c;
    } else {
      out += v[i];
    }
  }
  return out;
}

// Splits on `sep` not escaped by a backslash; the parts are unescaped.
std::vector<std::string> SplitEscaped(const std::string& v, char sep) {
  std::vector<std::string> parts(1);
  for (size_t i = 0; i < v.size(); ++i) {
    if (v[i] == '\\' && i + 1 < v.size()) {
      parts.back() += v.substr(i, 2);
      ++i;
    } else if (v[i] == sep) {
      parts.emplace_back();
    } else {
      parts.back() += v[i];
    }
  }
  for (auto& p : parts) p = text::Trim(Unescape(p));
  return parts;
}

struct Property {
  std::string name;                 // upper case, group removed
  std::vector<std::string> params;  // upper case
  std::string value;                // decoded, still escaped
};

Property ParseLine(const LogicalLine& l, const std::string& file, int* fallbacks) {
  size_t colon = std::string::npos;
  bool quoted = false;
  for (size_t i = 0; i < l.text.size(); ++i) {
    if (l.text[i] == '"') quoted = !quoted;
    if (l.text[i] == ':' && !quoted) {
      colon = i;
      break;
    }
  }
  if (colon == std::string::npos || colon == 0) {
    throw InputError(
        file, l.line, "",
        "expected a vCard line \"NAME:value\", found \"" + l.text.substr(0, 60) + "\"");
  }
  Property p;
  std::vector<std::string> head = text::Split(l.text.substr(0, colon), ";");
  p.name = text::UCase(head[0]);
  size_t dot = p.name.rfind('.');
  if (dot != std::string::npos) p.name = p.name.substr(dot + 1);
  std::string charset;
  bool qp = false;
  for (size_t i = 1; i < head.size(); ++i) {
    std::string param = text::UCase(head[i]);
    p.params.push_back(param);
    if (param == "QUOTED-PRINTABLE" || param == "ENCODING=QUOTED-PRINTABLE") qp = true;
    if (text::StartsWith(param, "CHARSET=")) charset = head[i].substr(8);
  }
  p.value = l.text.substr(colon + 1);
  if (qp) p.value = DecodeQuotedPrintable(p.value);
  bool fell_back = false;
  p.value = DecodeText(p.value, charset, &fell_back);
  if (fell_back) ++*fallbacks;
  return p;
}

bool Preferred(const Property& p) {
  for (const std::string& param : p.params) {
    if (param == "PREF" || param == "PREF=1" || param == "TYPE=PREF") return true;
    if (text::StartsWith(param, "TYPE=") && param.find("PREF") != std::string::npos) return true;
  }
  return false;
}

}  // namespace

std::string DecodeQuotedPrintable(const std::string& in) {
  std::string out;
  auto hex = [](char c) -> int {
    if (c >= '0' && c <= '9') return c - '0';
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
  };
  for (size_t i = 0; i < in.size(); ++i) {
    if (in[i] != '=') {
      out += in[i];
      continue;
    }
    if (i + 1 < in.size() && (in[i + 1] == '\n' || in[i + 1] == '\r')) {  // soft break
      i += (in[i + 1] == '\r' && i + 2 < in.size() && in[i + 2] == '\n') ? 2 : 1;
      continue;
    }
    if (i + 2 < in.size() && hex(in[i + 1]) >= 0 && hex(in[i + 2]) >= 0) {
      out += static_cast<char>(hex(in[i + 1]) * 16 + hex(in[i + 2]));
      i += 2;
    } else {
      out += '=';
    }
  }
  return out;
}

std::vector<ItemSpec> ReadVCards(const std::string& text, const std::string& file,
                                 std::vector<std::string>* notes) {
  std::vector<ItemSpec> cards;
  int fallbacks = 0;
  std::vector<LogicalLine> lines = Unfold(text);
  bool in_card = false;
  int begin_line = 0;
  ItemSpec card;
  std::string version, n_name, org_name;
  std::vector<std::pair<bool, std::string>> emails;  // (preferred, address)
  for (const LogicalLine& l : lines) {
    Property p = ParseLine(l, file, &fallbacks);
    if (!in_card) {
      if (p.name != "BEGIN" || !text::EqualsNoCase(text::Trim(p.value), "VCARD")) {
        throw InputError(file, l.line, "",
                         "expected BEGIN:VCARD, found \"" + l.text.substr(0, 60) + "\"");
      }
      in_card = true;
      begin_line = l.line;
      card = ItemSpec{};
      card.item_class = ItemClass::kContact;
      card.source_line = l.line;
      version.clear();
      n_name.clear();
      emails.clear();
      continue;
    }
    if (p.name == "END") {
      if (!text::EqualsNoCase(text::Trim(p.value), "VCARD")) {
        throw InputError(file, l.line, "END", "expected END:VCARD");
      }
      if (card.full_name.empty()) card.full_name = n_name;
      std::stable_sort(emails.begin(), emails.end(),
                       [](const auto& a, const auto& b) { return a.first && !b.first; });
      for (const auto& [pref, address] : emails) {
        bool seen = false;
        for (const std::string& e : card.emails) seen = seen || text::EqualsNoCase(e, address);
        if (!seen) card.emails.push_back(address);
      }
      if (card.full_name.empty()) card.full_name = card.company;
      if (card.full_name.empty() && !card.emails.empty()) card.full_name = card.emails.front();
      if (card.full_name.empty()) {
        throw InputError(file, begin_line, "", "the card has no name (FN, N or ORG) and no EMAIL");
      }
      card.subject = card.full_name;
      cards.push_back(std::move(card));
      in_card = false;
      continue;
    }
    if (p.name == "BEGIN") {
      throw InputError(file, l.line, "BEGIN",
                       "a card starts inside the card begun on line " + std::to_string(begin_line) +
                           "; expected END:VCARD first");
    }
    std::string value = text::Trim(p.value);
    if (p.name == "VERSION") {
      version = value;
      if (version != "2.1" && version != "3.0" && version != "4.0") {
        throw InputError(file, l.line, "VERSION",
                         "expected 2.1, 3.0 or 4.0, found \"" + value + "\"");
      }
    } else if (p.name == "FN") {
      if (card.full_name.empty()) card.full_name = Unescape(value);
    } else if (p.name == "N") {
      std::vector<std::string> parts = SplitEscaped(value, ';');
      // Family;Given;Middle;Prefix;Suffix -> "Prefix Given Middle Family Suffix"
      std::string name;
      for (size_t i : {3u, 1u, 2u, 0u, 4u}) {
        if (i < parts.size() && !parts[i].empty()) name += (name.empty() ? "" : " ") + parts[i];
      }
      if (n_name.empty()) n_name = name;
    } else if (p.name == "EMAIL") {
      std::string address = Unescape(value);
      if (text::StartsWith(text::LCase(address), "mailto:")) address = address.substr(7);
      if (!address.empty()) emails.emplace_back(Preferred(p), address);
    } else if (p.name == "CATEGORIES") {
      std::string joined;
      for (const std::string& c : SplitEscaped(value, ',')) {
        if (!c.empty()) joined += (joined.empty() ? "" : ", ") + c;
      }
      if (!joined.empty()) {
        card.categories += (card.categories.empty() ? "" : ", ") + joined;
      }
    } else if (p.name == "ORG") {
      if (card.company.empty()) card.company = SplitEscaped(value, ';').front();
    } else if (p.name == "CLASS") {
      if (text::EqualsNoCase(value, "PRIVATE")) card.sensitivity = kOlPrivate;
      if (text::EqualsNoCase(value, "CONFIDENTIAL")) card.sensitivity = kOlConfidential;
    } else if (p.name == "NOTE") {
      if (card.body.empty()) card.body = Unescape(value);
    }
  }
  if (in_card) {
    throw InputError(file, begin_line, "", "the card begun here is not closed by END:VCARD");
  }
  if (fallbacks > 0 && notes != nullptr) {
    notes->push_back(std::to_string(fallbacks) + (fallbacks == 1 ? " value" : " values") +
                     " in no declared or fitting charset read as Windows-1252");
  }
  return cards;
}

}  // namespace zintra::simtool

#include "src/resources/string_table.h"

#include <algorithm>

#include "src/host/platform.h"
#include "src/resources/string_table_data.h"

namespace zintra {
namespace {

constexpr int32_t kPrimaryLanguageMask = 0x3FF;
constexpr int32_t kLangFrench = 0x0C;
constexpr int32_t kLangIdCanadianFrench = 0x0C0C;

const resources::StringRow* FindRow(int32_t id) {
  auto rows = resources::StringRows();
  auto it = std::lower_bound(rows.begin(), rows.end(), id,
                             [](const resources::StringRow& row, int32_t v) { return row.id < v; });
  return it != rows.end() && it->id == id ? &*it : nullptr;
}

}  // namespace

Language LanguageFromLcid(int32_t lcid) {
  // An LCID carries the language id in its low 16 bits (the sort id above them).
  int32_t lang_id = lcid & 0xFFFF;
  if (lang_id == kLangIdCanadianFrench) return Language::kCanadianFrench;
  if ((lang_id & kPrimaryLanguageMask) == kLangFrench) return Language::kFrench;
  return Language::kEnglish;
}

StringTable StringTable::ForUserInterface(Platform& platform) {
  return StringTable(LanguageFromLcid(platform.UserInterfaceLanguage()));
}

std::string StringTable::Load(int32_t id) const {
  const resources::StringRow* row = FindRow(id);
  if (row == nullptr) return {};
  const char* text = row->english;
  if (language_ == Language::kFrench) text = row->french;
  if (language_ == Language::kCanadianFrench) text = row->canadian_french;
  return (text != nullptr && *text != '\0') ? text : row->english;
}

bool StringTable::Contains(int32_t id) { return FindRow(id) != nullptr; }

std::string StringTable::Format(int32_t id, std::initializer_list<std::string_view> args) const {
  return Substitute(Load(id), args);
}

std::string StringTable::Substitute(std::string_view text,
                                    std::initializer_list<std::string_view> args) {
  // One pass, so an argument that itself contains "|2" is not substituted again.
  std::string out;
  out.reserve(text.size());
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '|' && i + 1 < text.size() && text[i + 1] >= '1' && text[i + 1] <= '9') {
      size_t n = static_cast<size_t>(text[i + 1] - '1');
      if (n < args.size()) {
        out += *(args.begin() + n);
        ++i;
        continue;
      }
    }
    out += text[i];
  }
  return out;
}

}  // namespace zintra

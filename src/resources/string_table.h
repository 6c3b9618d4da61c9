// StringTable: the user-visible texts by number, in English, French and Canadian
// French (modResource). The language is chosen once, from the platform's
// user-interface language; English when it is not one of the three. Immutable after
// construction; safe to share.
//
// Load returns "" for a number the table does not hold (and the English text where a
// translation is missing). Format replaces "|1", "|2", ... by the arguments in order.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

namespace zintra {

// The product's name, the caption of its message boxes and options page.
inline constexpr int32_t kStrProductName = 2;

class Platform;

enum class Language { kEnglish, kFrench, kCanadianFrench };

// The language for a Windows locale id (LANGID/LCID): French variants give French,
// 0x0C0C Canadian French, anything else English.
Language LanguageFromLcid(int32_t lcid);

class StringTable {
 public:
  explicit StringTable(Language language = Language::kEnglish) : language_(language) {}

  // The table in the language of the platform's user interface.
  static StringTable ForUserInterface(Platform& platform);

  Language language() const { return language_; }
  // LoadResString: the text of `id` in this table's language.
  std::string Load(int32_t id) const;
  // The text of `id` with "|1".."|9" replaced by `args` (a marker without an
  // argument is left as it stands).
  std::string Format(int32_t id, std::initializer_list<std::string_view> args) const;
  // True when the table holds `id` in English.
  static bool Contains(int32_t id);

  // Replaces "|1".."|9" in `text` by `args`.
  static std::string Substitute(std::string_view text,
                                std::initializer_list<std::string_view> args);

 private:
  Language language_;
};

}  // namespace zintra

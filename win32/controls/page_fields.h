// PageFields: the settings the options page edits one control each — switches shown as
// check boxes and whole numbers typed into edit boxes — as a table of RegSettings
// members with their label, their tab and, for numbers, the range a value must lie in.
// The page builds its controls from it and reads and writes the settings through it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "src/settings/reg_settings.h"

namespace zintra::win32 {

enum class PageTab { kFolderSets = 0, kMonitoring = 1, kLogging = 2, kAdvanced = 3 };
inline constexpr int kPageTabCount = 4;

struct SwitchField {
  PageTab tab;
  int32_t label;  // string number
  bool RegSettings::*member;
  // Registry-only values are never taken from the enterprise settings file.
  bool registry_only;
};

struct NumberField {
  PageTab tab;
  int32_t label;
  int32_t RegSettings::*member;  // one of member and small is set
  int16_t RegSettings::*small;
  int32_t min;
  int32_t max;
};

std::span<const SwitchField> SwitchFields();
std::span<const NumberField> NumberFields();

int32_t NumberOf(const RegSettings& settings, const NumberField& field);
void SetNumber(RegSettings& settings, const NumberField& field, int32_t value);

// Text typed for a number: optional blanks around decimal digits (no sign, no
// separators) within [min, max]; nullopt otherwise.
std::optional<int32_t> ParseWholeNumber(std::string_view text, int32_t min, int32_t max);

// A label without the colon and blanks it ends with, for messages that name the field.
std::string FieldName(std::string_view label);

}  // namespace zintra::win32

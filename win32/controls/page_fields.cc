#include "win32/controls/page_fields.h"

#include <cctype>
#include <limits>

namespace zintra::win32 {
namespace {

using T = PageTab;

constexpr SwitchField kSwitches[] = {
    {T::kMonitoring, 2311, &RegSettings::ScanInbox, false},
    {T::kMonitoring, 2715, &RegSettings::InboxIsOutgoingToo, false},
    {T::kLogging, 2716, &RegSettings::SearchEmailAddresses, false},
    {T::kLogging, 2717, &RegSettings::OnlySearchIfNoLinks, false},
    {T::kLogging, 2506, &RegSettings::UniqueEmailAddresses, false},
    {T::kLogging, 2718, &RegSettings::IgnoreItemsFromInternal, false},
    {T::kLogging, 2719, &RegSettings::IgnorePrivateContacts, false},
    {T::kLogging, 2720, &RegSettings::EnableBlanketDomain, false},
    {T::kLogging, 2721, &RegSettings::StripAttachments, false},
    {T::kLogging, 2722, &RegSettings::AuditTrail, false},
    {T::kLogging, 2723, &RegSettings::KeepSharedCopiesUpToDate, false},
    {T::kLogging, 2724, &RegSettings::KeepLoggedCopiesUpToDate, false},
    {T::kLogging, 2726, &RegSettings::UseRedemptionCopy, false},
    {T::kLogging, 2727, &RegSettings::EditFolderFields, false},
    {T::kLogging, 2729, &RegSettings::AlwaysUseFolderFields, false},
    {T::kLogging, 2728, &RegSettings::MakeWorkingCopy, false},
    {T::kAdvanced, 2730, &RegSettings::CacheContactFolders, false},
    {T::kAdvanced, 2731, &RegSettings::KeepCacheSynched, false},
    {T::kAdvanced, 2732, &RegSettings::StopFillingCachesOnExit, false},
    {T::kAdvanced, 2736, &RegSettings::RunJobsAsync, false},
    {T::kAdvanced, 2753, &RegSettings::ShowZintra2Buttons, false},
    {T::kAdvanced, 2754, &RegSettings::ShowZintra2ButtonsOnInspectors, false},
    {T::kAdvanced, 2755, &RegSettings::NeverLoadToolbars, false},
    {T::kAdvanced, 2742, &RegSettings::LogReporting, true},
    {T::kAdvanced, 2743, &RegSettings::DontUseEnterpriseSettings, true},
};

constexpr int32_t kMaxLong = std::numeric_limits<int32_t>::max();

constexpr NumberField kNumbers[] = {
    {T::kMonitoring, 2544, &RegSettings::QuickscanOverlapHours, nullptr, 0, 100000},
    {T::kLogging, 2735, &RegSettings::MinAuditInterval, nullptr, 0, 86400},
    {T::kAdvanced, 2733, nullptr, &RegSettings::GetRowChunkSize, 1, 10000},
    {T::kAdvanced, 2734, &RegSettings::ProcessingDelay, nullptr, 0, 3600000},
    {T::kAdvanced, 2737, &RegSettings::QueuedWorkTimeInterval, nullptr, 1, 10000},
    {T::kAdvanced, 2738, &RegSettings::QueuedWorkTimechunk, nullptr, 1, 10000},
    {T::kAdvanced, 2741, nullptr, &RegSettings::LogMaxSizeKB, 1, 32767},
};

}  // namespace

std::span<const SwitchField> SwitchFields() { return kSwitches; }
std::span<const NumberField> NumberFields() { return kNumbers; }

int32_t NumberOf(const RegSettings& settings, const NumberField& field) {
  return field.member ? settings.*field.member : settings.*field.small;
}

void SetNumber(RegSettings& settings, const NumberField& field, int32_t value) {
  if (field.member) {
    settings.*field.member = value;
  } else {
    settings.*field.small = static_cast<int16_t>(value);
  }
}

std::optional<int32_t> ParseWholeNumber(std::string_view text, int32_t min, int32_t max) {
  auto blank = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  if (text.empty() || text.size() > 10) return std::nullopt;
  int64_t value = 0;
  for (char c : text) {
    if (c < '0' || c > '9') return std::nullopt;
    value = value * 10 + (c - '0');
  }
  if (value < min || value > max || value > kMaxLong) return std::nullopt;
  return static_cast<int32_t>(value);
}

std::string FieldName(std::string_view label) {
  while (!label.empty() && (label.back() == ':' || label.back() == ' ')) label.remove_suffix(1);
  return std::string(label);
}

}  // namespace zintra::win32

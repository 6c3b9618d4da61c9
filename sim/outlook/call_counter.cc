#include "sim/outlook/call_counter.h"

#include <algorithm>
#include <chrono>

namespace zintra::sim {

namespace {

bool IsRegistry(std::string_view member) { return member.substr(0, 9) == "Registry."; }

bool OneOf(std::string_view s, std::initializer_list<std::string_view> list) {
  return std::find(list.begin(), list.end(), s) != list.end();
}

}  // namespace

std::string_view CallCounter::KindName(Kind kind) {
  switch (kind) {
    case Kind::kPropertyRead:
      return "reads";
    case Kind::kPropertyWrite:
      return "writes";
    case Kind::kSave:
      return "saves";
    case Kind::kCopyMove:
      return "copies/moves";
    case Kind::kFind:
      return "finds";
    case Kind::kOpen:
      return "opens";
    case Kind::kRow:
      return "rows";
    case Kind::kRegistryRead:
      return "registry reads";
    case Kind::kRegistryWrite:
      return "registry writes";
    case Kind::kOther:
      break;
  }
  return "other";
}

CallCounter::Kind CallCounter::KindOf(std::string_view member) {
  const size_t dot = member.find('.');
  if (dot == std::string_view::npos) return Kind::kOther;
  const std::string_view cls = member.substr(0, dot);
  const std::string_view name = member.substr(dot + 1);
  if (cls == "Registry") {
    if (OneOf(name, {"OpenKey", "QueryValue", "EnumKey", "EnumValue", "QueryInfoKey"}))
      return Kind::kRegistryRead;
    if (OneOf(name, {"CreateKey", "SetValue", "DeleteValue", "DeleteKey"}))
      return Kind::kRegistryWrite;
    return Kind::kOther;
  }
  if (name == "Save") return Kind::kSave;
  if (OneOf(name, {"Copy", "Move", "CopyTo"})) return Kind::kCopyMove;
  if (OneOf(name, {"Find", "FindNext", "FindControl"})) return Kind::kFind;
  if (OneOf(name, {"GetItemFromID", "GetFolderFromID", "GetMessageFromID"})) return Kind::kOpen;
  if (OneOf(name, {"GetRows", "GetFirst", "GetNext", "GetLast", "GetPrevious"})) return Kind::kRow;
  if (member == "MapiUtils.HrGetOneProp") return Kind::kPropertyRead;
  if (OneOf(member, {"MapiUtils.HrSetOneProp", "MapiUtils.HrDeleteOneProp", "UserProperties.Add",
                     "UserProperties.Remove", "Links.Add", "Links.Remove", "Recipients.Add",
                     "Recipients.Remove", "Attachments.Add", "Attachments.Remove"}))
    return Kind::kPropertyWrite;
  // Objects made or destroyed, windows and the user interface.
  if (OneOf(name, {"Delete", "Add", "AddItem", "CreateItem", "CreateObject", "Display", "Close",
                   "Activate", "Click", "Execute", "Cleanup", "SetItem", "SetMAPIOBJECT",
                   "SetColumns", "GoToFirst", "Sort", "Remove", "GetInspector"}) ||
      OneOf(cls, {"ObjectFactory", "CommandBar", "CommandBars", "CommandBarControl",
                  "CommandBarControls", "Explorer", "Explorers", "Inspector", "Inspectors",
                  "SafeInspector"}))
    return Kind::kOther;
  if (name.substr(0, 3) == "Set") return Kind::kPropertyWrite;
  return Kind::kPropertyRead;
}

int64_t CallCounter::Tally::Total() const {
  int64_t total = 0;
  for (int64_t n : by_kind) total += n;
  return total;
}

CallCounter::Tally CallCounter::Tally::operator-(const Tally& other) const {
  Tally result;
  for (int i = 0; i < kKinds; ++i) result.by_kind[i] = by_kind[i] - other.by_kind[i];
  return result;
}

std::string CallCounter::Tally::ToString() const {
  std::string text;
  for (int i = 0; i < kKinds; ++i) {
    if (by_kind[i] == 0) continue;
    if (!text.empty()) text += ", ";
    text += std::string(KindName(static_cast<Kind>(i))) + " " + std::to_string(by_kind[i]);
  }
  return text.empty() ? "none" : text;
}

void CallCounter::Count(std::string_view member) {
  auto it = members_.find(member);
  if (it == members_.end())
    it = members_.emplace(std::string(member), Entry{0, KindOf(member)}).first;
  ++it->second.calls;
  ++totals_.by_kind[static_cast<int>(it->second.kind)];
  if (IsRegistry(member)) ++registry_calls_;
}

CallCounter::HostCall CallCounter::Enter(std::string_view member) {
  Begin(member);
  return HostCall(this);
}

void CallCounter::Begin(std::string_view member) {
  Count(member);
  if (depth_++ > 0) return;
  outer_registry_ = IsRegistry(member);
  started_ns_ = Now();
}

void CallCounter::Leave() {
  if (--depth_ > 0) return;
  const int64_t span = Now() - started_ns_;
  host_ns_ += span;
  if (outer_registry_) registry_ns_ += span;
}

CallCounter::AddinCallback CallCounter::Callback() {
  const int depth = depth_;
  if (depth > 0) {
    const int64_t span = Now() - started_ns_;
    host_ns_ += span;
    if (outer_registry_) registry_ns_ += span;
  }
  depth_ = 0;
  return AddinCallback(this, depth, outer_registry_);
}

void CallCounter::Resume(int depth, bool registry) {
  depth_ = depth;
  outer_registry_ = registry;
  if (depth > 0) started_ns_ = Now();
}

int64_t CallCounter::SteadyNanoseconds() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

CallCounter::PortObserver CallCounter::Observer(std::string prefix) {
  return {[this, prefix = std::move(prefix)](std::string_view member) {
            Begin(prefix + std::string(member));
          },
          [this] { Leave(); }};
}

int64_t CallCounter::CallsOf(std::string_view member) const {
  auto it = members_.find(member);
  return it == members_.end() ? 0 : it->second.calls;
}

std::vector<std::pair<std::string, int64_t>> CallCounter::ByMember() const {
  std::vector<std::pair<std::string, int64_t>> list;
  for (const auto& [name, entry] : members_) list.emplace_back(name, entry.calls);
  std::sort(list.begin(), list.end(), [](const auto& a, const auto& b) {
    return a.second != b.second ? a.second > b.second : a.first < b.first;
  });
  return list;
}

void CallCounter::Reset() {
  members_.clear();
  totals_ = Tally{};
  host_ns_ = 0;
  registry_ns_ = 0;
  registry_calls_ = 0;
  readings_ = 0;
  // A call under way goes on being timed from now.
  if (depth_ > 0) started_ns_ = Now();
}

}  // namespace zintra::sim

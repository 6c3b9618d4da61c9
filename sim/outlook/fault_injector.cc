#include "sim/outlook/fault_injector.h"

#include <algorithm>

#include "src/core/z_error.h"

namespace zintra::sim {

namespace {

bool Matches(std::string_view pattern, std::string_view member) {
  if (pattern == member) return true;
  if (pattern.size() >= 2 && pattern.substr(pattern.size() - 2) == ".*") {
    std::string_view cls = pattern.substr(0, pattern.size() - 1);  // keeps the dot
    return member.substr(0, cls.size()) == cls;
  }
  return false;
}

}  // namespace

int FaultInjector::Add(std::string member, Mode mode, int64_t n, int32_t number, std::string text,
                       const void* object) {
  int id = next_id_++;
  rules_.push_back(Rule{id, std::move(member), mode, n, number, std::move(text), object, 0});
  return id;
}

void FaultInjector::Remove(int rule_id) {
  rules_.erase(std::remove_if(rules_.begin(), rules_.end(),
                              [rule_id](const Rule& r) { return r.id == rule_id; }),
               rules_.end());
}

int64_t FaultInjector::CallsSeen(int rule_id) const {
  for (const Rule& r : rules_) {
    if (r.id == rule_id) return r.calls;
  }
  return -1;
}

void FaultInjector::CheckSlow(std::string_view member, const void* object) {
  // Every matching rule counts the call, even when an earlier one fires.
  const Rule* fired = nullptr;
  for (Rule& r : rules_) {
    if (r.object != nullptr && r.object != object) continue;
    if (!Matches(r.member, member)) continue;
    ++r.calls;
    bool fire = false;
    switch (r.mode) {
      case Mode::kAlways:
        fire = true;
        break;
      case Mode::kOnCall:
        fire = r.calls == r.n;
        break;
      case Mode::kAfterCalls:
        fire = r.calls > r.n;
        break;
    }
    if (fire && fired == nullptr) fired = &r;
  }
  if (fired != nullptr) {
    std::string text =
        fired->text.empty() ? ZError::StandardDescription(fired->number) : fired->text;
    throw ZError(fired->number, text, std::string(member));
  }
}

}  // namespace zintra::sim

// FaultInjector: makes any member of the simulated Outlook and MAPI library fail on
// demand, so that every failure path of the system can be driven from a test.
//
// A rule names a member as "Class.Member" (the port's names: "Item.Save",
// "Items.GetNext", "MapiTable.GetRows", "MapiUtils.HrGetOneProp"), or "Class.*" for
// every member of the class. It applies to one object (the key returned by
// ObjectKeyOf in sim_keys.h, or a window object) or, with object nullptr, to every
// object of the class. When a rule fires the member throws ZError(number, text)
// before doing anything. Each rule counts the calls it matches:
//   Always      every matching call fails;
//   OnCall(n)   only the n-th matching call fails (1-based);
//   AfterCalls(n) the first n matching calls succeed, every later one fails.
// Rules stay until removed; Clear drops them all. Not thread-safe (Outlook's thread).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sim/outlook/call_counter.h"

namespace zintra::sim {

using HostCall = CallCounter::HostCall;

class FaultInjector {
 public:
  enum class Mode { kAlways, kOnCall, kAfterCalls };

  // Returns the rule's id, for Remove and CallsSeen.
  int Add(std::string member, Mode mode, int64_t n, int32_t number, std::string text,
          const void* object = nullptr);
  int FailAlways(std::string member, int32_t number, std::string text = {},
                 const void* object = nullptr) {
    return Add(std::move(member), Mode::kAlways, 0, number, std::move(text), object);
  }
  int FailOnCall(std::string member, int64_t n, int32_t number, std::string text = {},
                 const void* object = nullptr) {
    return Add(std::move(member), Mode::kOnCall, n, number, std::move(text), object);
  }
  int FailAfterCalls(std::string member, int64_t n, int32_t number, std::string text = {},
                     const void* object = nullptr) {
    return Add(std::move(member), Mode::kAfterCalls, n, number, std::move(text), object);
  }
  void Remove(int rule_id);
  void Clear() { rules_.clear(); }
  // Calls the rule has matched so far (failed or not); -1 for an unknown id.
  int64_t CallsSeen(int rule_id) const;

  // Every member checked from now on is also counted there (nullptr: none).
  void SetCounter(CallCounter* counter) { counter_ = counter; }

  // Called by every simulated member first; throws ZError when a rule fires. The
  // member holds what it returns until it returns: that is the call's end.
  HostCall Check(std::string_view member, const void* object = nullptr) {
    HostCall call = counter_ != nullptr ? counter_->Enter(member) : HostCall();
    if (!rules_.empty()) CheckSlow(member, object);
    return call;
  }
  // Held while the host raises an event into the add-in inside a call.
  CallCounter::AddinCallback Callback() {
    return counter_ != nullptr ? counter_->Callback() : CallCounter::AddinCallback();
  }

 private:
  struct Rule {
    int id;
    std::string member;
    Mode mode;
    int64_t n;
    int32_t number;
    std::string text;
    const void* object;
    int64_t calls;
  };
  void CheckSlow(std::string_view member, const void* object);

  std::vector<Rule> rules_;
  int next_id_ = 1;
  CallCounter* counter_ = nullptr;
};

}  // namespace zintra::sim

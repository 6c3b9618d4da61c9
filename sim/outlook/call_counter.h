// CallCounter: counts the calls the system makes into the simulated host, by member
// ("Item.Save", "MapiUtils.HrGetOneProp", "Registry.QueryValue") and by kind. On the
// real host each of these is one IDispatch call, one library call or one registry call,
// which is the cost that matters inside Outlook; the counts are deterministic, unlike
// timings on a shared machine.
//
// Attach it with FaultInjector::SetCounter (every Outlook and library member reports
// there before it does anything) and, for the registry, with the two halves of
// Observer("Registry."): MemoryRegistry::SetCallObserver(o.enter, o.leave). Counting is
// a hash lookup per call. Not thread-safe (Outlook's thread).
//
// It also times the calls: each Outlook and library member holds the HostCall that
// Enter returns until it returns, and each registry call runs from the observer's
// enter to its leave, so the time from the outermost call's start to its end is the
// host's (a member that calls another is one span, not two), and an event the host
// raises into the add-in inside a call (AddinCallback) is the add-in's again. The
// add-in's own time over a run is the run's time on the same clock less
// HostNanoseconds; RegistryNanoseconds is the part of that host time spent in
// registry calls.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zintra::sim {

class CallCounter {
 public:
  enum class Kind {
    kPropertyRead,   // getters and collection navigation: Item.Subject, HrGetOneProp,
                     // Recipients.Item
    kPropertyWrite,  // setters, property adds and removals: UserProperty.SetValue, HrSetOneProp
    kSave,           // store writes: Item.Save, RdoMessage.Save
    kCopyMove,       // Item.Copy, Item.Move, RdoMessage.CopyTo, ...
    kFind,           // searches: Items.Find, Items.FindNext, UserProperties.Find, Items.Restrict
    kOpen,           // opening by identifier: RdoSession.GetMessageFromID, GetItemFromID
    kRow,            // table rows and item-walk steps: MapiTable.GetRows, Items.GetNext
    kRegistryRead,   // Registry.OpenKey, QueryValue, EnumKey, EnumValue, QueryInfoKey
    kRegistryWrite,  // Registry.CreateKey, SetValue, DeleteValue, DeleteKey
    kOther,          // object creation, deletes, windows, command bars, CloseKey
  };
  static constexpr int kKinds = static_cast<int>(Kind::kOther) + 1;
  static std::string_view KindName(Kind kind);
  // The kind a member name belongs to; "Class.Member" as the simulated host names it.
  static Kind KindOf(std::string_view member);

  // Calls by kind, with the total; plain values, so that two can be subtracted.
  struct Tally {
    std::array<int64_t, kKinds> by_kind{};
    int64_t Of(Kind kind) const { return by_kind[static_cast<int>(kind)]; }
    int64_t Total() const;
    Tally operator-(const Tally& other) const;
    // "reads 12, writes 4, saves 2, ..." (kinds with no calls left out).
    std::string ToString() const;
  };

  // Nanoseconds on any fixed origin; the thread's CPU time suits a shared machine.
  using Clock = int64_t (*)();
  static int64_t SteadyNanoseconds();

  // A host call under way: it ends when this goes out of scope. An empty one (no
  // counter attached) costs a null test.
  class [[nodiscard]] HostCall {
   public:
    HostCall() = default;
    HostCall(HostCall&& other) noexcept : counter_(std::exchange(other.counter_, nullptr)) {}
    HostCall& operator=(HostCall&&) = delete;
    ~HostCall() {
      if (counter_ != nullptr) counter_->Leave();
    }

   private:
    friend class CallCounter;
    explicit HostCall(CallCounter* counter) : counter_(counter) {}
    CallCounter* counter_ = nullptr;
  };
  // The host calling back into the add-in (an event raised inside a call): the host's
  // clock stops until this goes out of scope, and calls the add-in makes meanwhile are
  // outermost calls of their own.
  class [[nodiscard]] AddinCallback {
   public:
    AddinCallback() = default;
    AddinCallback(AddinCallback&& other) noexcept
        : counter_(std::exchange(other.counter_, nullptr)),
          depth_(other.depth_),
          registry_(other.registry_) {}
    AddinCallback& operator=(AddinCallback&&) = delete;
    ~AddinCallback() {
      if (counter_ != nullptr) counter_->Resume(depth_, registry_);
    }

   private:
    friend class CallCounter;
    AddinCallback(CallCounter* counter, int depth, bool registry)
        : counter_(counter), depth_(depth), registry_(registry) {}
    CallCounter* counter_ = nullptr;
    int depth_ = 0;
    bool registry_ = false;  // the interrupted call is a registry call
  };

  void Count(std::string_view member);
  // Counts `member` and starts its call.
  HostCall Enter(std::string_view member);
  AddinCallback Callback();
  // The clock calls are timed on (SteadyNanoseconds unless set); set it between calls.
  void SetClock(Clock clock) { clock_ = clock; }
  // Time inside host calls since the last Reset, nested calls counted once.
  int64_t HostNanoseconds() const { return host_ns_; }
  double HostSeconds() const { return static_cast<double>(host_ns_) / 1e9; }
  // Readings of the clock since the last Reset: about half of each one's cost falls
  // inside the host's time and half outside, which a bench can take back out.
  int64_t ClockReadings() const { return readings_; }
  // Calls of members named "Registry." since the last Reset, and the time inside those
  // that were outermost calls (part of HostNanoseconds).
  int64_t RegistryCalls() const { return registry_calls_; }
  int64_t RegistryNanoseconds() const { return registry_ns_; }
  double RegistrySeconds() const { return static_cast<double>(registry_ns_) / 1e9; }
  // An observer for a port that reports bare member names when a call starts (`enter`)
  // and tells when it returns (`leave`); `prefix` names the class. Both halves go to
  // the port together: a call entered and never left would time the rest as the host's.
  struct PortObserver {
    std::function<void(std::string_view)> enter;
    std::function<void()> leave;
  };
  PortObserver Observer(std::string prefix);

  const Tally& Totals() const { return totals_; }
  int64_t CallsOf(std::string_view member) const;
  // Every member called, most calls first (ties by name).
  std::vector<std::pair<std::string, int64_t>> ByMember() const;
  void Reset();

 private:
  struct Hash {
    using is_transparent = void;
    size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
  };
  struct Entry {
    int64_t calls = 0;
    Kind kind = Kind::kOther;
  };
  void Begin(std::string_view member);  // counts `member` and starts its call
  void Leave();
  void Resume(int depth, bool registry);

  std::unordered_map<std::string, Entry, Hash, std::equal_to<>> members_;
  Tally totals_;
  Clock clock_ = &SteadyNanoseconds;
  int depth_ = 0;  // host calls under way, the outermost included
  int64_t started_ns_ = 0;
  int64_t host_ns_ = 0;
  bool outer_registry_ = false;  // the outermost call under way is a registry call
  int64_t registry_ns_ = 0;
  int64_t registry_calls_ = 0;
  int64_t readings_ = 0;
  int64_t Now() {
    ++readings_;
    return clock_();
  }
};

}  // namespace zintra::sim

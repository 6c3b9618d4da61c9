// CallCounter: counts the calls the system makes into the simulated host, by member
// ("Item.Save", "MapiUtils.HrGetOneProp", "Registry.QueryValue") and by kind. On the
// real host each of these is one IDispatch call, one library call or one registry call,
// which is the cost that matters inside Outlook; the counts are deterministic, unlike
// timings on a shared machine.
//
// Attach it with FaultInjector::SetCounter (every Outlook and library member reports
// there before it does anything) and MemoryRegistry::SetCallObserver(counter.Observer
// ("Registry.")). Counting is a hash lookup per call. Not thread-safe (Outlook's thread).
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

  void Count(std::string_view member);
  // An observer for a port that reports bare member names; `prefix` names the class.
  std::function<void(std::string_view)> Observer(std::string prefix);

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
  std::unordered_map<std::string, Entry, Hash, std::equal_to<>> members_;
  Tally totals_;
};

}  // namespace zintra::sim

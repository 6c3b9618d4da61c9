// MemoryRegistry: the registry in memory, with HKEY_CURRENT_USER and HKEY_LOCAL_MACHINE.
// Keys compare without regard to letter case and enumerate in alphabetical order;
// values keep the order they were created in. Each key carries an access rule
// (SetAccess) so that every failure of the real registry can be driven from a test: a
// read-only key refuses opening for writing, creating subkeys, setting, deleting; a
// denied key refuses every open. A key with subkeys cannot be deleted (error 5), as on
// Windows. Any port member can also be told to fail (FailCall).
//
// The members after the port's are the fixture side: they bypass access rules and
// faults, and a missing key passed to them is created (setters) or reported (getters).
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "src/host/registry.h"

namespace zintra::sim {

enum class KeyAccess { kFull, kReadOnly, kDenied };

struct RegistryValue {
  std::string name;  // "" is the key's default value
  uint32_t type = kRegNone;
  std::vector<uint8_t> data;  // as RegQueryValueExA returns it; strings end with a zero

  std::string AsString() const;  // a string's text without its terminating zero
  std::optional<uint32_t> AsDword() const;
  bool operator==(const RegistryValue&) const = default;
};

// One change to a key's values: set `value`, or remove the value named `value.name`.
struct ValueEdit {
  RegistryValue value;
  bool remove = false;
};

// How deep Windows lets a registry tree go; fixtures refuse deeper keys.
inline constexpr size_t kMaxKeyDepth = 512;

class MemoryRegistry : public Registry {
 public:
  MemoryRegistry();
  ~MemoryRegistry() override;
  MemoryRegistry(const MemoryRegistry&) = delete;
  MemoryRegistry& operator=(const MemoryRegistry&) = delete;

  // --- Registry ---
  int32_t OpenKey(HKey parent, const std::string& sub_key, uint32_t access, HKey* result) override;
  int32_t CreateKey(HKey parent, const std::string& sub_key, uint32_t access, HKey* result,
                    bool* created) override;
  int32_t QueryValue(HKey key, const std::string& name, uint32_t* type, uint8_t* data,
                     uint32_t* size) override;
  int32_t SetValue(HKey key, const std::string& name, uint32_t type, const uint8_t* data,
                   uint32_t size) override;
  int32_t DeleteValue(HKey key, const std::string& name) override;
  int32_t DeleteKey(HKey parent, const std::string& sub_key) override;
  int32_t EnumKey(HKey key, uint32_t index, std::string* name, uint32_t* name_size) override;
  int32_t EnumValue(HKey key, uint32_t index, std::string* name, uint32_t* name_size,
                    uint32_t* type) override;
  int32_t QueryInfoKey(HKey key, RegistryKeyInfo* info) override;
  int32_t CloseKey(HKey key) override;

  // --- Fixture side ---
  void SetString(HKey hive, const std::string& path, const std::string& name,
                 const std::string& value);
  void SetDword(HKey hive, const std::string& path, const std::string& name, uint32_t value);
  void PutValue(HKey hive, const std::string& path, RegistryValue value);
  void EnsureKey(HKey hive, const std::string& path);
  // Creates the key when missing and applies `edits` to it in order.
  void EditValues(HKey hive, const std::string& path, std::vector<ValueEdit> edits);
  // Removes a key with its whole subtree / one value; false when it was not there.
  bool RemoveKey(HKey hive, const std::string& path);
  bool RemoveValue(HKey hive, const std::string& path, const std::string& name);

  bool HasKey(HKey hive, const std::string& path) const;
  std::optional<RegistryValue> GetValue(HKey hive, const std::string& path,
                                        const std::string& name) const;
  // Subkey names (alphabetical) and values (creation order) of a key; empty when missing.
  std::vector<std::string> SubKeys(HKey hive, const std::string& path) const;
  std::vector<RegistryValue> Values(HKey hive, const std::string& path) const;
  // Calls `visit` with the path (below the hive, in the keys' own spelling) and the values
  // of hive\path and of every key under it, each key before its subkeys, subkeys in
  // alphabetical order. Nothing when the key is missing.
  void VisitTree(HKey hive, const std::string& path,
                 const std::function<void(const std::string& key_path,
                                          const std::vector<RegistryValue>& values)>& visit) const;
  // The key's own spelling of its path below the hive ("" for the hive itself).
  std::string CanonicalPath(HKey hive, const std::string& path) const;

  // Applies `access` to the key and its whole subtree. Throws std::invalid_argument when
  // the key does not exist.
  void SetAccess(HKey hive, const std::string& path, KeyAccess access);

  // Makes port member `member` ("OpenKey", "QueryValue", ...) answer `error` after
  // `skip` more successful calls, `times` times (-1: from then on, always).
  void FailCall(const std::string& member, int32_t error, int skip = 0, int times = 1);
  void ClearFaults();
  // `enter` is told the name of every port member called ("OpenKey", "QueryValue", ...)
  // before it does anything, and `leave` (when given) is called once it returns, failed
  // or not; for counting and timing the calls. Empty: none.
  void SetCallObserver(std::function<void(std::string_view)> enter,
                       std::function<void()> leave = nullptr) {
    enter_ = std::move(enter);
    leave_ = std::move(leave);
  }

  // Keys opened through the port and not yet closed.
  size_t OpenHandleCount() const { return handles_.size(); }

 private:
  struct Node;
  struct Handle {
    std::shared_ptr<Node> node;
    uint32_t access;
  };
  struct Fault {
    int32_t error;
    int skip;
    int times;
  };
  // A port call under way, from the observer's `enter` to its `leave`.
  class [[nodiscard]] ObservedCall {
   public:
    explicit ObservedCall(const std::function<void()>* leave) : leave_(leave) {}
    ObservedCall(const ObservedCall&) = delete;
    ObservedCall& operator=(const ObservedCall&) = delete;
    ~ObservedCall() {
      if (leave_ != nullptr && *leave_) (*leave_)();
    }

   private:
    const std::function<void()>* leave_;
  };

  std::shared_ptr<Node> Root(HKey hive) const;
  // The node of an open handle or hive; nullptr and *rc on failure.
  std::shared_ptr<Node> Resolve(HKey key, uint32_t needed, int32_t* rc) const;
  std::shared_ptr<Node> Walk(std::shared_ptr<Node> from, const std::string& path) const;
  std::shared_ptr<Node> WalkOrCreate(HKey hive, const std::string& path);
  void Visit(const std::shared_ptr<Node>& node, std::string& path,
             const std::function<void(const std::string&, const std::vector<RegistryValue>&)>&
                 visit) const;
  HKey NewHandle(std::shared_ptr<Node> node, uint32_t access);
  ObservedCall Observe(std::string_view member);
  int32_t Injected(const std::string& member);

  std::shared_ptr<Node> current_user_;
  std::shared_ptr<Node> local_machine_;
  std::map<HKey, Handle> handles_;
  HKey next_handle_ = 0x1000;
  std::map<std::string, Fault> faults_;
  // The key WalkOrCreate reached last: a file's keys mostly follow their parents, so the
  // walk to a subkey starts there instead of at the hive.
  HKey last_hive_ = 0;
  std::string last_path_;
  std::weak_ptr<Node> last_node_;
  std::function<void(std::string_view)> enter_;
  std::function<void()> leave_;
};

}  // namespace zintra::sim

// AddressCache: the in-memory index of a tracked contact folder, from e-mail address
// to the entry identifier (hexadecimal text) of the contact that carries it.
// Addresses compare without regard to letter case (ASCII, as Outlook's own
// comparison); the first contact added under an address keeps it. Each contact's
// identifier is stored once however many addresses point at it.
//
// Layout, for lookups that cost little more than a bare hash lookup: an open-addressing
// table of 16-byte slots (hash, where the key lies, its length, the contact) probed
// linearly, and the keys folded to lower case once, when they are added, in blocks of
// characters that never move. A lookup folds and hashes the address in one pass,
// eight bytes at a time, and compares bytes only where the stored hash agrees; it
// allocates nothing for addresses up to kMaxInlineKey bytes. Not thread-safe
// (Outlook's thread).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zintra {

class AddressCache {
 public:
  static constexpr size_t kMaxInlineKey = 256;

  // Adds each non-empty address under `entry_id`; an address already present keeps
  // its first contact. Returns the number of addresses added.
  int Add(std::string_view entry_id, std::string_view address1, std::string_view address2,
          std::string_view address3);
  // Adds one address; false when it is empty or already present.
  bool AddAddress(std::string_view address, std::string_view entry_id);
  // The contact's entry identifier, or nullptr when the address is unknown. The
  // pointer is valid until the cache is next changed.
  const std::string* Find(std::string_view address) const;
  // Forgets one address (a contact that no longer exists); false when unknown. Its
  // characters stay in their block until the cache is cleared.
  bool Remove(std::string_view address);
  void Clear();
  // Room for `contacts` contacts with up to `addresses` addresses between them, so
  // that no single Add rehashes the whole index or moves every identifier.
  void Reserve(size_t contacts, size_t addresses);

  int32_t Count() const { return static_cast<int32_t>(count_); }
  // Heap bytes held, from the containers' sizes and capacities.
  size_t MemoryUsage() const;

 private:
  struct Slot {
    uint32_t tag = 0;      // the upper half of the key's hash
    uint32_t where = 0;    // block index << kBlockBits | offset in the block
    uint32_t length = 0;   // bytes of the key
    uint32_t id = kEmpty;  // index into entry_ids_, or kEmpty / kDeleted
  };
  static constexpr uint32_t kEmpty = UINT32_MAX;
  static constexpr uint32_t kDeleted = UINT32_MAX - 1;
  static constexpr int kBlockBits = 16;
  static constexpr size_t kBlockSize = size_t{1} << kBlockBits;

  // The address folded to lower case (in `inline_` or, when longer, in `heap_`) and
  // its hash.
  struct Key {
    const char* data = nullptr;
    size_t length = 0;
    uint64_t hash = 0;
    char inline_[kMaxInlineKey];
    std::string heap_;
  };
  static void Fold(std::string_view address, Key& key);

  const char* KeyAt(const Slot& slot) const;
  // The slot holding `key`, or the index of the slot it would take (`found` false).
  size_t Probe(const Key& key, bool& found) const;
  uint32_t Store(const Key& key);
  void Rehash(size_t capacity);
  uint32_t InternId(std::string_view entry_id);

  std::vector<Slot> slots_;  // a power of two long, or empty
  size_t count_ = 0;
  size_t deleted_ = 0;
  std::vector<std::unique_ptr<char[]>> blocks_;
  size_t block_size_ = 0;   // bytes of the last block
  size_t block_used_ = 0;   // bytes used of the last block
  size_t block_bytes_ = 0;  // bytes allocated in blocks
  // Entry identifiers by number; a contact's addresses arrive together, so the last
  // one interned is reused.
  std::vector<std::string> entry_ids_;
};

}  // namespace zintra

// AddressCache: the in-memory index of a tracked contact folder, from e-mail address
// to the entry identifier (hexadecimal text) of the contact that carries it.
// Addresses compare without regard to letter case (ASCII, as Outlook's own
// comparison); the first contact added under an address keeps it. Each contact's
// identifier is stored once however many addresses point at it. Lookups allocate
// nothing. Not thread-safe (Outlook's thread).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace zintra {

class AddressCache {
 public:
  // Adds each non-empty address under `entry_id`; an address already present keeps
  // its first contact. Returns the number of addresses added.
  int Add(std::string_view entry_id, std::string_view address1, std::string_view address2,
          std::string_view address3);
  // Adds one address; false when it is empty or already present.
  bool AddAddress(std::string_view address, std::string_view entry_id);
  // The contact's entry identifier, or nullptr when the address is unknown. The
  // pointer is valid until the cache is next changed.
  const std::string* Find(std::string_view address) const;
  // Forgets one address (a contact that no longer exists); false when unknown.
  bool Remove(std::string_view address);
  void Clear();
  // Room for `contacts` contacts with up to `addresses` addresses between them, so
  // that no single Add rehashes the whole index or moves every identifier.
  void Reserve(size_t contacts, size_t addresses) {
    index_.reserve(addresses);
    entry_ids_.reserve(contacts);
  }

  int32_t Count() const { return static_cast<int32_t>(index_.size()); }
  // Heap bytes held, estimated from the containers' sizes and capacities.
  size_t MemoryUsage() const;

 private:
  struct NoCaseHash {
    using is_transparent = void;
    size_t operator()(std::string_view s) const;
  };
  struct NoCaseEqual {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const;
  };

  uint32_t InternId(std::string_view entry_id);

  std::unordered_map<std::string, uint32_t, NoCaseHash, NoCaseEqual> index_;
  // Entry identifiers by number; a contact's addresses arrive together, so the last
  // one interned is reused.
  std::vector<std::string> entry_ids_;
};

}  // namespace zintra

#include "src/contacts/address_cache.h"

namespace zintra {

namespace {

inline unsigned char Fold(unsigned char c) {
  return (c >= 'A' && c <= 'Z') ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

}  // namespace

size_t AddressCache::NoCaseHash::operator()(std::string_view s) const {
  // FNV-1a over the folded bytes: cheap, and no lower-cased copy is made.
  uint64_t h = 14695981039346656037ull;
  for (unsigned char c : s) {
    h ^= Fold(c);
    h *= 1099511628211ull;
  }
  return static_cast<size_t>(h ^ (h >> 32));
}

bool AddressCache::NoCaseEqual::operator()(std::string_view a, std::string_view b) const {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i) {
    if (Fold(static_cast<unsigned char>(a[i])) != Fold(static_cast<unsigned char>(b[i]))) {
      return false;
    }
  }
  return true;
}

uint32_t AddressCache::InternId(std::string_view entry_id) {
  if (entry_ids_.empty() || entry_ids_.back() != entry_id) entry_ids_.emplace_back(entry_id);
  return static_cast<uint32_t>(entry_ids_.size() - 1);
}

bool AddressCache::AddAddress(std::string_view address, std::string_view entry_id) {
  if (address.empty()) return false;
  // One lookup: the identifier is interned only once the address is known to be new.
  auto [it, inserted] = index_.emplace(std::string(address), 0u);
  if (inserted) it->second = InternId(entry_id);
  return inserted;
}

int AddressCache::Add(std::string_view entry_id, std::string_view address1,
                      std::string_view address2, std::string_view address3) {
  return static_cast<int>(AddAddress(address1, entry_id)) +
         static_cast<int>(AddAddress(address2, entry_id)) +
         static_cast<int>(AddAddress(address3, entry_id));
}

const std::string* AddressCache::Find(std::string_view address) const {
  auto it = index_.find(address);
  return it == index_.end() ? nullptr : &entry_ids_[it->second];
}

bool AddressCache::Remove(std::string_view address) {
  auto it = index_.find(address);
  if (it == index_.end()) return false;
  index_.erase(it);
  return true;
}

void AddressCache::Clear() {
  index_.clear();
  entry_ids_.clear();
  entry_ids_.shrink_to_fit();
}

size_t AddressCache::MemoryUsage() const {
  // One node per address (key, value, next pointer, cached hash), the bucket array,
  // and the heap part of every string that outgrew its inline buffer.
  constexpr size_t kInline = 15;
  size_t bytes = index_.bucket_count() * sizeof(void*);
  for (const auto& [key, id] : index_) {
    bytes += sizeof(std::pair<const std::string, uint32_t>) + 2 * sizeof(void*);
    if (key.size() > kInline) bytes += key.capacity() + 1;
  }
  bytes += entry_ids_.capacity() * sizeof(std::string);
  for (const auto& id : entry_ids_) {
    if (id.size() > kInline) bytes += id.capacity() + 1;
  }
  return bytes;
}

}  // namespace zintra

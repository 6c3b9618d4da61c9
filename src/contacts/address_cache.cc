#include "src/contacts/address_cache.h"

#include <algorithm>
#include <cstring>

#include "src/core/text.h"

namespace zintra {

namespace {

inline uint64_t MixWord(uint64_t h, uint64_t w) {
  h ^= w;
  h *= 0xff51afd7ed558ccdull;
  return h ^ (h >> 32);
}

inline uint64_t Finish(uint64_t h) {
  h ^= h >> 29;
  h *= 0xc4ceb9fe1a85ec53ull;
  return h ^ (h >> 32);
}

}  // namespace

void AddressCache::Fold(std::string_view address, Key& key) {
  key.length = address.size();
  char* out = key.inline_;
  if (address.size() > kMaxInlineKey) {
    key.heap_.resize(address.size());
    out = key.heap_.data();
  }
  key.data = out;
  uint64_t h = 0x9E3779B97F4A7C15ull * (address.size() + 1);
  size_t i = 0;
  for (; i + 8 <= address.size(); i += 8) {
    uint64_t w;
    std::memcpy(&w, address.data() + i, 8);
    w = text::LowerAsciiWord(w);
    std::memcpy(out + i, &w, 8);
    h = MixWord(h, w);
  }
  if (i < address.size()) {
    uint64_t w = 0;  // zero bytes are no letters and fold to themselves
    std::memcpy(&w, address.data() + i, address.size() - i);
    w = text::LowerAsciiWord(w);
    std::memcpy(out + i, &w, address.size() - i);
    h = MixWord(h, w);
  }
  key.hash = Finish(h);
}

const char* AddressCache::KeyAt(const Slot& slot) const {
  return blocks_[slot.where >> kBlockBits].get() + (slot.where & (kBlockSize - 1));
}

size_t AddressCache::Probe(const Key& key, bool& found) const {
  const size_t mask = slots_.size() - 1;
  const auto tag = static_cast<uint32_t>(key.hash >> 32);
  size_t free_slot = SIZE_MAX;
  for (size_t i = static_cast<size_t>(key.hash) & mask;; i = (i + 1) & mask) {
    const Slot& slot = slots_[i];
    if (slot.id == kEmpty) {
      found = false;
      return free_slot != SIZE_MAX ? free_slot : i;
    }
    if (slot.id == kDeleted) {
      if (free_slot == SIZE_MAX) free_slot = i;
      continue;
    }
    if (slot.tag == tag && slot.length == key.length &&
        std::memcmp(KeyAt(slot), key.data, key.length) == 0) {
      found = true;
      return i;
    }
  }
}

uint32_t AddressCache::Store(const Key& key) {
  if (key.length > kBlockSize) {  // a key longer than a block gets one of its own
    blocks_.emplace_back(new char[key.length]);
    block_bytes_ += key.length;
    std::memcpy(blocks_.back().get(), key.data, key.length);
    block_used_ = block_size_ = key.length;
    return static_cast<uint32_t>(blocks_.size() - 1) << kBlockBits;
  }
  if (block_size_ - block_used_ < key.length) {
    // Blocks grow with the cache, from 1 KiB to kBlockSize: a small cache stays small.
    block_size_ = std::max(std::clamp(block_bytes_, size_t{1024}, kBlockSize), key.length);
    blocks_.emplace_back(new char[block_size_]);
    block_bytes_ += block_size_;
    block_used_ = 0;
  }
  const auto where = static_cast<uint32_t>(((blocks_.size() - 1) << kBlockBits) | block_used_);
  std::memcpy(blocks_.back().get() + block_used_, key.data, key.length);
  block_used_ += key.length;
  return where;
}

void AddressCache::Rehash(size_t capacity) {
  std::vector<Slot> old;
  old.swap(slots_);
  slots_.assign(capacity, Slot{});
  deleted_ = 0;
  const size_t mask = capacity - 1;
  for (const Slot& slot : old) {
    if (slot.id == kEmpty || slot.id == kDeleted) continue;
    // The slot's hash is not kept whole, so the stored key is hashed again.
    Key key;
    Fold(std::string_view(KeyAt(slot), slot.length), key);
    size_t i = static_cast<size_t>(key.hash) & mask;
    while (slots_[i].id != kEmpty) i = (i + 1) & mask;
    slots_[i] = slot;
  }
}

void AddressCache::Reserve(size_t contacts, size_t addresses) {
  // At most seven slots in eight in use.
  size_t capacity = 16;
  while (capacity * 7 < (addresses + deleted_) * 8) capacity *= 2;
  if (capacity > slots_.size()) Rehash(capacity);
  entry_ids_.reserve(contacts);
}

uint32_t AddressCache::InternId(std::string_view entry_id) {
  if (entry_ids_.empty() || entry_ids_.back() != entry_id) entry_ids_.emplace_back(entry_id);
  return static_cast<uint32_t>(entry_ids_.size() - 1);
}

bool AddressCache::AddAddress(std::string_view address, std::string_view entry_id) {
  if (address.empty()) return false;
  if ((count_ + deleted_ + 1) * 8 > slots_.size() * 7) Reserve(0, 2 * (count_ + 1));
  Key key;
  Fold(address, key);
  bool found = false;
  const size_t i = Probe(key, found);
  if (found) return false;
  Slot& slot = slots_[i];
  if (slot.id == kDeleted) --deleted_;
  slot.tag = static_cast<uint32_t>(key.hash >> 32);
  slot.where = Store(key);
  slot.length = static_cast<uint32_t>(key.length);
  slot.id = InternId(entry_id);
  ++count_;
  return true;
}

int AddressCache::Add(std::string_view entry_id, std::string_view address1,
                      std::string_view address2, std::string_view address3) {
  return static_cast<int>(AddAddress(address1, entry_id)) +
         static_cast<int>(AddAddress(address2, entry_id)) +
         static_cast<int>(AddAddress(address3, entry_id));
}

const std::string* AddressCache::Find(std::string_view address) const {
  if (count_ == 0) return nullptr;
  Key key;
  Fold(address, key);
  bool found = false;
  const size_t i = Probe(key, found);
  return found ? &entry_ids_[slots_[i].id] : nullptr;
}

bool AddressCache::Remove(std::string_view address) {
  if (count_ == 0) return false;
  Key key;
  Fold(address, key);
  bool found = false;
  const size_t i = Probe(key, found);
  if (!found) return false;
  slots_[i].id = kDeleted;
  --count_;
  ++deleted_;
  return true;
}

void AddressCache::Clear() {
  // Swapped with empty ones, so that the memory goes back at once.
  std::vector<Slot>().swap(slots_);
  count_ = 0;
  deleted_ = 0;
  std::vector<std::unique_ptr<char[]>>().swap(blocks_);
  block_used_ = block_size_ = 0;
  block_bytes_ = 0;
  std::vector<std::string>().swap(entry_ids_);
}

size_t AddressCache::MemoryUsage() const {
  constexpr size_t kInline = 15;  // std::string's own buffer
  size_t bytes = slots_.capacity() * sizeof(Slot) + block_bytes_ +
                 blocks_.capacity() * sizeof(blocks_[0]) +
                 entry_ids_.capacity() * sizeof(std::string);
  for (const auto& id : entry_ids_) {
    if (id.size() > kInline) bytes += id.capacity() + 1;
  }
  return bytes;
}

}  // namespace zintra

// KeyedCollection<T>: a VB Collection. Items keep their insertion order and are
// numbered from 1; an optional text key, compared without regard to letter case,
// finds an item directly. Adding a key that is present fails with error 457 (callers
// test for it), a missing key or index with error 5. Values() and Keys() return
// snapshots, so removing items while walking one of them is safe.
//
// The index points at the keys the entries hold and hashes and compares them folded
// to lower case as it reads them, so that looking a key up allocates nothing. Most
// collections hold a handful of items: until one holds more than kLinearMax, keys are
// found by walking the entries, and the index is not built at all.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "src/core/text.h"
#include "src/core/z_error.h"

namespace zintra {

template <typename T>
class KeyedCollection {
 public:
  KeyedCollection() = default;
  // Copies are independent: each gets its own entries (a VB Collection copied item by
  // item), so changing an item of one never shows through the other.
  KeyedCollection(const KeyedCollection& other) { CopyFrom(other); }
  KeyedCollection& operator=(const KeyedCollection& other) {
    if (this != &other) {
      Clear();
      CopyFrom(other);
    }
    return *this;
  }
  KeyedCollection(KeyedCollection&&) noexcept = default;
  KeyedCollection& operator=(KeyedCollection&&) noexcept = default;

  void Add(T value, std::string_view key = {}) {
    if (!key.empty() && FindEntry(key)) throw ZError(kErrDuplicateKey);
    order_.push_back(std::make_unique<Entry>(Entry{std::string(key), std::move(value)}));
    try {
      if (indexed_) {
        if (!key.empty()) by_key_.emplace(order_.back()->key, order_.back().get());
      } else if (order_.size() > kLinearMax) {
        BuildIndex();
      }
    } catch (...) {
      order_.pop_back();
      if (!indexed_) by_key_.clear();
      throw;
    }
  }

  int Count() const { return static_cast<int>(order_.size()); }
  bool Contains(std::string_view key) const { return FindEntry(key) != nullptr; }

  T& Item(int index) { return At(index)->value; }
  const T& Item(int index) const { return At(index)->value; }
  T& Item(std::string_view key) { return Find(key)->value; }
  const T& Item(std::string_view key) const { return Find(key)->value; }

  // The item under `key`, or null: one lookup where Contains and Item would take two.
  T* Lookup(std::string_view key) {
    Entry* entry = FindEntry(key);
    return entry ? &entry->value : nullptr;
  }
  const T* Lookup(std::string_view key) const {
    const Entry* entry = FindEntry(key);
    return entry ? &entry->value : nullptr;
  }

  // The key an item was added with ("" for none).
  const std::string& KeyAt(int index) const { return At(index)->key; }

  void Remove(int index) {
    const Entry* entry = At(index).get();
    if (indexed_ && !entry->key.empty()) by_key_.erase(entry->key);
    order_.erase(order_.begin() + (index - 1));
  }

  void Remove(std::string_view key) {
    if (!RemoveIfPresent(key)) throw ZError(kErrInvalidCall);
  }

  // Removes the item under `key` if there is one; whether there was.
  bool RemoveIfPresent(std::string_view key) {
    const Entry* entry = FindEntry(key);
    if (!entry) return false;
    if (indexed_) by_key_.erase(entry->key);
    for (auto pos = order_.begin(); pos != order_.end(); ++pos) {
      if (pos->get() == entry) {
        order_.erase(pos);
        break;
      }
    }
    return true;
  }

  void Clear() {
    by_key_.clear();
    order_.clear();
    indexed_ = false;
  }

  std::vector<T> Values() const {
    std::vector<T> out;
    out.reserve(order_.size());
    for (const auto& entry : order_) out.push_back(entry->value);
    return out;
  }

  std::vector<std::string> Keys() const {
    std::vector<std::string> out;
    out.reserve(order_.size());
    for (const auto& entry : order_) out.push_back(entry->key);
    return out;
  }

 private:
  struct Entry {
    std::string key;
    T value;
  };

  // Keys hashed and compared as ASCII lower case (Outlook's own comparison).
  struct NoCaseHash {
    size_t operator()(std::string_view key) const { return text::HashNoCase(key); }
  };
  struct NoCaseEqual {
    bool operator()(std::string_view a, std::string_view b) const {
      return text::EqualsNoCase(a, b);
    }
  };

  // The largest collection whose keys are found by walking its entries.
  static constexpr size_t kLinearMax = 8;

  void CopyFrom(const KeyedCollection& other) {
    order_.reserve(other.order_.size());
    for (const auto& entry : other.order_) order_.push_back(std::make_unique<Entry>(*entry));
    if (order_.size() > kLinearMax) BuildIndex();
  }

  void BuildIndex() {
    by_key_.reserve(order_.size());
    for (const auto& entry : order_) {
      if (!entry->key.empty()) by_key_.emplace(entry->key, entry.get());
    }
    indexed_ = true;
  }

  Entry* FindEntry(std::string_view key) const {
    if (indexed_) {
      auto it = by_key_.find(key);
      return it == by_key_.end() ? nullptr : it->second;
    }
    if (key.empty()) return nullptr;
    for (const auto& entry : order_) {
      if (text::EqualsNoCase(entry->key, key)) return entry.get();
    }
    return nullptr;
  }

  const std::unique_ptr<Entry>& At(int index) const {
    if (index < 1 || index > Count()) throw ZError(kErrInvalidCall);
    return order_[static_cast<size_t>(index - 1)];
  }

  Entry* Find(std::string_view key) const {
    Entry* entry = FindEntry(key);
    if (!entry) throw ZError(kErrInvalidCall);
    return entry;
  }

  // Entries live on the heap, so the index's views of their keys survive the
  // vector's growth and the collection's moves.
  std::vector<std::unique_ptr<Entry>> order_;
  std::unordered_map<std::string_view, Entry*, NoCaseHash, NoCaseEqual> by_key_;
  bool indexed_ = false;  // by_key_ holds every keyed entry
};

}  // namespace zintra

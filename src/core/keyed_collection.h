// KeyedCollection<T>: a VB Collection. Items keep their insertion order and are
// numbered from 1; an optional text key, compared without regard to letter case,
// finds an item directly. Adding a key that is present fails with error 457 (callers
// test for it), a missing key or index with error 5. Values() and Keys() return
// snapshots, so removing items while walking one of them is safe.
//
// The index points at the keys the entries hold and hashes and compares them folded
// to lower case as it reads them, so that looking a key up allocates nothing.
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
    order_.push_back(std::make_unique<Entry>(Entry{std::string(key), std::move(value)}));
    if (key.empty()) return;
    bool inserted = false;
    try {
      inserted = by_key_.emplace(order_.back()->key, order_.back().get()).second;
    } catch (...) {
      order_.pop_back();
      throw;
    }
    if (!inserted) {
      order_.pop_back();
      throw ZError(kErrDuplicateKey);
    }
  }

  int Count() const { return static_cast<int>(order_.size()); }
  bool Contains(std::string_view key) const { return by_key_.count(key) != 0; }

  T& Item(int index) { return At(index)->value; }
  const T& Item(int index) const { return At(index)->value; }
  T& Item(std::string_view key) { return Find(key)->value; }
  const T& Item(std::string_view key) const { return Find(key)->value; }

  // The item under `key`, or null: one lookup where Contains and Item would take two.
  T* Lookup(std::string_view key) {
    auto it = by_key_.find(key);
    return it == by_key_.end() ? nullptr : &it->second->value;
  }
  const T* Lookup(std::string_view key) const {
    auto it = by_key_.find(key);
    return it == by_key_.end() ? nullptr : &it->second->value;
  }

  // The key an item was added with ("" for none).
  const std::string& KeyAt(int index) const { return At(index)->key; }

  void Remove(int index) {
    const Entry* entry = At(index).get();
    if (!entry->key.empty()) by_key_.erase(entry->key);
    order_.erase(order_.begin() + (index - 1));
  }

  void Remove(std::string_view key) {
    if (!RemoveIfPresent(key)) throw ZError(kErrInvalidCall);
  }

  // Removes the item under `key` if there is one; whether there was.
  bool RemoveIfPresent(std::string_view key) {
    auto it = by_key_.find(key);
    if (it == by_key_.end()) return false;
    const Entry* entry = it->second;
    by_key_.erase(it);
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

  void CopyFrom(const KeyedCollection& other) {
    order_.reserve(other.order_.size());
    for (const auto& entry : other.order_) {
      auto copy = std::make_unique<Entry>(*entry);
      if (!copy->key.empty()) by_key_.emplace(copy->key, copy.get());
      order_.push_back(std::move(copy));
    }
  }

  const std::unique_ptr<Entry>& At(int index) const {
    if (index < 1 || index > Count()) throw ZError(kErrInvalidCall);
    return order_[static_cast<size_t>(index - 1)];
  }

  Entry* Find(std::string_view key) const {
    auto it = by_key_.find(key);
    if (it == by_key_.end()) throw ZError(kErrInvalidCall);
    return it->second;
  }

  // Entries live on the heap, so the index's views of their keys survive the
  // vector's growth and the collection's moves.
  std::vector<std::unique_ptr<Entry>> order_;
  std::unordered_map<std::string_view, Entry*, NoCaseHash, NoCaseEqual> by_key_;
};

}  // namespace zintra

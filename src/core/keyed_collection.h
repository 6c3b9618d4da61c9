// KeyedCollection<T>: a VB Collection. Items keep their insertion order and are
// numbered from 1; an optional text key, compared without regard to letter case,
// finds an item directly. Adding a key that is present fails with error 457 (callers
// test for it), a missing key or index with error 5. Values() and Keys() return
// snapshots, so removing items while walking one of them is safe.
#pragma once

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
    auto entry = std::make_shared<Entry>(Entry{std::string(key), std::move(value)});
    if (!key.empty()) {
      auto [it, inserted] = by_key_.try_emplace(text::LCase(key), entry);
      if (!inserted) throw ZError(kErrDuplicateKey);
    }
    order_.push_back(std::move(entry));
  }

  int Count() const { return static_cast<int>(order_.size()); }
  bool Contains(std::string_view key) const { return by_key_.count(text::LCase(key)) != 0; }

  T& Item(int index) { return At(index)->value; }
  const T& Item(int index) const { return At(index)->value; }
  T& Item(std::string_view key) { return Find(key)->value; }
  const T& Item(std::string_view key) const { return Find(key)->value; }

  // The key an item was added with ("" for none).
  const std::string& KeyAt(int index) const { return At(index)->key; }

  void Remove(int index) {
    auto entry = At(index);
    if (!entry->key.empty()) by_key_.erase(text::LCase(entry->key));
    order_.erase(order_.begin() + (index - 1));
  }

  void Remove(std::string_view key) {
    auto it = by_key_.find(text::LCase(key));
    if (it == by_key_.end()) throw ZError(kErrInvalidCall);
    auto entry = it->second;
    by_key_.erase(it);
    for (auto pos = order_.begin(); pos != order_.end(); ++pos) {
      if (*pos == entry) {
        order_.erase(pos);
        break;
      }
    }
  }

  void Clear() {
    order_.clear();
    by_key_.clear();
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

  void CopyFrom(const KeyedCollection& other) {
    for (const auto& entry : other.order_) {
      auto copy = std::make_shared<Entry>(*entry);
      if (!copy->key.empty()) by_key_.emplace(text::LCase(copy->key), copy);
      order_.push_back(std::move(copy));
    }
  }

  const std::shared_ptr<Entry>& At(int index) const {
    if (index < 1 || index > Count()) throw ZError(kErrInvalidCall);
    return order_[static_cast<size_t>(index - 1)];
  }

  const std::shared_ptr<Entry>& Find(std::string_view key) const {
    auto it = by_key_.find(text::LCase(key));
    if (it == by_key_.end()) throw ZError(kErrInvalidCall);
    return it->second;
  }

  std::vector<std::shared_ptr<Entry>> order_;
  std::unordered_map<std::string, std::shared_ptr<Entry>> by_key_;
};

}  // namespace zintra

// SortedIndex: a folder's messages in the order of one property, as a store keeps an
// index on a folder's contents table. It is built once, when a collection first asks
// for that order, and from then on kept in step with every message that the profile
// stores, rewrites or removes in the folder, so that sorting again in that order and
// reaching the first row cost a lookup, not a sort of the whole folder. The order is
// ascending with ties in creation order (serial); a descending collection reads it from
// the end, which is exactly the descending order.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/sim_records.h"

namespace zintra::sim {

class SortedIndex {
 public:
  // The folder's index on `tag` (a date property when `is_date`, else a text one
  // compared without regard to letter case), built now if the folder has none yet.
  static std::shared_ptr<SortedIndex> Of(FolderRecord& folder, int32_t tag, bool is_date);

  SortedIndex(int32_t tag, bool is_date,
              const std::vector<std::shared_ptr<MessageRecord>>& messages);

  int32_t Tag() const { return tag_; }
  bool IsDate() const { return is_date_; }
  size_t Size() const { return entries_.size(); }
  // The record at `position` in ascending order; position < Size().
  const std::shared_ptr<MessageRecord>& At(size_t position) const {
    return entries_[position].record;
  }

  // A message stored in the folder: placed after every message that sorts with it.
  void Insert(const std::shared_ptr<MessageRecord>& message);
  // A stored message rewritten: it stays where it is unless its key moved.
  void Update(const std::shared_ptr<MessageRecord>& message);
  void Erase(const MessageRecord& message);

 private:
  struct Entry {
    double date_key = 0;
    std::string text_key;
    uint64_t serial = 0;
    std::shared_ptr<MessageRecord> record;
  };
  Entry MakeEntry(const MessageRecord& message) const;  // the key alone, without the record
  Entry MakeEntry(const std::shared_ptr<MessageRecord>& message) const;
  bool Less(const Entry& a, const Entry& b) const;
  // The message's entry: found where its present key puts it, else by a walk (its key
  // changed since it was placed); end() when absent.
  std::vector<Entry>::iterator Locate(const MessageRecord& message, const Entry& probe);

  int32_t tag_;
  bool is_date_;
  std::vector<Entry> entries_;
};

}  // namespace zintra::sim

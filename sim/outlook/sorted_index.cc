#include "sim/outlook/sorted_index.h"

#include <algorithm>
#include <utility>

#include "sim/outlook/message_props.h"
#include "src/core/date.h"
#include "src/core/text.h"

namespace zintra::sim {

std::shared_ptr<SortedIndex> SortedIndex::Of(FolderRecord& folder, int32_t tag, bool is_date) {
  for (const auto& index : folder.indexes) {
    if (index->Tag() == tag && index->IsDate() == is_date) return index;
  }
  auto index = std::make_shared<SortedIndex>(tag, is_date, folder.messages);
  folder.indexes.push_back(index);
  return index;
}

SortedIndex::SortedIndex(int32_t tag, bool is_date,
                         const std::vector<std::shared_ptr<MessageRecord>>& messages)
    : tag_(tag), is_date_(is_date) {
  entries_.reserve(messages.size());
  for (const auto& m : messages) entries_.push_back(MakeEntry(m));
  std::sort(entries_.begin(), entries_.end(),
            [this](const Entry& a, const Entry& b) { return Less(a, b); });
}

SortedIndex::Entry SortedIndex::MakeEntry(const MessageRecord& message) const {
  Entry e;
  e.serial = message.serial;
  if (is_date_) {
    const Value* v = message.props.Get(tag_);
    e.date_key = v ? v->ToDate() : kUnsetDate;
  } else {
    e.text_key = text::LCase(MessageProps::Text(message, tag_));
  }
  return e;
}

SortedIndex::Entry SortedIndex::MakeEntry(const std::shared_ptr<MessageRecord>& message) const {
  Entry e = MakeEntry(*message);
  e.record = message;
  return e;
}

bool SortedIndex::Less(const Entry& a, const Entry& b) const {
  if (is_date_) return a.date_key != b.date_key ? a.date_key < b.date_key : a.serial < b.serial;
  const int c = a.text_key.compare(b.text_key);
  return c != 0 ? c < 0 : a.serial < b.serial;
}

std::vector<SortedIndex::Entry>::iterator SortedIndex::Locate(const MessageRecord& message,
                                                              const Entry& probe) {
  auto pos = std::lower_bound(entries_.begin(), entries_.end(), probe,
                              [this](const Entry& a, const Entry& b) { return Less(a, b); });
  if (pos != entries_.end() && pos->record.get() == &message) return pos;
  return std::find_if(entries_.begin(), entries_.end(),
                      [&](const Entry& e) { return e.record.get() == &message; });
}

void SortedIndex::Insert(const std::shared_ptr<MessageRecord>& message) {
  Entry e = MakeEntry(message);
  auto pos = std::upper_bound(entries_.begin(), entries_.end(), e,
                              [this](const Entry& a, const Entry& b) { return Less(a, b); });
  entries_.insert(pos, std::move(e));
}

void SortedIndex::Update(const std::shared_ptr<MessageRecord>& message) {
  Entry e = MakeEntry(message);
  auto pos = Locate(*message, e);
  if (pos == entries_.end()) return;
  // A rewrite that leaves the key alone (a mark, a flag) leaves the order alone.
  const bool in_place = (pos == entries_.begin() || Less(*(pos - 1), e)) &&
                        (pos + 1 == entries_.end() || Less(e, *(pos + 1)));
  if (in_place) {
    *pos = std::move(e);
    return;
  }
  entries_.erase(pos);
  Insert(message);
}

void SortedIndex::Erase(const MessageRecord& message) {
  // A removal leaves the record's properties intact, so its key still finds it.
  auto pos = Locate(message, MakeEntry(message));
  if (pos != entries_.end()) entries_.erase(pos);
}

}  // namespace zintra::sim

#include "src/addin/linger_watch.h"

#include <algorithm>
#include <utility>

namespace zintra {

void LingerWatch::Watch(std::weak_ptr<const void> object, std::string type_name) {
  if (object.expired()) return;
  if (entries_.size() >= prune_at_) {
    std::erase_if(entries_, [](const Entry& e) { return e.object.expired(); });
    prune_at_ = std::max<size_t>(64, entries_.size() * 2);
  }
  entries_.push_back({std::move(object), std::move(type_name)});
}

std::string LingerWatch::SurvivorTypes() const {
  std::vector<const std::string*> seen;
  std::string types;
  for (const Entry& e : entries_) {
    if (e.object.expired()) continue;
    bool known = std::any_of(seen.begin(), seen.end(),
                             [&](const std::string* s) { return *s == e.type_name; });
    if (known) continue;
    seen.push_back(&e.type_name);
    types += (types.empty() ? "" : ", ") + e.type_name;
  }
  return types;
}

size_t LingerWatch::AliveCount() const {
  return static_cast<size_t>(std::count_if(entries_.begin(), entries_.end(),
                                           [](const Entry& e) { return !e.object.expired(); }));
}

}  // namespace zintra

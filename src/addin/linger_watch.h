// LingerWatch: weak observations of objects that must be gone once the add-in's Kill
// broadcast and the explicit kills of its parts are done. Watching never keeps an
// object alive; the lingering-reference check asks which watched objects are still
// alive, i.e. which truly outlived the broadcast because something still holds them.
// Single-threaded. No member throws except on allocation failure.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "src/core/type_name.h"

namespace zintra {

class LingerWatch {
 public:
  void Watch(std::weak_ptr<const void> object, std::string type_name);
  template <typename T>
  void Watch(const std::shared_ptr<T>& object) {
    if (object) Watch(std::weak_ptr<const void>(object), TypeName(*object));
  }

  // The type names of the watched objects still alive, each once, in order of first
  // appearance, joined by ", "; "" when every watched object is gone.
  std::string SurvivorTypes() const;
  size_t AliveCount() const;
  void Clear() { entries_.clear(); }

 private:
  struct Entry {
    std::weak_ptr<const void> object;
    std::string type_name;
  };
  std::vector<Entry> entries_;
  size_t prune_at_ = 64;  // entries of dead objects are dropped as the list grows
};

}  // namespace zintra

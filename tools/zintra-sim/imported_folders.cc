#include "tools/zintra-sim/imported_folders.h"

#include <algorithm>

#include "src/core/text.h"

namespace zintra::simtool {

namespace {

std::string FolderPersonKey(const PersonSpec& p) { return text::LCase(PersonText(p)); }

void Settle(std::vector<FolderSpec>& folders, const PersonSpec& me, const std::string& path,
            std::vector<ItemSpec>& sent, std::vector<std::string>& other_contacts) {
  for (FolderSpec& f : folders) {
    std::string here = path.empty() ? f.name : path + "/" + f.name;
    std::vector<ItemSpec> kept;
    for (ItemSpec& item : f.items) {
      item.source_line = 0;
      bool mine = item.item_class != ItemClass::kContact && item.from &&
                  FolderPersonKey(*item.from) == FolderPersonKey(me);
      (mine ? sent : kept).push_back(std::move(item));
    }
    std::stable_sort(kept.begin(), kept.end(),
                     [](const ItemSpec& a, const ItemSpec& b) { return a.time < b.time; });
    f.items = std::move(kept);
    bool contacts = std::any_of(f.items.begin(), f.items.end(), [](const ItemSpec& i) {
      return i.item_class == ItemClass::kContact;
    });
    if (contacts && here != "Contacts") other_contacts.push_back(here);
    Settle(f.folders, me, here, sent, other_contacts);
  }
}

}  // namespace

void MergeFolders(std::vector<FolderSpec>& into, std::vector<FolderSpec> from) {
  for (FolderSpec& f : from) {
    auto same = std::find_if(into.begin(), into.end(), [&](const FolderSpec& g) {
      return text::EqualsNoCase(g.name, f.name);
    });
    if (same == into.end()) {
      into.push_back(std::move(f));
      continue;
    }
    for (ItemSpec& item : f.items) same->items.push_back(std::move(item));
    MergeFolders(same->folders, std::move(f.folders));
  }
}

void SettleFolders(std::vector<FolderSpec>& folders, const PersonSpec& me,
                   std::vector<ItemSpec>& sent, std::vector<std::string>& other_contacts) {
  Settle(folders, me, "", sent, other_contacts);
}

}  // namespace zintra::simtool

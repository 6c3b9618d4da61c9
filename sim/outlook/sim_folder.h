// SimFolder, SimFolders and SimItems: the object model's folders over FolderRecord.
// See src/host/outlook_folder.h for the behaviour of a live, sorted Items collection.
// Fault keys: the folder record (for the folder, its Folders and every Items of it).
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/outlook/item_filter.h"
#include "sim/outlook/profile.h"
#include "sim/outlook/sim_keys.h"
#include "sim/outlook/sorted_index.h"
#include "src/host/outlook_folder.h"

namespace zintra::sim {

class SimFolder : public Folder, public SimKeyed, public FolderHolder {
 public:
  SimFolder(Profile* profile, std::shared_ptr<FolderRecord> record);
  std::string TypeName() const override { return "MAPIFolder"; }
  const void* FaultKey() const override { return record_.get(); }
  std::shared_ptr<FolderRecord> FolderRec() const override { return record_; }

  std::string Name() const override;
  void SetName(const std::string& name) override;
  std::string EntryID() const override;
  std::string StoreID() const override;
  int32_t DefaultItemType() const override;
  std::shared_ptr<AutomationObject> Parent() override;
  std::shared_ptr<zintra::Folders> Folders() override;
  std::shared_ptr<zintra::Items> Items() override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
  void Delete() override;

 private:
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  Profile* profile_;
  std::shared_ptr<FolderRecord> record_;
};

class SimFolders : public Folders, public SimKeyed {
 public:
  // parent nullptr: the top folders of every store (Namespace::Folders).
  SimFolders(Profile* profile, std::shared_ptr<FolderRecord> parent);
  std::string TypeName() const override { return "Folders"; }
  const void* FaultKey() const override { return parent_ ? parent_.get() : nullptr; }
  int32_t Count() const override;
  std::shared_ptr<Folder> Item(int32_t index) override;
  std::shared_ptr<Folder> Item(const std::string& name) override;
  std::shared_ptr<Folder> Add(const std::string& name, int32_t type) override;

 private:
  std::vector<std::shared_ptr<FolderRecord>> List() const;
  [[nodiscard]] HostCall Hit(std::string_view member) const;
  Profile* profile_;
  std::shared_ptr<FolderRecord> parent_;
};

class SimItems : public Items, public SimKeyed, public FolderHolder {
 public:
  SimItems(Profile* profile, std::shared_ptr<FolderRecord> folder);
  std::shared_ptr<FolderRecord> FolderRec() const override { return folder_; }
  std::string TypeName() const override { return "Items"; }
  const void* FaultKey() const override { return folder_.get(); }

  int32_t Count() const override;
  std::shared_ptr<zintra::Item> Item(int32_t index) override;
  void Sort(const std::string& property, bool descending) override;
  std::shared_ptr<zintra::Item> GetFirst() override;
  std::shared_ptr<zintra::Item> GetNext() override;
  std::shared_ptr<zintra::Item> GetLast() override;
  std::shared_ptr<zintra::Item> GetPrevious() override;
  std::shared_ptr<zintra::Item> Find(const std::string& filter) override;
  std::shared_ptr<zintra::Item> FindNext() override;
  std::shared_ptr<zintra::Item> Add(int32_t item_type) override;
  void Remove(int32_t index) override;

 private:
  struct SortSpec {
    int32_t tag;
    bool is_date;
    bool descending;
  };

  [[nodiscard]] HostCall Hit(std::string_view member) const;
  // Takes the folder's index in the sort order (the store builds it the first time the
  // folder is sorted that way); without a sort the stored order serves.
  void Materialize();
  size_t Size() const;
  const std::shared_ptr<MessageRecord>& RecordAt(size_t index) const;
  std::shared_ptr<zintra::Item> ItemAt(int64_t index);
  void OnAdded(const std::shared_ptr<MessageRecord>& m);
  void OnChanged(const std::shared_ptr<MessageRecord>& m);
  void OnRemoved(const std::shared_ptr<MessageRecord>& m);

  Profile* profile_;
  std::shared_ptr<FolderRecord> folder_;
  std::optional<SortSpec> sort_;
  std::shared_ptr<SortedIndex> index_;  // the sorted order, once materialized
  int64_t cursor_ = -1;                 // index of the item GetFirst/GetNext returned last
  std::optional<ItemFilter> find_;
  int64_t find_pos_ = -1;
  Connection on_added_, on_changed_, on_removed_;
};

std::shared_ptr<SimFolder> MakeFolder(Profile* profile, std::shared_ptr<FolderRecord> record);

}  // namespace zintra::sim

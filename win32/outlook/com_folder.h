// ComFolder, ComFolders, ComItems: Outlook's MAPIFolder, Folders and Items over their
// automation objects. Each ComItems stands for one Items collection of Outlook, with
// its own sort order and walk position; its ItemAdd, ItemChange and ItemRemove share one
// connection, advised while any of the three has handlers.
#pragma once

#include "src/host/outlook_folder.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

class ComFolder final : public Folder, public ComAdapter {
 public:
  explicit ComFolder(const ComPtr<IDispatch>& object)
      : ComAdapter(DispatchClient(object, "MAPIFolder")) {}
  std::string TypeName() const override { return "MAPIFolder"; }
  std::string Name() const override { return Text("Name"); }
  void SetName(const std::string& name) override { Write("Name", Value(name)); }
  std::string EntryID() const override { return Text("EntryID"); }
  std::string StoreID() const override { return Text("StoreID"); }
  int32_t DefaultItemType() const override { return Long("DefaultItemType"); }
  std::shared_ptr<AutomationObject> Parent() override;
  std::shared_ptr<zintra::Folders> Folders() override;
  std::shared_ptr<zintra::Items> Items() override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;
  void Delete() override { client_.Call("Delete"); }
};

class ComFolders final : public Folders, public ComAdapter {
 public:
  explicit ComFolders(const ComPtr<IDispatch>& object)
      : ComAdapter(DispatchClient(object, "Folders")) {}
  std::string TypeName() const override { return "Folders"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<Folder> Item(int32_t index) override;
  std::shared_ptr<Folder> Item(const std::string& name) override;
  std::shared_ptr<Folder> Add(const std::string& name, int32_t type) override;
};

class ComItems final : public Items, public ComAdapter {
 public:
  explicit ComItems(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "Items"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<zintra::Item> Item(int32_t index) override;
  void Sort(const std::string& property, bool descending) override;
  std::shared_ptr<zintra::Item> GetFirst() override { return Walk("GetFirst"); }
  std::shared_ptr<zintra::Item> GetNext() override { return Walk("GetNext"); }
  std::shared_ptr<zintra::Item> GetLast() override { return Walk("GetLast"); }
  std::shared_ptr<zintra::Item> GetPrevious() override { return Walk("GetPrevious"); }
  std::shared_ptr<zintra::Item> Find(const std::string& filter) override;
  std::shared_ptr<zintra::Item> FindNext() override { return Walk("FindNext"); }
  std::shared_ptr<zintra::Item> Add(int32_t item_type) override;
  void Remove(int32_t index) override { client_.Call("Remove", {Arg(Value(index))}); }

 private:
  std::shared_ptr<zintra::Item> Walk(std::string_view member);
  void OnEvent(DISPID id, const EventArgs& args);

  LazyAdvise events_;
};

}  // namespace zintra::win32

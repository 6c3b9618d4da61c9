// Outlook's Application, NameSpace and PropertyPages over their automation objects.
// Application's events (ItemSend with its Cancel, NewMail, OptionsPagesAdd, Quit) share
// one connection, as do the namespace's; each is advised while it has handlers.
#pragma once

#include "src/host/outlook_application.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

class ComPropertyPages final : public PropertyPages, public ComAdapter {
 public:
  explicit ComPropertyPages(const ComPtr<IDispatch>& o)
      : ComAdapter(DispatchClient(o, "PropertyPages")) {}
  std::string TypeName() const override { return "PropertyPages"; }
  int32_t Count() const override { return Long("Count"); }
  std::shared_ptr<AutomationObject> Item(int32_t index) override;
  void Add(const std::shared_ptr<AutomationObject>& page, const std::string& title) override;
};

class ComNamespace final : public Namespace, public ComAdapter {
 public:
  explicit ComNamespace(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "NameSpace"; }
  std::shared_ptr<Folder> GetDefaultFolder(int32_t folder_type) override;
  std::shared_ptr<Item> GetItemFromID(const std::string& entry_id,
                                      const std::string& store_id) override;
  std::shared_ptr<Folder> GetFolderFromID(const std::string& entry_id,
                                          const std::string& store_id) override;
  std::shared_ptr<zintra::Folders> Folders() override;
  std::shared_ptr<Recipient> CurrentUser() override;
  std::shared_ptr<MapiObject> MAPIOBJECT() override;

 private:
  LazyAdvise events_;
};

class ComApplication final : public Application, public ComAdapter {
 public:
  explicit ComApplication(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "Application"; }
  std::shared_ptr<zintra::Explorers> Explorers() override;
  std::shared_ptr<zintra::Inspectors> Inspectors() override;
  std::string Version() const override { return Text("Version"); }
  std::string ProductCode() const override { return Text("ProductCode"); }
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<Explorer> ActiveExplorer() override;
  std::shared_ptr<Inspector> ActiveInspector() override;
  std::shared_ptr<Item> CreateItem(int32_t item_type) override;

 private:
  void OnEvent(DISPID id, const EventArgs& args);
  LazyAdvise events_;
};

}  // namespace zintra::win32

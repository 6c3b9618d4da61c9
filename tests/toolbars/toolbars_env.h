// The toolbar over the simulated Outlook (SimWorld, with an SMTP mailbox), toolbar
// library and Word: the mailbox's Contacts folder is tracked with the Journal receiving
// its logged items; the error handling writes to a recording log; a ZintraUtils, and an
// add-in that hands out these ports.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/sim_ol_application.h"
#include "sim/toolbars/sim_toolbar_helper.h"
#include "sim/word/sim_word.h"
#include "src/core/date.h"
#include "src/logging/zintra_utils.h"
#include "src/toolbars/toolbars.h"
#include "src/toolbars/toolbars_addin.h"
#include "src/toolbars/word_letter_handler.h"
#include "tests/support/sim_world.h"

namespace zintra::testing_support {

class ToolbarsTest;

// The add-in over the fixture's ports.
class TestToolbarsAddin : public ToolbarsAddin {
 public:
  explicit TestToolbarsAddin(ToolbarsTest& t) : t_(t) {}
  const RegSettings& Settings() override;
  std::shared_ptr<Application> OLApp() override;
  std::shared_ptr<Namespace> Session() override { return OLApp()->Session(); }
  ZintraUtils* Utils() override;
  std::shared_ptr<Folder> TrackedLogFolder(const std::shared_ptr<Folder>& folder) override {
    auto found = folder ? log_folders.find(folder->EntryID()) : log_folders.end();
    return found == log_folders.end() ? nullptr : found->second;
  }
  const StringTable& Strings() override;
  ErrorHandling& Errors() override;
  MsgBox& Prompt() override;
  Platform& PlatformFacts() override;
  FileSystem& Files() override;
  ToolbarLibrary* ToolbarLib() override;
  Word* WordProcessor() override;
  double Now() override { return now; }

  // Log folder by contact folder EntryID.
  std::map<std::string, std::shared_ptr<Folder>> log_folders;
  double now = MakeDate(2026, 11, 22);

 private:
  ToolbarsTest& t_;
};

class ToolbarsTest : public ::testing::Test {
 protected:
  friend class TestToolbarsAddin;
  ToolbarsTest() {
    inbox_ = build_.Default(kOlFolderInbox);
    contacts_ = build_.Default(kOlFolderContacts);
    journal_ = build_.Default(kOlFolderJournal);
    utils_.Connect({app_, &settings_, nullptr});
    profile_.SetFileReader([this](const std::string& path) { return files_.Contents(path); });
    addin_ = std::make_shared<TestToolbarsAddin>(*this);
    addin_->log_folders[FolderOf(contacts_)->EntryID()] = FolderOf(journal_);
    files_.AddFolder("C:\\Templates");
    files_.AddFolder(platform_.TempPath().substr(0, platform_.TempPath().size() - 1));
    files_.AddFile("C:\\Templates\\Zintra Letter.dot", "Dear Sir or Madam,\r\n");
  }
  ~ToolbarsTest() override {
    if (toolbars_) toolbars_->Kill();
  }

  void Start() {
    toolbars_ = std::make_shared<Toolbars>();
    toolbars_->Initialize(addin_);
  }
  std::shared_ptr<Item> AddContact(const std::string& name, const std::string& companies = {},
                                   const std::string& categories = {}) {
    auto contact = FolderOf(contacts_)->Items()->Add(kOlContactItem);
    contact->SetFullName(name);
    contact->SetCompanies(companies);
    contact->SetCategories(categories);
    contact->Save();
    return contact;
  }
  // The user opens an explorer on Contacts and selects `items`.
  std::shared_ptr<sim::SimOlExplorer> ExplorerWith(
      const std::vector<std::shared_ptr<Item>>& items) {
    auto explorer = app_->OpenExplorer(contacts_);
    explorer->Select(items);
    return explorer;
  }
  // Captions of the visible buttons on a window's Zintra bar.
  static std::vector<std::string> Captions(OutlookWindow& window) {
    std::vector<std::string> captions;
    auto controls = window.CommandBars()->Item(kZintraBarName)->Controls();
    for (int32_t i = 1; i <= controls->Count(); ++i) {
      if (controls->Item(i)->Visible()) captions.push_back(controls->Item(i)->Caption());
    }
    return captions;
  }
  static bool HasBar(OutlookWindow& window) {
    try {
      window.CommandBars()->Item(kZintraBarName);
      return true;
    } catch (const ZError&) {
      return false;
    }
  }
  // The user clicks the button with `tag` in `window`.
  static void Click(OutlookWindow& window, const std::string& tag) {
    auto control = window.CommandBars()->Item(kZintraBarName)->FindControl(0, 0, tag, false, false);
    ASSERT_NE(control, nullptr) << tag;
    std::dynamic_pointer_cast<sim::SimCommandBarControl>(control)->ClickByUser();
  }
  // The item of the inspector opened last.
  std::shared_ptr<Item> LastInspectorItem() {
    auto inspectors = app_->Inspectors();
    if (inspectors->Count() == 0) return nullptr;
    return inspectors->Item(inspectors->Count())->CurrentItem();
  }
  std::vector<std::string> LinkNames(const std::shared_ptr<Item>& item) {
    std::vector<std::string> names;
    auto links = item->Links();
    for (int32_t i = 1; i <= links->Count(); ++i) names.push_back(links->Item(i)->Name());
    return names;
  }

  std::shared_ptr<Folder> FolderOf(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&profile_, record);
  }
  std::shared_ptr<Item> NewItem(ItemClass kind, const std::shared_ptr<sim::FolderRecord>& folder) {
    return sim::MakeItem(&profile_, build_.Item(folder, kind, "Figures"));
  }
  std::vector<std::string> Lines(const std::string& kind) const { return world_.Lines(kind); }

  SimWorld world_{sim::ProfileBuilder::Smtp("Jane Doe", "jane@contoso.com")};
  sim::Profile& profile_ = world_.profile;
  sim::ProfileBuilder& build_ = world_.builder;
  std::shared_ptr<sim::FolderRecord> inbox_, contacts_, journal_;
  std::shared_ptr<sim::SimOlApplication>& app_ = world_.app;
  sim::MemoryRegistry& registry_ = world_.registry;
  sim::MemoryFileSystem& files_ = world_.files;
  sim::SimPlatform& platform_ = world_.platform;
  sim::RecordingMsgBox& msg_box_ = world_.msg_box;
  LogRecorder& log_ = world_.recorder;
  StringTable& strings_ = world_.strings;
  ErrorHandling& errors_ = world_.errors;
  RegSettings& settings_ = world_.settings;
  ZintraUtils utils_{errors_};
  sim::SimToolbarLibrary library_;
  sim::SimWord word_{files_};
  std::shared_ptr<TestToolbarsAddin> addin_;
  std::shared_ptr<Toolbars> toolbars_;
};

inline const RegSettings& TestToolbarsAddin::Settings() { return t_.settings_; }
inline std::shared_ptr<Application> TestToolbarsAddin::OLApp() { return t_.app_; }
inline ZintraUtils* TestToolbarsAddin::Utils() { return &t_.utils_; }
inline const StringTable& TestToolbarsAddin::Strings() { return t_.strings_; }
inline ErrorHandling& TestToolbarsAddin::Errors() { return t_.errors_; }
inline MsgBox& TestToolbarsAddin::Prompt() { return t_.msg_box_; }
inline Platform& TestToolbarsAddin::PlatformFacts() { return t_.platform_; }
inline FileSystem& TestToolbarsAddin::Files() { return t_.files_; }
inline ToolbarLibrary* TestToolbarsAddin::ToolbarLib() { return &t_.library_; }
inline Word* TestToolbarsAddin::WordProcessor() { return &t_.word_; }

}  // namespace zintra::testing_support

// A simulated Outlook profile (one mailbox with the usual default folders), the
// error handling over a recording log, and a ZintraUtils connected to both.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_rdo.h"
#include "sim/outlook/profile.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_ol_application.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/ui/recording_msg_box.h"
#include "src/core/date.h"
#include "src/errors/error_handling.h"
#include "src/host/error_log_store.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra::testing_support {

// Keeps every line the error handling writes, in order.
struct LogLine {
  std::string kind;  // "Message", "Warning", "Error"
  std::string text;  // the message, or an error's description
  int32_t number = 0;
  std::string trail;
};

class RecordingLog : public ErrorLogStore, public ErrorLogFactory {
 public:
  std::shared_ptr<ErrorLogStore> CreateErrorLog() override {
    return std::shared_ptr<ErrorLogStore>(this, [](ErrorLogStore*) {});
  }
  void Open(const std::string& path, int32_t, bool) override { path_ = path; }
  void LogError(const std::string&, const std::string& description, const std::string&,
                int32_t number, const std::string&, const std::string&, const std::string&,
                const std::string&, const std::string& trail, const ErrorLogVersions&) override {
    lines.push_back({"Error", description, number, trail});
  }
  void LogMessage(const std::string&, const std::string& text, bool warning,
                  const ErrorLogVersions&) override {
    lines.push_back({warning ? "Warning" : "Message", text, 0, {}});
  }
  void Relocate(const std::string& new_path) override { path_ = new_path; }
  std::string Path() const override { return path_; }

  std::vector<LogLine> lines;

 private:
  std::string path_;
};

class ZintraUtilsTest : public testing::Test {
 protected:
  ZintraUtilsTest() {
    registry_.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 3);
    store_ = &profile_.AddStore("Mailbox - Jane Doe", false, true);
    inbox_ = AddDefault(kOlFolderInbox, "Inbox", kOlMailItem);
    sent_ = AddDefault(kOlFolderSentMail, "Sent Items", kOlMailItem);
    AddDefault(kOlFolderDeletedItems, "Deleted Items", kOlMailItem);
    contacts_ = AddDefault(kOlFolderContacts, "Contacts", kOlContactItem);
    journal_ = AddDefault(kOlFolderJournal, "Journal", kOlJournalItem);
    utils_.Connect({app_, &settings_, nullptr});
    rdo_->SetMAPIOBJECT(app_->Session()->MAPIOBJECT());
    utils_.SetLibrary(mapi_utils_, rdo_);
  }

  std::shared_ptr<sim::FolderRecord> AddDefault(int32_t number, const std::string& name,
                                                int32_t item_type) {
    auto folder = profile_.AddFolder(store_->root, name, item_type);
    profile_.SetDefaultFolder(number, folder);
    return folder;
  }

  // A stored item of the kind in `folder`.
  std::shared_ptr<Item> NewItem(ItemClass kind, const std::shared_ptr<sim::FolderRecord>& folder,
                                const std::string& subject = "Quarterly figures") {
    auto item = sim::MakeItem(&profile_, profile_.NewMessage(kind, folder));
    if (kind != ItemClass::kContact && kind != ItemClass::kNote) item->SetSubject(subject);
    item->Save();
    return item;
  }
  std::shared_ptr<Folder> FolderOf(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&profile_, record);
  }

  std::vector<std::string> Lines(const std::string& kind) const {
    std::vector<std::string> out;
    for (const LogLine& line : log_.lines) {
      if (line.kind == kind) out.push_back(line.text);
    }
    return out;
  }

  sim::Profile profile_;
  sim::StoreRecord* store_ = nullptr;
  std::shared_ptr<sim::FolderRecord> inbox_, sent_, contacts_, journal_;
  std::shared_ptr<sim::SimOlApplication> app_ = std::make_shared<sim::SimOlApplication>(&profile_);
  std::shared_ptr<sim::SimMapiUtils> mapi_utils_ = std::make_shared<sim::SimMapiUtils>(&profile_);
  std::shared_ptr<sim::SimRdoSession> rdo_ = std::make_shared<sim::SimRdoSession>(&profile_);

  sim::MemoryRegistry registry_;
  sim::MemoryFileSystem files_;
  sim::SimPlatform platform_;
  sim::RecordingMsgBox msg_box_;
  RecordingLog log_;
  StringTable strings_;
  ErrorHandling errors_{{log_, msg_box_, registry_, files_, platform_, strings_}};
  RegSettings settings_{registry_, files_, platform_};
  ZintraUtils utils_{errors_};
};

}  // namespace zintra::testing_support

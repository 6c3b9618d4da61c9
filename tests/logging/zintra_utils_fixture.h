// A simulated mailbox with its Outlook and library facades, error handling over a
// log that keeps its lines, and a ZintraUtils connected to all of it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_rdo.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_keys.h"
#include "sim/outlook/sim_ol_application.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "sim/ui/recording_msg_box.h"
#include "src/core/date.h"
#include "src/errors/error_handling.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"

namespace zintra::testing_support {

// Keeps "Message"/"Warning"/"Error" lines with their text (an error's description).
class RecordingLog : public ErrorLogStore, public ErrorLogFactory {
 public:
  std::shared_ptr<ErrorLogStore> CreateErrorLog() override {
    return std::shared_ptr<ErrorLogStore>(this, [](ErrorLogStore*) {});
  }
  void Open(const std::string&, int32_t, bool) override {}
  void LogError(const std::string&, const std::string& description, const std::string&, int32_t,
                const std::string&, const std::string&, const std::string&, const std::string&,
                const std::string&, const ErrorLogVersions&) override {
    lines.push_back({"Error", description});
  }
  void LogMessage(const std::string&, const std::string& text, bool warning,
                  const ErrorLogVersions&) override {
    lines.push_back({warning ? "Warning" : "Message", text});
  }
  void Relocate(const std::string&) override {}
  std::string Path() const override { return {}; }

  std::vector<std::pair<std::string, std::string>> lines;
};

class ZintraUtilsTest : public testing::Test {
 protected:
  ZintraUtilsTest() {
    registry_.SetDword(kHKeyCurrentUser, "Software\\Brellow\\Zintra\\Logging", "LogLevel", 3);
    build_.Mailbox(sim::ProfileBuilder::Smtp("Jane Doe", "jane@contoso.com"));
    inbox_ = build_.Default(kOlFolderInbox);
    rdo_->SetMAPIOBJECT(app_->Session()->MAPIOBJECT());
    utils_.Connect({app_, &settings_, nullptr});
    utils_.SetLibrary(mapi_utils_, rdo_);
  }

  std::shared_ptr<Item> NewItem(ItemClass kind, std::shared_ptr<sim::FolderRecord> folder = {}) {
    return sim::MakeItem(&profile_, build_.Item(folder ? folder : inbox_, kind, "Figures"));
  }
  std::shared_ptr<Folder> FolderOf(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&profile_, record);
  }
  std::vector<std::string> Lines(const std::string& kind) const {
    std::vector<std::string> out;
    for (const auto& [k, text] : log_.lines) {
      if (k == kind) out.push_back(text);
    }
    return out;
  }
  // Counts the Inbox's change events by whether the add-in would ignore them.
  void WatchInbox() {
    items_ = FolderOf(inbox_)->Items();
    on_change_ = items_->ItemChange.Connect([this](const std::shared_ptr<Item>& item) {
      ++(utils_.SquelchItemSend(item) ? own_ : foreign_);
    });
    on_remove_ =
        items_->ItemRemove.Connect([this] { ++(utils_.SquelchItemSend() ? own_ : foreign_); });
  }

  sim::Profile profile_;
  sim::ProfileBuilder build_{profile_};
  std::shared_ptr<sim::FolderRecord> inbox_;
  std::shared_ptr<sim::SimOlApplication> app_ = std::make_shared<sim::SimOlApplication>(&profile_);
  std::shared_ptr<sim::SimMapiUtils> mapi_utils_ = std::make_shared<sim::SimMapiUtils>(&profile_);
  std::shared_ptr<sim::SimRdoSession> rdo_ = std::make_shared<sim::SimRdoSession>(&profile_);
  std::shared_ptr<Items> items_;
  Connection on_change_, on_remove_;
  int own_ = 0, foreign_ = 0;

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

// A simulated mailbox (SimWorld, an SMTP user) with its Outlook and library facades, error
// handling over a log that keeps its lines, and a ZintraUtils connected to all of it.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/sim_keys.h"
#include "src/core/date.h"
#include "src/logging/zintra_utils.h"
#include "tests/support/sim_world.h"

namespace zintra::testing_support {

class ZintraUtilsTest : public testing::Test {
 protected:
  ZintraUtilsTest() {
    inbox_ = build_.Default(kOlFolderInbox);
    utils_.Connect({app_, &settings_, nullptr});
    utils_.SetLibrary(mapi_utils_, rdo_);
  }

  std::shared_ptr<Item> NewItem(ItemClass kind, std::shared_ptr<sim::FolderRecord> folder = {}) {
    return sim::MakeItem(&profile_, build_.Item(folder ? folder : inbox_, kind, "Figures"));
  }
  std::shared_ptr<Folder> FolderOf(const std::shared_ptr<sim::FolderRecord>& record) {
    return sim::MakeFolder(&profile_, record);
  }
  std::vector<std::string> Lines(const std::string& kind) const { return world_.Lines(kind); }
  // Counts the Inbox's change events by whether the add-in would ignore them.
  void WatchInbox() {
    items_ = FolderOf(inbox_)->Items();
    on_change_ = items_->ItemChange.Connect([this](const std::shared_ptr<Item>& item) {
      ++(utils_.SquelchItemSend(item) ? own_ : foreign_);
    });
    on_remove_ =
        items_->ItemRemove.Connect([this] { ++(utils_.SquelchItemSend() ? own_ : foreign_); });
  }

  SimWorld world_{sim::ProfileBuilder::Smtp("Jane Doe", "jane@contoso.com")};
  sim::Profile& profile_ = world_.profile;
  sim::ProfileBuilder& build_ = world_.builder;
  std::shared_ptr<sim::FolderRecord> inbox_;
  std::shared_ptr<sim::SimOlApplication>& app_ = world_.app;
  std::shared_ptr<sim::SimMapiUtils>& mapi_utils_ = world_.mapi_utils;
  std::shared_ptr<RdoSession>& rdo_ = world_.rdo;
  std::shared_ptr<Items> items_;
  Connection on_change_, on_remove_;
  int own_ = 0, foreign_ = 0;

  sim::MemoryRegistry& registry_ = world_.registry;
  RegSettings& settings_ = world_.settings;
  ZintraUtils utils_{world_.errors};
};

}  // namespace zintra::testing_support

// A simulated mailbox (Exchange user in CONTOSO) with a contact folder, over the whole
// simulated Outlook host: application, MAPI library and class registry.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_outlook_host.h"
#include "sim/mapi/sim_rdo.h"
#include "sim/outlook/profile_builder.h"
#include "sim/outlook/sim_folder.h"
#include "sim/outlook/sim_item.h"
#include "src/core/z_error.h"
#include "src/host/mapi_object.h"

namespace zintra::sim {

class SimTest : public testing::Test {
 protected:
  SimTest() {
    builder.Mailbox(ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
    customers = builder.ContactFolder("Customers");
    rdo->SetMAPIOBJECT(host.application->Session()->MAPIOBJECT());
  }

  std::shared_ptr<Folder> F(const std::shared_ptr<FolderRecord>& record) {
    return MakeFolder(&host.profile, record);
  }
  std::shared_ptr<Folder> Default(int32_t number) { return F(builder.Default(number)); }
  std::shared_ptr<SimItem> I(const std::shared_ptr<MessageRecord>& record) {
    return MakeItem(&host.profile, record);
  }
  // A new saved item in the folder.
  std::shared_ptr<Item> NewItem(const std::shared_ptr<Folder>& folder, int32_t type,
                                const std::string& subject) {
    auto item = folder->Items()->Add(type);
    item->SetSubject(subject);
    item->Save();
    return item;
  }

  SimOutlookHost host;
  ProfileBuilder builder{host.profile};
  std::shared_ptr<FolderRecord> customers;
  std::shared_ptr<MapiUtils> utils = std::make_shared<SimMapiUtils>(&host.profile);
  std::shared_ptr<RdoSession> rdo = std::make_shared<SimRdoSession>(&host.profile);
};

}  // namespace zintra::sim

// Contact tracking over the simulated host: a profile with contact folders, the
// library's classes, a real job queue and real settings, and an add-in that records
// its optional messages.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/files/memory_file_system.h"
#include "sim/mapi/sim_mapi_utils.h"
#include "sim/mapi/sim_outlook_host.h"
#include "sim/outlook/sim_folder.h"
#include "sim/platform/sim_platform.h"
#include "sim/registry/memory_registry.h"
#include "src/contacts/contact_search.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "src/outlook/library_factory.h"
#include "src/settings/reg_settings.h"
#include "tests/contacts/test_contacts_addin.h"
#include "tests/jobs/job_test_env.h"

namespace zintra::testing {

class ContactsTest : public ::testing::Test {
 protected:
  ContactsTest() {
    utils->SetMAPIOBJECT(outlook.Session()->MAPIOBJECT());
    store = &profile.AddStore("Mailbox - Jane Doe", false, true);
    settings.GetRowChunkSize = 2;
  }
  ~ContactsTest() override {
    if (tracked) tracked->Kill();
  }

  // A contact folder under the store's top folder.
  std::shared_ptr<Folder> AddContactFolder(const std::string& name) {
    return sim::MakeFolder(&profile, profile.AddFolder(store->root, name, kOlContactItem));
  }
  std::shared_ptr<Item> AddContact(const std::shared_ptr<Folder>& folder, const std::string& name,
                                   const std::vector<std::string>& addresses,
                                   const std::string& categories = {}, int32_t sensitivity = 0) {
    auto contact = folder->Items()->Add(kOlContactItem);
    contact->SetFullName(name);
    if (addresses.size() > 0) contact->SetEmail1Address(addresses[0]);
    if (addresses.size() > 1) contact->SetEmail2Address(addresses[1]);
    if (addresses.size() > 2) contact->SetEmail3Address(addresses[2]);
    if (!categories.empty()) contact->SetCategories(categories);
    if (sensitivity != 0) contact->SetSensitivity(sensitivity);
    contact->Save();
    return contact;
  }
  // Configures folder sets for the given contact folders (other folders blank).
  void Configure(const std::vector<std::shared_ptr<Folder>>& folders) {
    settings.FoldersetCount = static_cast<int32_t>(folders.size());
    settings.ContactFolderEntryIDs.Clear();
    settings.ContactFolderStoreIDs.Clear();
    settings.FoldersetFlags.Clear();
    for (const auto& f : folders) {
      settings.ContactFolderEntryIDs.Add(f->EntryID());
      settings.ContactFolderStoreIDs.Add(f->StoreID());
      settings.FoldersetFlags.Add(0);
    }
  }
  // Starts the queue (synchronous unless `async`) and the tracked contacts.
  void Start(bool async = false) {
    jobs = std::make_unique<JobEnv>(async);
    jobs->Start();
    addin = std::make_shared<TestContactsAddin>(*jobs, outlook, host.factory, utils, settings);
    tracked = std::make_shared<TrackedContacts>();
    tracked->Initialize(addin);
  }
  std::shared_ptr<TrackedContactFolder> Tracked(int index) {
    return tracked->Folders().Item(index);
  }
  void RunQueue() { jobs->loop.RunUntilIdle(); }
  // One timer slice of the asynchronous queue: one activation.
  void Tick() { jobs->loop.AdvanceBy(15625); }
  bool Logged(const std::string& line) const {
    for (const auto& m : jobs->log.messages) {
      if (m == line) return true;
    }
    return false;
  }
  int LoggedCount(const std::string& prefix) const {
    int n = 0;
    for (const auto& m : jobs->log.messages) n += m.rfind(prefix, 0) == 0 ? 1 : 0;
    return n;
  }
  static std::vector<std::string> Names(const ContactList& contacts) {
    std::vector<std::string> names;
    for (const auto& c : contacts) names.push_back(c->FullName());
    return names;
  }

  sim::SimOutlookHost host;
  sim::Profile& profile = host.profile;
  Application& outlook = *host.application;
  std::shared_ptr<sim::SimMapiUtils> utils = std::make_shared<sim::SimMapiUtils>(&profile);
  sim::StoreRecord* store = nullptr;
  sim::MemoryRegistry registry;
  sim::MemoryFileSystem files;
  sim::SimPlatform platform;
  RegSettings settings{registry, files, platform};
  std::unique_ptr<JobEnv> jobs;
  std::shared_ptr<TestContactsAddin> addin;
  std::shared_ptr<TrackedContacts> tracked;
};

}  // namespace zintra::testing

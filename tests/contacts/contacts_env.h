// Contact tracking over the simulated host (a JobEnv: SimWorld with its job queue): contact
// folders in the mailbox, the library's classes, the real settings and error handling,
// and an add-in that records its optional messages.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/sim_folder.h"
#include "src/contacts/contact_search.h"
#include "src/contacts/tracked_contact_folder.h"
#include "src/contacts/tracked_contacts.h"
#include "tests/contacts/test_contacts_addin.h"
#include "tests/jobs/job_test_env.h"

namespace zintra::testing {

class ContactsTest : public ::testing::Test, public JobEnv {
 protected:
  ContactsTest() { settings.GetRowChunkSize = 2; }
  ~ContactsTest() override {
    if (tracked) tracked->Kill();
  }

  // A contact folder under the mailbox's top folder.
  std::shared_ptr<Folder> AddContactFolder(const std::string& name) {
    return FolderOf(builder.ContactFolder(name));
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
    addin->settings.RunJobsAsync = async;
    JobEnv::Start();
    contacts_addin =
        std::make_shared<TestContactsAddin>(*this, *app, factory, mapi_utils, settings);
    tracked = std::make_shared<TrackedContacts>();
    tracked->Initialize(contacts_addin);
  }
  std::shared_ptr<TrackedContactFolder> Tracked(int index) {
    return tracked->Folders().Item(index);
  }
  void RunQueue() { loop.RunUntilIdle(); }
  // One timer slice of the asynchronous queue: one activation.
  void Tick() { loop.AdvanceBy(15625); }
  static std::vector<std::string> Names(const ContactList& contacts) {
    std::vector<std::string> names;
    for (const auto& c : contacts) names.push_back(c->FullName());
    return names;
  }

  std::shared_ptr<TestContactsAddin> contacts_addin;
  std::shared_ptr<TrackedContacts> tracked;
};

}  // namespace zintra::testing

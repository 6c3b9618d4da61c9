// ProfileBuilder: makes a realistic simulated profile in a few lines for tests and
// benchmarks. Records are written directly and stored through Profile::SaveMessage,
// so item events fire as usual (cheap when nobody listens).
//
//   Profile profile;
//   ProfileBuilder b(profile);
//   b.Mailbox(ProfileBuilder::Exchange("Jane Doe", "jdoe", "CONTOSO"));
//   auto contacts = b.ContactFolder("Customers");
//   auto ann = b.Contact(contacts, {"Ann Lee", {"ann@fabrikam.com"}, "Customers"});
//   b.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"), "Quote");
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "sim/outlook/profile.h"

namespace zintra::sim {

struct ContactSpec {
  std::string full_name{};
  std::vector<std::string> emails{};  // up to three: Email1..Email3Address
  std::string categories{};           // "Customers, Suppliers"
  int32_t sensitivity = kOlNormal;
  std::string company{};
};

struct MailSpec {
  std::string subject{};
  std::string body{};
  double time = 0;  // received (incoming) or sent (outgoing) time; 0: the profile's clock
  int32_t sensitivity = kOlNormal;
  std::string message_class{};  // "" for IPM.Note
};

class ProfileBuilder {
 public:
  explicit ProfileBuilder(Profile& profile) : profile_(profile) {}

  static Person Smtp(const std::string& name, const std::string& address);
  // "/O=<ORG>/OU=FIRST ADMINISTRATIVE GROUP/CN=RECIPIENTS/CN=<ALIAS>", SMTP
  // alias@<org>.com (lower case).
  static Person Exchange(const std::string& name, const std::string& alias, const std::string& org);

  // The user's mailbox "Mailbox - <name>" with the default folders Deleted Items (3),
  // Outbox (4), Sent Items (5), Inbox (6), Calendar (9), Contacts (10), Journal (11),
  // Notes (12), Tasks (13) and Drafts (16); the user becomes the current user and a
  // person of the directory. Returns the top folder.
  std::shared_ptr<FolderRecord> Mailbox(const Person& user);
  // A personal folders file "Personal Folders" (not the default store).
  std::shared_ptr<FolderRecord> PersonalFolders(const std::string& name = "Personal Folders");
  // The public store "Public Folders" with "All Public Folders" under it; returns the latter.
  std::shared_ptr<FolderRecord> PublicFolders();

  std::shared_ptr<FolderRecord> Default(int32_t folder_type) const;
  // A subfolder; parent nullptr means the mailbox's top folder.
  std::shared_ptr<FolderRecord> Folder(const std::string& name, int32_t item_type = kOlMailItem,
                                       std::shared_ptr<FolderRecord> parent = nullptr);
  std::shared_ptr<FolderRecord> ContactFolder(const std::string& name,
                                              std::shared_ptr<FolderRecord> parent = nullptr) {
    return Folder(name, kOlContactItem, std::move(parent));
  }

  std::shared_ptr<MessageRecord> Contact(const std::shared_ptr<FolderRecord>& folder,
                                         const ContactSpec& desc);
  // n contacts "Contact <i>" with one to three addresses contactI@companyJ.com, every
  // fifth in category "Customers", every tenth private. Returns nothing: fast path.
  void Contacts(const std::shared_ptr<FolderRecord>& folder, int n);

  // Received mail in the Inbox (or `folder`), sender as given.
  std::shared_ptr<MessageRecord> MailFrom(const Person& sender, const MailSpec& desc,
                                          std::shared_ptr<FolderRecord> folder = nullptr);
  // Sent mail in Sent Items (or `folder`), from the current user.
  std::shared_ptr<MessageRecord> MailTo(const std::vector<Person>& to, const MailSpec& desc,
                                        std::shared_ptr<FolderRecord> folder = nullptr);
  // n received mails with subjects "Message <i>", one minute apart, from n senders.
  void Mails(const std::shared_ptr<FolderRecord>& folder, int n);
  // Any item kind, saved in the folder.
  std::shared_ptr<MessageRecord> Item(const std::shared_ptr<FolderRecord>& folder,
                                      ItemClass item_class, const std::string& subject);
  // Links `item` to `contact` (saved).
  void Link(const std::shared_ptr<MessageRecord>& item,
            const std::shared_ptr<MessageRecord>& contact);

 private:
  std::shared_ptr<MessageRecord> NewMail(const std::shared_ptr<FolderRecord>& folder,
                                         const MailSpec& desc);
  Profile& profile_;
  StoreRecord* mailbox_ = nullptr;
};

}  // namespace zintra::sim

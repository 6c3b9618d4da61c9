// The processing job from end to end over the simulated host: which items are
// logged, where their copies go, and the marks left on items and copies.
#include "src/logging/job_process.h"

#include <gtest/gtest.h>

#include "src/host/outlook_folder.h"
#include "src/host/outlook_item.h"
#include "src/logging/logged_items_link.h"
#include "tests/logging/logging_env.h"

namespace zintra::testing_support {
namespace {

using sim::ContactSpec;
using sim::MailSpec;
using sim::ProfileBuilder;

class JobProcessTest : public ::testing::Test {
 protected:
  JobProcessTest() {
    env.settings.CacheContactFolders = false;
    customers = env.AddFolderSet("Customers");
    ann = env.builder.Contact(customers.contacts, {"Ann Lee", {"ann@fabrikam.com"}});
  }

  // Starts the add-in's parts and processes the item as an incoming (or outgoing) one.
  std::shared_ptr<JobProcess> Process(const std::shared_ptr<Item>& item, bool incoming = true,
                                      bool outgoing = false) {
    if (!env.queue) env.Start();
    auto job = std::make_shared<JobProcess>(env.addin);
    queued = job->Initialize("test", item, incoming, outgoing);
    env.RunQueue();
    return job;
  }
  std::shared_ptr<Item> MailFromAnn(const std::string& subject = "Quote") {
    return env.ItemOf(env.builder.MailFrom(ProfileBuilder::Smtp("Ann Lee", "ann@fabrikam.com"),
                                           MailSpec{subject}));
  }
  std::vector<std::shared_ptr<Item>> ItemsIn(const std::shared_ptr<sim::FolderRecord>& folder) {
    std::vector<std::shared_ptr<Item>> out;
    auto items = env.FolderOf(folder)->Items();
    for (int32_t i = 1; i <= items->Count(); ++i) out.push_back(items->Item(i));
    return out;
  }

  LoggingEnv env;
  LoggingEnv::FolderSet customers;
  std::shared_ptr<sim::MessageRecord> ann;
  bool queued = false;
};

TEST_F(JobProcessTest, MailFromTrackedContactIsLoggedToTheJournalAndLinked) {
  auto mail = MailFromAnn();
  auto job = Process(mail);
  ASSERT_TRUE(queued);
  EXPECT_TRUE(job->Killed());

  auto copies = ItemsIn(customers.journal);
  ASSERT_EQ(copies.size(), 1u);
  EXPECT_EQ(copies[0]->Subject(), "Quote");
  EXPECT_EQ(env.UserProp(copies[0], kPropZintraTag).ToString(), "");

  EXPECT_EQ(env.UserProp(mail, kPropZintraTag).ToString(), "");
  EXPECT_TRUE(env.UserProp(mail, kPropZintraLogged).ToBool());
  EXPECT_FALSE(env.UserProp(mail, kPropZintraShared).ToBool());
  EXPECT_FALSE(env.NamedProp(mail, kPropZintraLastAudited, kPtSystime).IsEmpty());
  LoggedItemsLink link(env.utils);
  link.InitializeLogged(mail);
  ASSERT_TRUE(link.Validate());
  auto links = link.Links();
  ASSERT_EQ(links.size(), 1u);
  EXPECT_EQ(links[0].first, copies[0]->EntryID());
  EXPECT_EQ(env.queue->WaitListCount(), 0);
  EXPECT_TRUE(env.Logged("Begin processing for item 'Quote'"));
  EXPECT_TRUE(env.Logged("Adding task Process email: Quote"));
  EXPECT_TRUE(env.Logged("Final post-processing for item 'Quote'"));
  EXPECT_TRUE(
      env.Logged("Linked 'Quote' from folder 'Inbox' to logged item in folder "
                 "'Customers Journal'"));
  EXPECT_TRUE(env.Errors().empty()) << env.Errors()[0];
}

}  // namespace
}  // namespace zintra::testing_support

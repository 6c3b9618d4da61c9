// Item events are raised synchronously inside the call that causes them, in the folder
// concerned.
#include <gtest/gtest.h>

#include <vector>

#include "tests/sim_outlook/sim_fixture.h"
#include "tests/support/error_of.h"

namespace zintra::sim {
namespace {

struct Recorder {
  explicit Recorder(const std::shared_ptr<Items>& items) : items_(items) {
    add_ = items->ItemAdd.Connect(
        [this](std::shared_ptr<Item> i) { log.push_back("add " + i->Subject()); });
    change_ = items->ItemChange.Connect(
        [this](std::shared_ptr<Item> i) { log.push_back("change " + i->Subject()); });
    remove_ = items->ItemRemove.Connect([this] { log.push_back("remove"); });
  }
  std::vector<std::string> log;

 private:
  std::shared_ptr<Items> items_;
  Connection add_, change_, remove_;
};

TEST_F(SimTest, SaveRaisesItemAddThenItemChangeBeforeItReturns) {
  auto inbox = Default(kOlFolderInbox);
  Recorder events(inbox->Items());
  auto item = inbox->Items()->Add(kOlMailItem);
  item->SetSubject("Draft");
  bool returned = false;
  auto during = inbox->Items();
  auto seen = during->ItemChange.Connect([&](std::shared_ptr<Item>) { EXPECT_FALSE(returned); });
  item->Save();
  item->Save();
  returned = true;
  EXPECT_EQ(events.log, (std::vector<std::string>{"add Draft", "change Draft"}));
}

TEST_F(SimTest, CopyMoveAndDeleteRaiseEventsWhereTheItemsLand) {
  auto inbox = Default(kOlFolderInbox);
  auto journal = Default(kOlFolderJournal);
  Recorder at_inbox(inbox->Items());
  Recorder at_journal(journal->Items());
  Recorder at_deleted(Default(kOlFolderDeletedItems)->Items());
  auto item = NewItem(inbox, kOlMailItem, "Quote");

  auto copy = item->Copy();
  copy->Move(journal);
  auto library_copy = rdo->GetMessageFromID(item->EntryID())->CopyTo(journal);
  item->Delete();

  EXPECT_EQ(at_inbox.log, (std::vector<std::string>{"add Quote", "add Quote", "remove", "remove"}));
  EXPECT_EQ(at_journal.log, (std::vector<std::string>{"add Quote", "add Quote"}));
  EXPECT_EQ(at_deleted.log, (std::vector<std::string>{"add Quote"}));
  library_copy->Delete();  // hard delete: nothing reaches Deleted Items
  EXPECT_EQ(at_journal.log.back(), "remove");
  EXPECT_EQ(at_deleted.log.size(), 1u);
}

TEST_F(SimTest, AHandlerThatSavesInsideItemAddSeesItsOwnEcho) {
  auto inbox = Default(kOlFolderInbox);
  auto items = inbox->Items();
  std::vector<std::string> log;
  auto add = items->ItemAdd.Connect([&](std::shared_ptr<Item> i) {
    log.push_back("add");
    i->UserProperties()->Add("Zintra Tag", kOlText, false)->SetValue(Value("Processing"));
    i->Save();
  });
  auto change = items->ItemChange.Connect([&](std::shared_ptr<Item>) { log.push_back("change"); });
  NewItem(inbox, kOlMailItem, "Loop");
  EXPECT_EQ(log, (std::vector<std::string>{"add", "change"}));
}

TEST_F(SimTest, ADeletedFolderFailsWithObjectDeleted) {
  auto folder = F(builder.Folder("Projects"));
  auto items = folder->Items();
  folder->Delete();
  EXPECT_EQ(ErrorOf([&] { items->GetFirst(); }), kMapiObjectDeleted);
}

}  // namespace
}  // namespace zintra::sim

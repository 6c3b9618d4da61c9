// Word letters: from the Letter button to the logged journal entry.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "src/toolbars/letter_ids.h"
#include "tests/toolbars/toolbars_env.h"

namespace zintra::testing_support {
namespace {

using ::testing::IsEmpty;

class WordLetterTest : public ToolbarsTest {
 protected:
  // The letter button clicked with `contact` selected; returns the new document.
  std::shared_ptr<sim::SimWordDocument> StartLetter(const std::shared_ptr<Item>& contact) {
    Start();
    Click(*ExplorerWith({contact}), kTagLetter);
    if (!word_.running() || word_.running()->open_documents().empty()) return nullptr;
    return word_.running()->open_documents().back();
  }
  std::string TempFile() { return platform_.TempPath() + kLetterTempFileName; }
  std::vector<std::shared_ptr<Item>> JournalEntries() {
    std::vector<std::shared_ptr<Item>> entries;
    auto items = FolderOf(journal_)->Items();
    for (int32_t i = 1; i <= items->Count(); ++i) entries.push_back(items->Item(i));
    return entries;
  }
};

TEST_F(WordLetterTest, LetterFromButtonToLoggedJournalEntryWithItsAttachment) {
  auto contact = AddContact("Ann Lee");
  auto doc = StartLetter(contact);
  ASSERT_NE(doc, nullptr);
  EXPECT_TRUE(word_.running()->Visible());
  EXPECT_EQ(doc->text(), "Dear Sir or Madam,\r\n");
  ASSERT_EQ(doc->variables().size(), 3u);
  EXPECT_EQ(doc->variables()[2].second, "Letter to Ann Lee on 11/22/2026");

  doc->TypeText("Thank you for your order.");
  files_.AddFile(TempFile(), "an earlier letter");  // stale copy: replaced, not reported
  WordLetterHandler(addin_).LogDocument(doc);

  auto entries = JournalEntries();
  ASSERT_EQ(entries.size(), 1u);
  auto entry = entries[0];
  EXPECT_EQ(entry->Type(), "Letter");
  EXPECT_EQ(entry->Subject(), "Letter to Ann Lee on 11/22/2026");
  EXPECT_EQ(LinkNames(entry), std::vector<std::string>{"Ann Lee"});
  ASSERT_EQ(entry->Attachments()->Count(), 1);
  auto attachment = entry->Attachments()->Item(1);
  EXPECT_EQ(attachment->FileName(), kLetterTempFileName);
  EXPECT_EQ(attachment->Type(), kOlByValue);
  EXPECT_EQ(files_.Contents(TempFile()), "Dear Sir or Madam,\r\nThank you for your order.");
  EXPECT_EQ(attachment->Size(), static_cast<int32_t>(doc->text().size()));
  EXPECT_TRUE(doc->closed());
  EXPECT_THAT(msg_box_.Shown(), IsEmpty());
  EXPECT_THAT(Lines("Error"), IsEmpty());
  // The entry was stored inside the save bracket, which is closed again.
  EXPECT_FALSE(utils_.SquelchItemSend());
}

TEST_F(WordLetterTest, ALetterToAContactOutsideTheTrackedFoldersIsWrittenButNotLogged) {
  addin_->log_folders.clear();
  auto doc = StartLetter(AddContact("Bob Ray"));
  ASSERT_NE(doc, nullptr);
  // No folder receives the contact's logged items, so the letter names none.
  EXPECT_THROW(doc->Variables()->Item(kVarLogTo), ZError);
  WordLetterHandler(addin_).LogDocument(doc);
  EXPECT_TRUE(JournalEntries().empty());
  EXPECT_EQ(std::dynamic_pointer_cast<sim::SimWordDocument>(doc)->save_count(), 0);
}

TEST_F(WordLetterTest, DocumentsThatAreNotZintraLettersAreLeftUntouched) {
  auto app = word_.Application();
  auto plain = app->Documents()->Add("");
  auto blank = app->Documents()->Add("");
  blank->Variables()->Add(kVarLogTo, "");
  blank->Variables()->Add(kVarSubject, "Ignored");
  for (const auto& doc : {plain, blank}) {
    WordLetterHandler(addin_).LogDocument(doc);
    EXPECT_EQ(std::dynamic_pointer_cast<sim::SimWordDocument>(doc)->save_count(), 0);
  }
  EXPECT_EQ(app->Documents()->Count(), 2);
  EXPECT_THAT(JournalEntries(), IsEmpty());
  EXPECT_FALSE(files_.FileExists(TempFile()));
  EXPECT_THAT(Lines("Error"), IsEmpty());
}

TEST_F(WordLetterTest, AVanishedFolderIsReportedAndTheLetterStaysOpen) {
  auto doc = StartLetter(AddContact("Ann Lee"));
  ASSERT_NE(doc, nullptr);
  doc->variables()[0].second = FormatLetterId("00DEAD", FolderOf(journal_)->StoreID());
  WordLetterHandler(addin_).LogDocument(doc);
  EXPECT_FALSE(doc->closed());
  EXPECT_THAT(JournalEntries(), IsEmpty());
  ASSERT_EQ(msg_box_.Shown().size(), 1u);
  EXPECT_EQ(msg_box_.Shown()[0].prompt.rfind("Could not log the document", 0), 0u);
  ASSERT_EQ(log_.lines.back().kind, "Error");
  EXPECT_NE(log_.lines.back().trail.find("WordLetterHandler"), std::string::npos);
}

TEST_F(WordLetterTest, MissingTemplateOrWordMakesNoLetterAndNoMessage) {
  files_.Remove("C:\\Templates\\Zintra Letter.dot");
  EXPECT_EQ(StartLetter(AddContact("Ann Lee")), nullptr);
  word_.installed = false;
  Click(*ExplorerWith({AddContact("Bob Ray")}), kTagLetter);
  EXPECT_THAT(msg_box_.Shown(), IsEmpty());
  EXPECT_EQ(Lines("Error").size(), 2u);
}

}  // namespace
}  // namespace zintra::testing_support

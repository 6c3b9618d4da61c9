// The toolbar in Outlook's windows and the button actions.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/error_of.h"
#include "tests/toolbars/toolbars_env.h"

namespace zintra::testing_support {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<std::string> kSixCaptions = {"Phone Call", "Email",       "File Link",
                                               "Note",       "Appointment", "Letter"};

TEST_F(ToolbarsTest, EveryExplorerGetsTheBarAtTheTopWithSixCaptionedButtons) {
  auto before = app_->OpenExplorer(inbox_);
  Start();
  auto after = app_->OpenExplorer(contacts_);
  for (auto* window : {before.get(), after.get()}) {
    EXPECT_EQ(Captions(*window), kSixCaptions);
    auto bar = window->CommandBars()->Item(kZintraBarName);
    EXPECT_EQ(bar->Position(), kMsoBarTop);
    EXPECT_TRUE(bar->Visible());
  }
  EXPECT_EQ(Lines("Error"), std::vector<std::string>{});
}

struct InspectorCase {
  bool on_inspectors;
  const char* version;
  size_t buttons;
};

class ToolbarsInspectorTest : public ToolbarsTest,
                              public ::testing::WithParamInterface<InspectorCase> {};

TEST_P(ToolbarsInspectorTest, ItemWindowsShowButtonsOnlyWhenAskedAndNotOnOutlook2000) {
  settings_.ShowZintra2ButtonsOnInspectors = GetParam().on_inspectors;
  profile_.SetVersion(GetParam().version);
  Start();
  auto inspector = app_->OpenInspector(AddContact("Ann Lee"));
  ASSERT_TRUE(HasBar(*inspector));
  EXPECT_EQ(Captions(*inspector).size(), GetParam().buttons);
  // An empty bar is not shown as a blank strip.
  EXPECT_EQ(inspector->CommandBars()->Item(kZintraBarName)->Visible(), GetParam().buttons > 0);
}

INSTANTIATE_TEST_SUITE_P(Settings, ToolbarsInspectorTest,
                         ::testing::Values(InspectorCase{false, "11.0.0.8312", 0},
                                           InspectorCase{true, "11.0.0.8312", 6},
                                           InspectorCase{true, "9.0.0.2416", 0}));

struct JournalCase {
  const char* tag;
  const char* type;
};

class ToolbarsJournalTest : public ToolbarsTest,
                            public ::testing::WithParamInterface<JournalCase> {};

TEST_P(ToolbarsJournalTest, EntryIsLinkedToTheSelectedContactWithCompaniesAndCategories) {
  Start();
  auto contact = AddContact("Ann Lee", "Fabrikam", "Customers, VIP");
  auto explorer = ExplorerWith({contact});
  Click(*explorer, GetParam().tag);
  auto entry = LastInspectorItem();
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->Class(), ItemClass::kJournal);
  EXPECT_EQ(entry->Type(), GetParam().type);
  EXPECT_EQ(entry->Companies(), "Fabrikam");
  EXPECT_EQ(entry->Categories(), "Customers, VIP");
  EXPECT_THAT(LinkNames(entry), ElementsAre("Ann Lee"));
  // The user saves it; until then nothing is stored.
  EXPECT_EQ(entry->EntryID(), "");
  EXPECT_THAT(msg_box_.Shown(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Buttons, ToolbarsJournalTest,
                         ::testing::Values(JournalCase{kTagPhoneCall, "Phone Call"},
                                           JournalCase{kTagNote, "Note"}));

struct SelectionCase {
  int count;
  int answer;  // 0: no question expected
  size_t links;
};

class ToolbarsSelectionTest : public ToolbarsTest,
                              public ::testing::WithParamInterface<SelectionCase> {};

TEST_P(ToolbarsSelectionTest, LargeSelectionsAreLinkedOnlyAfterTheQuestion) {
  Start();
  std::vector<std::shared_ptr<Item>> selection;
  for (int i = 0; i < GetParam().count; ++i) {
    selection.push_back(AddContact("Contact " + std::to_string(i)));
  }
  selection.push_back(NewItem(ItemClass::kMail, inbox_));  // not a contact: never linked
  auto explorer = ExplorerWith(selection);
  if (GetParam().answer) msg_box_.Answer(GetParam().answer);
  Click(*explorer, kTagPhoneCall);
  auto entry = LastInspectorItem();
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(LinkNames(entry).size(), GetParam().links);
  ASSERT_EQ(msg_box_.Shown().size(), GetParam().answer ? 1u : 0u);
  if (GetParam().answer) {
    EXPECT_EQ(msg_box_.Shown()[0].prompt, strings_.Load(kStrLinkAllQuestion));
    EXPECT_EQ(msg_box_.Shown()[0].buttons, kMsgBoxOKCancel | kMsgBoxQuestion);
  }
}

// The non-contact item counts towards the selection's size.
INSTANTIATE_TEST_SUITE_P(Sizes, ToolbarsSelectionTest,
                         ::testing::Values(SelectionCase{28, 0, 28},
                                           SelectionCase{29, kMsgBoxResultOK, 29},
                                           SelectionCase{29, kMsgBoxResultCancel, 0}));

TEST_F(ToolbarsTest, OutlookCommandButtonsRunTheMenuBarControls) {
  Start();
  auto explorer = ExplorerWith({AddContact("Ann Lee")});
  Click(*explorer, kTagEmail);
  Click(*explorer, kTagFileLink);
  Click(*explorer, kTagAppointment);
  EXPECT_THAT(app_->ExecutedCommands(), ElementsAre(1978, 5418, 5433));
}

TEST_F(ToolbarsTest, ButtonsWithoutAContactDoNothingUsefulAndSayNothing) {
  Start();
  auto explorer = ExplorerWith({});
  Click(*explorer, kTagLetter);
  Click(*explorer, kTagPhoneCall);
  EXPECT_EQ(word_.starts(), 0);
  auto entry = LastInspectorItem();
  ASSERT_NE(entry, nullptr);
  EXPECT_THAT(LinkNames(entry), IsEmpty());
  EXPECT_THAT(msg_box_.Shown(), IsEmpty());
}

TEST_F(ToolbarsTest, ControlOfAnUnknownTagKeepsItsCaptionButIsShown) {
  Start();
  auto explorer = app_->OpenExplorer(inbox_);
  auto control = explorer->CommandBars()->Item("Standard")->Controls()->Add(kMsoControlButton);
  control->SetTag("Other_AddIn");
  control->SetCaption("Theirs");
  control->SetVisible(false);
  toolbars_->ToolbarHelper_ControlCreated(control);
  EXPECT_EQ(control->Caption(), "Theirs");
  EXPECT_TRUE(control->Visible());
}

TEST_F(ToolbarsTest, SwitchingTheSettingRemovesAndRecreatesTheToolbarAndKillRemovesIt) {
  Start();
  auto explorer = app_->OpenExplorer(inbox_);
  RegSettings old_settings = settings_;

  settings_.ShowZintra2Buttons = true;  // on while already shown: nothing to do
  toolbars_->Addin_RegSettingsChanged(old_settings);
  old_settings = settings_;
  settings_.ShowZintra2Buttons = false;
  toolbars_->Addin_RegSettingsChanged(old_settings);
  EXPECT_FALSE(toolbars_->Shown());
  EXPECT_FALSE(HasBar(*explorer));
  EXPECT_EQ(library_.Last(), nullptr);

  old_settings = settings_;
  settings_.ShowZintra2Buttons = true;
  toolbars_->Addin_RegSettingsChanged(old_settings);
  EXPECT_EQ(library_.created(), 2);
  EXPECT_EQ(Captions(*explorer), kSixCaptions);
  EXPECT_EQ(Captions(*app_->OpenExplorer(contacts_)), kSixCaptions);

  toolbars_->Kill();
  EXPECT_FALSE(HasBar(*explorer));
}

TEST_F(ToolbarsTest, AMissingToolbarLibraryFailsInitializeWithTheTrail) {
  library_.unavailable = true;
  auto toolbars = std::make_shared<Toolbars>();
  std::optional<ZError> e = Raised([&] { toolbars->Initialize(addin_); });
  ASSERT_TRUE(e) << "Initialize succeeded without the toolbar library";
  EXPECT_EQ(e->Number(), 429);
  EXPECT_NE(e->Source().find("Toolbars"), std::string::npos);
  EXPECT_FALSE(toolbars->Shown());
}

}  // namespace
}  // namespace zintra::testing_support

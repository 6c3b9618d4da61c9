// Quillbar.ToolbarHelper, created by ProgID from the registered Quillbar.dll, over the
// command bars of a served Outlook, as the add-in's adapter of the library sees it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "sim/outlook/sim_command_bars.h"
#include "sim/outlook/sim_ol_windows.h"
#include "src/core/version.h"
#include "tests/win32/outlook/served_profile.h"
#include "win32/com/unicode.h"
#include "win32/outlook/com_object_factory.h"
#include "win32/outlook/com_toolbar_library.h"
#include "win32/ports/win32_platform.h"
#include "win32/sim_server/dispatch_object.h"

namespace zintra::win32::testing {
namespace {

struct Apartment {
  Apartment() { CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED); }
  ~Apartment() { CoUninitialize(); }
};

// The one button on window's bar "Zintra", as Outlook holds it; nullptr when none.
std::shared_ptr<sim::SimCommandBarControl> ButtonIn(const std::shared_ptr<OutlookWindow>& window) {
  try {
    auto bar = window->CommandBars()->Item("Zintra");
    if (bar->Controls()->Count() != 1) return nullptr;
    return std::dynamic_pointer_cast<sim::SimCommandBarControl>(bar->Controls()->Item(1));
  } catch (const ZError&) {
    return nullptr;
  }
}

// The simulated window behind a window the library's event carried.
std::shared_ptr<AutomationObject> SimWindowOf(const std::shared_ptr<OutlookWindow>& window) {
  ComAdapter* adapter = AdapterOf(window.get());
  return adapter ? DispatchObject::TargetOf(adapter->Object().Get()) : nullptr;
}

class QuillbarTest : public ::testing::Test {
 protected:
  void SetUp() override {
    CLSID clsid{};
    if (FAILED(CLSIDFromProgID(L"Quillbar.ToolbarHelper", &clsid))) {
      if (std::getenv("ZINTRA_REQUIRE_ADDIN")) FAIL() << "Quillbar.dll is not registered";
      GTEST_SKIP() << "Quillbar.dll is not registered (tools/test-windows.sh registers it)";
    }
    explorer_ = p_.sim_app->OpenExplorer(p_.build.Default(kOlFolderInbox));
    helper_ = ComToolbarLibrary().CreateToolbarHelper();
    connections_.push_back(helper_->BarCreated.Connect(
        [this](std::shared_ptr<CommandBar> bar) { seen_.push_back("bar " + bar->Name()); }));
    connections_.push_back(
        helper_->ControlCreated.Connect([this](std::shared_ptr<CommandBarControl> control) {
          control->SetCaption("Note");
          seen_.push_back("button " + control->Tag());
        }));
    connections_.push_back(
        helper_->UpdateControl.Connect([this](std::shared_ptr<CommandBarControl> control) {
          seen_.push_back("update " + control->Tag());
        }));
    connections_.push_back(helper_->ButtonClicked.Connect(
        [this](std::shared_ptr<CommandBarControl> control, std::shared_ptr<OutlookWindow> window) {
          seen_.push_back("click " + control->Tag() + " " + control->Caption());
          clicked_in_.push_back(SimWindowOf(window));
        }));
  }
  void TearDown() override {
    connections_.clear();
    helper_.reset();
    CoFreeUnusedLibraries();
  }

  std::shared_ptr<Item> FirstMail() {
    return p_.sim_app->Session()->GetDefaultFolder(kOlFolderInbox)->Items()->GetFirst();
  }
  void DeclareNoteButton(int32_t kind) {
    helper_->DeclareBar(kind, "Zintra");
    helper_->DeclareButton(kind, "Zintra", "Zintra_Note", kMsoButtonCaption, true);
  }

  Apartment apartment_;
  ServedProfile p_;
  std::shared_ptr<sim::SimOlExplorer> explorer_;
  std::shared_ptr<ToolbarHelper> helper_;
  std::vector<Connection> connections_;
  std::vector<std::string> seen_;
  std::vector<std::shared_ptr<AutomationObject>> clicked_in_;
};

TEST_F(QuillbarTest, DeclarationsMakeBarsAndButtonsInOpenAndLaterWindowsOfTheirKind) {
  auto inspector = p_.sim_app->OpenInspector(FirstMail());
  helper_->Initialize(p_.app, "Zintra");
  DeclareNoteButton(kToolbarKindExplorer);
  EXPECT_EQ(seen_, (std::vector<std::string>{"bar Zintra", "button Zintra_Note"}));
  auto button = ButtonIn(explorer_);
  ASSERT_TRUE(button);
  EXPECT_EQ(button->Caption(), "Note");  // set by the handler through the event's button
  EXPECT_EQ(button->Style(), kMsoButtonCaption);
  EXPECT_TRUE(button->Visible());
  EXPECT_EQ(button->Type(), kMsoControlButton);
  EXPECT_FALSE(ButtonIn(inspector)) << "an explorer declaration reached an item window";

  DeclareNoteButton(kToolbarKindInspector);
  auto second = p_.sim_app->OpenExplorer(p_.build.Default(kOlFolderSentMail));
  auto in_inspector = ButtonIn(inspector);
  auto in_second = ButtonIn(second);
  ASSERT_TRUE(in_inspector);
  ASSERT_TRUE(in_second);
  // Office raises Click on every button that shares a tag: each window's is its own.
  EXPECT_EQ(button->Tag().rfind("Zintra_Note", 0), 0u);
  EXPECT_NE(button->Tag(), in_second->Tag());
  EXPECT_NE(button->Tag(), in_inspector->Tag());
  EXPECT_NE(in_second->Tag(), in_inspector->Tag());
  // The inspector's, then the new explorer's, which is then activated.
  EXPECT_EQ(seen_, (std::vector<std::string>{"bar Zintra", "button Zintra_Note", "bar Zintra",
                                             "button Zintra_Note", "bar Zintra",
                                             "button Zintra_Note", "update Zintra_Note"}));
}

TEST_F(QuillbarTest, AClickReachesTheClickedWindowOnlyWithTheDeclaredTag) {
  helper_->Initialize(p_.app, "Zintra");
  auto second = p_.sim_app->OpenExplorer(p_.build.Default(kOlFolderSentMail));
  DeclareNoteButton(kToolbarKindExplorer);
  seen_.clear();
  auto clicked = ButtonIn(second);
  ASSERT_TRUE(clicked);
  clicked->ClickByUser();
  EXPECT_EQ(seen_, (std::vector<std::string>{"click Zintra_Note Note"}));
  ASSERT_EQ(clicked_in_.size(), 1u);
  EXPECT_EQ(clicked_in_[0], std::static_pointer_cast<AutomationObject>(second));

  seen_.clear();
  explorer_->Activate();
  EXPECT_EQ(seen_, (std::vector<std::string>{"update Zintra_Note"}));
}

TEST_F(QuillbarTest, AClosedWindowIsForgottenAndReleasingTheHelperRemovesItsBars) {
  helper_->Initialize(p_.app, "Zintra");
  auto inspector = p_.sim_app->OpenInspector(FirstMail());
  DeclareNoteButton(kToolbarKindExplorer);
  DeclareNoteButton(kToolbarKindInspector);
  auto stale = ButtonIn(inspector);
  ASSERT_TRUE(stale);
  inspector->Close(/*olSave=*/0);
  seen_.clear();
  try {
    stale->ClickByUser();  // the window's controls went with it
  } catch (const ZError&) {
  }
  EXPECT_TRUE(seen_.empty());

  connections_.clear();
  helper_.reset();
  EXPECT_THROW(explorer_->CommandBars()->Item("Zintra"), ZError);
}

TEST_F(QuillbarTest, BadDeclarationsAreRefusedWithTheRunTimeError) {
  helper_->Initialize(p_.app, "Zintra");
  EXPECT_EQ(ErrorOf([&] { helper_->DeclareBar(2, "Zintra"); }), kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] {
              helper_->DeclareButton(kToolbarKindExplorer, "Other", "X", kMsoButtonCaption, true);
            }),
            kErrInvalidCall);
  EXPECT_EQ(ErrorOf([&] { helper_->Initialize(p_.app, "Zintra"); }), kErrInvalidCall);
  EXPECT_FALSE(ButtonIn(explorer_));
}

// The error log reads the library's version from the file beside the add-in.
TEST_F(QuillbarTest, TheRegisteredFileCarriesTheAddinsVersion) {
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(L"Quillbar.ToolbarHelper", &clsid), S_OK);
  wchar_t clsid_text[40] = {};
  StringFromGUID2(clsid, clsid_text, 40);
  std::wstring key = std::wstring(L"CLSID\\") + clsid_text + L"\\InprocServer32";
  wchar_t path[MAX_PATH] = {};
  DWORD size = sizeof(path);
  ASSERT_EQ(
      RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, path, &size),
      ERROR_SUCCESS);
  EXPECT_NE(Narrow(path).find("Quillbar.dll"), std::string::npos);
  auto version = Win32Platform().FileVersion(Narrow(path));
  ASSERT_TRUE(version);
  EXPECT_EQ(version->major, kAddinVersionMajor);
  EXPECT_EQ(version->minor, kAddinVersionMinor);
  EXPECT_EQ(version->revision, kAddinVersionRevision);
}

}  // namespace
}  // namespace zintra::win32::testing

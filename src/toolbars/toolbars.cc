#include "src/toolbars/toolbars.h"

#include <iterator>

#include "src/core/date.h"
#include "src/core/z_error.h"
#include "src/errors/cached_error.h"
#include "src/errors/error_handling.h"
#include "src/host/command_bars.h"
#include "src/host/msg_box.h"
#include "src/host/outlook_application.h"
#include "src/host/outlook_window.h"
#include "src/host/toolbar_library.h"
#include "src/host/word.h"
#include "src/logging/zintra_utils.h"
#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "src/toolbars/letter_ids.h"
#include "src/toolbars/toolbars_addin.h"

namespace zintra {

namespace {

constexpr char kToolbarsModule[] = "Toolbars";

struct ButtonSpec {
  const char* tag;
  int32_t caption;
};

// Declaration order is the order on the bar.
constexpr ButtonSpec kButtons[] = {
    {kTagPhoneCall, 1202}, {kTagEmail, 1203},       {kTagFileLink, 1204},
    {kTagNote, 1205},      {kTagAppointment, 1206}, {kTagLetter, 1210},
};

}  // namespace

Toolbars::Toolbars() = default;

Toolbars::~Toolbars() { Kill(); }

int32_t Toolbars::CaptionStringFor(const std::string& tag) {
  for (const ButtonSpec& b : kButtons) {
    if (tag == b.tag) return b.caption;
  }
  return 0;
}

void Toolbars::Initialize(const std::shared_ptr<ToolbarsAddin>& AddinApp) {
  try {
    if (!AddinApp) throw ZError(kErrObjectNotSet, "Object variable not set");
    app_ = AddinApp;
    CreateToolbarHelper();
  } catch (...) {
    CachedError rec;
    rec.SetToCurrentException(kToolbarsModule, "Initialize");
    ReleaseToolbarHelper();
    rec.Raise();
  }
}

void Toolbars::Kill() {
  ReleaseToolbarHelper();
  app_.reset();
}

void Toolbars::Addin_RegSettingsChanged(const RegSettings& OldSettings) {
  if (!app_) return;
  try {
    const bool show = app_->Settings().ShowZintra2Buttons;
    if (show == OldSettings.ShowZintra2Buttons) return;
    if (show) {
      if (!ToolbarHelper_) CreateToolbarHelper();
    } else {
      ReleaseToolbarHelper();
    }
  } catch (...) {
    // A half-made toolbar is taken down again; the next change may try once more.
    ReleaseToolbarHelper();
    LogHandlerError("Addin_RegSettingsChanged");
  }
}

void Toolbars::CreateToolbarHelper() {
  ToolbarLibrary* library = app_->ToolbarLib();
  if (!library) throw ZError(429, "ActiveX component can't create object");
  auto helper = library->CreateToolbarHelper();
  if (!helper) throw ZError(kErrObjectNotSet, "Object variable not set");
  ToolbarHelper_ = helper;
  // Connected before Initialize: windows already open get their bars from it.
  bar_created_ = helper->BarCreated.Connect(
      [this](std::shared_ptr<CommandBar> bar) { ToolbarHelper_BarCreated(bar); });
  control_created_ = helper->ControlCreated.Connect(
      [this](std::shared_ptr<CommandBarControl> c) { ToolbarHelper_ControlCreated(c); });
  update_bar_ = helper->UpdateBar.Connect(
      [this](std::shared_ptr<CommandBar> bar) { ToolbarHelper_UpdateBar(bar); });
  update_control_ = helper->UpdateControl.Connect(
      [this](std::shared_ptr<CommandBarControl> c) { ToolbarHelper_UpdateControl(c); });
  button_clicked_ = helper->ButtonClicked.Connect(
      [this](std::shared_ptr<CommandBarControl> c, std::shared_ptr<OutlookWindow> window) {
        ToolbarHelper_ButtonClicked(c, window);
      });
  helper->Initialize(app_->OLApp(), kZintraBarName);
  DeclareToolbars();
}

void Toolbars::ReleaseToolbarHelper() {
  bar_created_.Disconnect();
  control_created_.Disconnect();
  update_bar_.Disconnect();
  update_control_.Disconnect();
  button_clicked_.Disconnect();
  ToolbarHelper_.reset();
}

void Toolbars::DeclareToolbars() {
  ToolbarHelper& helper = *ToolbarHelper_;
  helper.DeclareBar(kToolbarKindExplorer, kZintraBarName);
  helper.DeclareBar(kToolbarKindInspector, kZintraBarName);
  for (const ButtonSpec& b : kButtons) {
    helper.DeclareButton(kToolbarKindExplorer, kZintraBarName, b.tag, kMsoButtonCaption, true);
  }
  ZintraUtils* utils = app_->Utils();
  const bool outlook2000 = utils && utils->Outlook9();
  if (app_->Settings().ShowZintra2ButtonsOnInspectors && !outlook2000) {
    for (const ButtonSpec& b : kButtons) {
      helper.DeclareButton(kToolbarKindInspector, kZintraBarName, b.tag, kMsoButtonCaption, true);
    }
  }
}

void Toolbars::ToolbarHelper_BarCreated(const std::shared_ptr<CommandBar>& Bar) {
  try {
    Bar->SetPosition(kMsoBarTop);
  } catch (...) {
    LogHandlerError("ToolbarHelper_BarCreated");
  }
  ToolbarHelper_UpdateBar(Bar);
}

void Toolbars::ToolbarHelper_ControlCreated(const std::shared_ptr<CommandBarControl>& Control) {
  if (!app_) return;
  try {
    if (int32_t caption = CaptionStringFor(Control->Tag())) {
      Control->SetCaption(app_->Strings().Load(caption));
    }
    Control->SetVisible(true);
    // The bar was hidden while it had no buttons.
    if (auto bar = Control->Parent()) bar->SetVisible(true);
  } catch (...) {
    LogHandlerError("ToolbarHelper_ControlCreated");
  }
}

void Toolbars::ToolbarHelper_UpdateBar(const std::shared_ptr<CommandBar>& Bar) {
  try {
    // A bar whose window has gone is left alone; an empty bar (item windows without
    // buttons) stays hidden rather than showing a blank strip.
    auto window = std::dynamic_pointer_cast<OutlookWindow>(Bar->Parent());
    if (!window) return;
    Bar->SetVisible(Bar->Controls()->Count() > 0);
  } catch (...) {
    LogHandlerError("ToolbarHelper_UpdateBar");
  }
}

void Toolbars::ToolbarHelper_UpdateControl(const std::shared_ptr<CommandBarControl>& Control) {
  try {
    Control->SetVisible(true);
  } catch (...) {
    LogHandlerError("ToolbarHelper_UpdateControl");
  }
}

void Toolbars::ToolbarHelper_ButtonClicked(const std::shared_ptr<CommandBarControl>& Control,
                                           const std::shared_ptr<OutlookWindow>& Window) {
  if (!app_ || !Control || !Window) return;
  // Held for the click: an action may lead to the add-in being released.
  std::shared_ptr<Toolbars> self = weak_from_this().lock();
  try {
    const std::string tag = Control->Tag();
    std::shared_ptr<Item> contact = SelectedContact(Window);
    if (tag == kTagPhoneCall) {
      NewJournalEntry(Window, contact, kStrJournalPhoneCall);
    } else if (tag == kTagNote) {
      NewJournalEntry(Window, contact, kStrJournalNote);
    } else if (tag == kTagEmail) {
      RunBuiltInControl(Window, kControlNewMessageToContact);
    } else if (tag == kTagFileLink) {
      RunBuiltInControl(Window, kControlLinkItems);
    } else if (tag == kTagAppointment) {
      RunBuiltInControl(Window, kControlNewAppointmentWithContact);
    } else if (tag == kTagLetter) {
      CreateLetter(Window, contact);
    }
  } catch (...) {
    LogHandlerError("ToolbarHelper_ButtonClicked");
  }
}

std::shared_ptr<Item> Toolbars::SelectedContact(const std::shared_ptr<OutlookWindow>& Window) {
  try {
    std::shared_ptr<Item> item;
    if (auto explorer = std::dynamic_pointer_cast<Explorer>(Window)) {
      auto selection = explorer->Selection();
      if (selection && selection->Count() >= 1) item = selection->Item(1);
    } else if (auto inspector = std::dynamic_pointer_cast<Inspector>(Window)) {
      item = inspector->CurrentItem();
    }
    if (item && item->Class() == ItemClass::kContact) return item;
  } catch (const ZError&) {
    // No contact, as with an empty selection.
  }
  return nullptr;
}

void Toolbars::NewJournalEntry(const std::shared_ptr<OutlookWindow>& Window,
                               const std::shared_ptr<Item>& contact, int32_t type_string) {
  auto ol_app = app_->OLApp();
  if (!ol_app) throw ZError(kErrObjectNotSet, "Object variable not set");
  std::shared_ptr<Item> entry = ol_app->CreateItem(kOlJournalItem);
  LinkSelectionToItem(Window, entry);
  if (contact) {
    entry->SetCompanies(contact->Companies());
    entry->SetCategories(contact->Categories());
  }
  entry->SetType(app_->Strings().Load(type_string));
  // The user completes and saves the entry in its window.
  entry->Display(false);
}

void Toolbars::RunBuiltInControl(const std::shared_ptr<OutlookWindow>& Window, int32_t id) {
  auto menu = Window->CommandBars()->Item("Menu Bar");
  auto control = menu->FindControl(0, id, "", false, /*recursive=*/true);
  if (!control) {
    throw ZError(kErrObjectNotSet, "Outlook command " + std::to_string(id) + " not found");
  }
  control->Execute();
}

void Toolbars::LinkSelectionToItem(const std::shared_ptr<OutlookWindow>& Window,
                                   const std::shared_ptr<Item>& NewItem) {
  ZintraUtils* utils = app_->Utils();
  if (!utils) throw ZError(kErrObjectNotSet, "Object variable not set");
  if (auto explorer = std::dynamic_pointer_cast<Explorer>(Window)) {
    auto selection = explorer->Selection();
    const int32_t count = selection->Count();
    if (count >= kLinkQuestionThreshold) {
      const StringTable& strings = app_->Strings();
      int32_t answer =
          app_->Prompt().Show(strings.Load(kStrLinkAllQuestion), kMsgBoxOKCancel | kMsgBoxQuestion,
                              strings.Load(kStrProductName));
      if (answer != kMsgBoxResultOK) return;
    }
    auto links = NewItem->Links();
    for (int32_t i = 1; i <= count; ++i) {
      auto item = selection->Item(i);
      if (item && item->Class() == ItemClass::kContact) utils->AddToLinksCollection(links, item);
    }
  } else if (auto inspector = std::dynamic_pointer_cast<Inspector>(Window)) {
    auto item = inspector->CurrentItem();
    if (item && item->Class() == ItemClass::kContact) {
      utils->AddToLinksCollection(NewItem->Links(), item);
    }
  }
}

void Toolbars::CreateLetter(const std::shared_ptr<OutlookWindow>& /*Window*/,
                            const std::shared_ptr<Item>& contact) {
  // A letter is always to someone: without a contact the button does nothing.
  if (!contact) return;
  Word* word_port = app_->WordProcessor();
  if (!word_port) throw ZError(429, "ActiveX component can't create object");

  // The logged letter goes where the contact's logged items go. A contact outside the
  // tracked folders has no such folder: its letter is written but not logged.
  std::shared_ptr<Folder> log_folder = app_->TrackedLogFolder(contact->Parent());

  auto word = word_port->Application();
  const std::string template_path =
      word->DefaultFilePath(kWdUserTemplatesPath) + "\\" + kLetterTemplate;
  auto document = word->Documents()->Add(template_path);

  const std::string today = FormatDate(app_->Now(), "Short Date");
  const std::string subject =
      app_->Strings().Format(kStrLetterSubject, {contact->FullName(), today});
  std::string contact_store;
  if (auto folder = contact->Parent()) contact_store = folder->StoreID();

  auto variables = document->Variables();
  // Word keeps no empty variable: a letter that is not to be logged has none.
  if (log_folder) {
    variables->Add(kVarLogTo, FormatLetterId(log_folder->EntryID(), log_folder->StoreID()));
  }
  variables->Add(kVarLinkTo, FormatLetterId(contact->EntryID(), contact_store));
  variables->Add(kVarSubject, subject);
  word->SetVisible(true);
  word->Activate();
}

void Toolbars::LogHandlerError(const char* proc_name) {
  CachedError rec;
  rec.SetToCurrentException(kToolbarsModule, proc_name);
  if (app_) rec.Log(app_->Errors());
}

}  // namespace zintra

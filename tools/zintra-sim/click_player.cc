#include "tools/zintra-sim/click_player.h"

#include <stdexcept>

#include "sim/outlook/sim_command_bars.h"
#include "sim/outlook/sim_item.h"
#include "sim/outlook/sim_ol_windows.h"
#include "src/core/text.h"
#include "src/core/z_error.h"
#include "src/host/command_bars.h"
#include "src/host/msg_box.h"
#include "src/toolbars/toolbars.h"
#include "src/toolbars/word_letter_handler.h"
#include "tools/zintra-sim/input_error.h"
#include "tools/zintra-sim/json_source.h"

namespace zintra::simtool {

namespace {

constexpr int32_t kCloseDiscard = 1;   // OlInspectorClose olDiscard
constexpr int32_t kWordDoNotSave = 0;  // WdSaveOptions wdDoNotSaveChanges

[[noreturn]] void Fail(const std::string& file, const StepSpec& step, const std::string& field,
                       const std::string& what) {
  throw InputError(file, step.source_line, step.pointer + field, what);
}

}  // namespace

void SetItemFields(Item& item, const std::map<std::string, std::string>& fields,
                   const std::string& file, const StepSpec& step, const std::string& field) {
  for (const auto& [field_name, value] : fields) {
    std::string f = text::LCase(field_name);
    if (f == "subject") {
      item.SetSubject(value);
    } else if (f == "body") {
      item.SetBody(value);
    } else if (f == "categories") {
      item.SetCategories(value);
    } else if (f == "sensitivity") {
      auto s = SensitivityFromName(value);
      if (!s) {
        Fail(file, step, field + "/" + PointerEscape(field_name),
             "expected normal, personal, private or confidential");
      }
      item.SetSensitivity(*s);
    } else {
      bool yes_no = text::EqualsNoCase(value, "true") || text::EqualsNoCase(value, "false");
      auto props = item.UserProperties();
      auto prop = props->Find(field_name);
      if (!prop) prop = props->Add(field_name, yes_no ? kOlYesNo : kOlText, false);
      prop->SetValue(yes_no ? Value(text::EqualsNoCase(value, "true")) : Value(value));
    }
  }
}

std::shared_ptr<Item> ClickPlayer::ItemById(const std::string& id, const StepSpec& step) {
  auto record = w_.loader().FindItem(id);
  if (!record) {
    Fail(w_.scenario().source, step, "",
         "the item \"" + Excerpt(id) + "\" is no longer in the profile (deleted or moved)");
  }
  return sim::MakeItem(&w_.profile(), record);
}

void ClickPlayer::Play(const StepSpec& step) {
  sim::SimOutlook& o = w_.outlook();
  if (!o.Started() || o.Ended()) {
    Fail(w_.scenario().source, step, "/do", "a button is clicked while Outlook is not running");
  }
  std::vector<std::shared_ptr<Item>> selection;
  for (const std::string& id : step.selection) selection.push_back(ItemById(id, step));

  std::shared_ptr<OutlookWindow> window;
  if (step.in == "inspector") {
    window = o.OpenInspector(selection.front());
  } else {
    auto explorers = o.app().OpenExplorers();
    std::shared_ptr<sim::SimOlExplorer> explorer =
        explorers.empty() ? o.OpenExplorer() : explorers.back();
    if (!selection.empty()) {
      if (auto folder = sim::RecordOf(selection.front())->folder.lock()) {
        explorer->ShowFolder(folder);
      }
    }
    explorer->Select(selection);
    explorer->Activate();
    window = explorer;
  }

  std::shared_ptr<CommandBarControl> button;
  try {
    auto bar = window->CommandBars()->Item(kZintraBarName);
    button = bar->FindControl(0, 0, ButtonTag(step.button), /*visible_only=*/true, false);
  } catch (const ZError&) {
    // No Zintra bar in this window.
  }
  auto clickable = std::dynamic_pointer_cast<sim::SimCommandBarControl>(button);
  if (!clickable) {
    note_("no Zintra '" + step.button + "' button in the " + step.in + ": the click does nothing");
    return;
  }
  // The question comes only when linking that many; an answer queued for a question
  // never asked would answer some later message box.
  const bool links = step.button == "phone-call" || step.button == "note";
  if (links && step.confirm && step.in == "explorer" &&
      static_cast<int32_t>(selection.size()) >= kLinkQuestionThreshold) {
    o.msg_box.Answer(*step.confirm ? kMsgBoxResultOK : kMsgBoxResultCancel);
  }
  const size_t inspectors_before = o.app().OpenInspectors().size();
  const size_t commands_before = o.app().ExecutedCommands().size();
  const auto& word = o.word.running();
  const size_t documents_before = word ? word->open_documents().size() : 0;

  clickable->ClickByUser();

  const auto& commands = o.app().ExecutedCommands();
  for (size_t i = commands_before; i < commands.size(); ++i) {
    if (commands[i] == sim::kCmdLinkItems) {
      std::shared_ptr<Item> contact = selection.empty() ? nullptr : selection.front();
      AnswerLinkDialog(step, contact);
    }
  }
  if (step.button == "letter") {
    AnswerLetter(step, documents_before);
  } else {
    AnswerItemWindow(step, inspectors_before);
  }
}

void ClickPlayer::AnswerItemWindow(const StepSpec& step, size_t inspectors_before) {
  auto inspectors = w_.outlook().app().OpenInspectors();
  if (inspectors.size() <= inspectors_before) {
    if (!step.fill.empty() || !step.then.empty()) note_("no item window opened to answer");
    return;
  }
  std::shared_ptr<sim::SimOlInspector> inspector = inspectors.back();
  std::shared_ptr<Item> item = inspector->CurrentItem();
  SetItemFields(*item, step.fill, w_.scenario().source, step, "/fill");
  std::string then = step.then;
  if (then.empty()) then = item->Class() == ItemClass::kMail ? "send" : "save";
  if (then == "keep-open") return;
  if (then == "send") {
    if (item->Class() != ItemClass::kMail) {
      Fail(w_.scenario().source, step, "/then", "only a mail can be sent");
    }
    if (!w_.outlook().app().Send(item)) note_("the send was cancelled");
  } else if (then == "save") {
    item->Save();
  }
  if (!inspector->closed()) inspector->Close(kCloseDiscard);
}

void ClickPlayer::AnswerLinkDialog(const StepSpec& step, const std::shared_ptr<Item>& contact) {
  if (!contact || contact->Class() != ItemClass::kContact) {
    if (!step.link_items.empty()) note_("Outlook's link dialog needs a contact selected");
    return;
  }
  for (const std::string& id : step.link_items) {
    std::shared_ptr<Item> item = ItemById(id, step);
    item->Links()->Add(contact);
    item->Save();
  }
}

void ClickPlayer::AnswerLetter(const StepSpec& step, size_t documents_before) {
  const auto& word = w_.outlook().word.running();
  if (!word || word->open_documents().size() <= documents_before) {
    note_("no letter opened in Word");
    return;
  }
  std::shared_ptr<sim::SimWordDocument> document = word->open_documents().back();
  document->TypeText(step.letter);
  if (step.then == "discard") {
    document->Close(kWordDoNotSave);
    return;
  }
  std::shared_ptr<ToolbarsAddin> toolbars = w_.Toolbars();
  if (!toolbars) {
    Fail(w_.scenario().source, step, "", "the letter's macro finds no add-in to file it");
  }
  WordLetterHandler(toolbars).LogDocument(document);
}

}  // namespace zintra::simtool

// Toolbars: the "Zintra" toolbar with its six buttons in Outlook's explorer windows
// (and, when wanted, in item windows), and the button actions: a phone call or a note
// recorded against the selection as a new journal entry, Outlook's own e-mail, file
// link and appointment commands for the selected contact, and a Word letter to it.
// The bars themselves are made and kept by the toolbar library's ToolbarHelper,
// whose events arrive here.
//
// The toolbar is shown from start-up (unless the add-in was told never to load it)
// whatever ShowZintra2Buttons says; a later change of that setting removes or adds it.
// Item windows get the buttons only with ShowZintra2ButtonsOnInspectors, and never on
// Outlook 2000; their bar stays hidden while it has no buttons.
//
// Ownership: the add-in creates one with std::make_shared and calls Initialize; it
// holds the add-in and the ToolbarHelper until Kill. Releasing the helper removes the
// bars from every window. Called on Outlook's thread only.
//
// Failures: Initialize throws when the toolbar library cannot be had (the add-in
// logs it). Every handler runs with its errors suppressed: the error is written to
// the log and the click simply has no effect. The only question shown is the one
// before linking 30 items or more.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "src/core/event.h"
#include "src/outlook/zintra_bar_name.h"

namespace zintra {

class CommandBar;
class CommandBarControl;
class Item;
class OutlookWindow;
class RegSettings;
class ToolbarHelper;
class ToolbarsAddin;

inline constexpr char kTagPhoneCall[] = "Zintra_PhoneCall";
inline constexpr char kTagEmail[] = "Zintra_Email";
inline constexpr char kTagFileLink[] = "Zintra_FileLink";
inline constexpr char kTagNote[] = "Zintra_Note";
inline constexpr char kTagAppointment[] = "Zintra_Appointment";
inline constexpr char kTagLetter[] = "Zintra_Letter";

// The letter template and its document variables.
inline constexpr char kLetterTemplate[] = "Zintra Letter.dot";
inline constexpr char kVarLogTo[] = "Zintra_Log_To";
inline constexpr char kVarLinkTo[] = "Zintra_Link_To";
inline constexpr char kVarSubject[] = "Zintra_Subject";

// Selections of this many items or more are linked only after the question.
inline constexpr int32_t kLinkQuestionThreshold = 30;

// Built-in Outlook controls the buttons run.
inline constexpr int32_t kControlNewMessageToContact = 1978;
inline constexpr int32_t kControlLinkItems = 5418;
inline constexpr int32_t kControlNewAppointmentWithContact = 5433;

// String table numbers.
inline constexpr int32_t kStrJournalPhoneCall = 52;
inline constexpr int32_t kStrJournalNote = 54;
inline constexpr int32_t kStrJournalLetter = 55;
inline constexpr int32_t kStrLinkAllQuestion = 1207;
inline constexpr int32_t kStrLetterSubject = 1209;

class Toolbars : public std::enable_shared_from_this<Toolbars> {
 public:
  Toolbars();
  ~Toolbars();
  Toolbars(const Toolbars&) = delete;
  Toolbars& operator=(const Toolbars&) = delete;

  // Keeps the add-in, creates the ToolbarHelper over Outlook's application with the
  // bar name and makes the declarations.
  void Initialize(const std::shared_ptr<ToolbarsAddin>& AddinApp);
  void Addin_Kill() {}
  // Releases the ToolbarHelper (the bars go) and the add-in.
  void Kill();
  // ShowZintra2Buttons turned on adds the toolbar, turned off removes it.
  void Addin_RegSettingsChanged(const RegSettings& OldSettings);

  // The toolbar library's events.
  void ToolbarHelper_BarCreated(const std::shared_ptr<CommandBar>& Bar);
  void ToolbarHelper_ControlCreated(const std::shared_ptr<CommandBarControl>& Control);
  void ToolbarHelper_UpdateBar(const std::shared_ptr<CommandBar>& Bar);
  void ToolbarHelper_UpdateControl(const std::shared_ptr<CommandBarControl>& Control);
  void ToolbarHelper_ButtonClicked(const std::shared_ptr<CommandBarControl>& Control,
                                   const std::shared_ptr<OutlookWindow>& Window);

  // True while the toolbar is shown (a ToolbarHelper is held).
  bool Shown() const { return static_cast<bool>(ToolbarHelper_); }

  // The string number of a button tag's caption; 0 for a tag not ours.
  static int32_t CaptionStringFor(const std::string& tag);

 private:
  void CreateToolbarHelper();
  void ReleaseToolbarHelper();
  void DeclareToolbars();
  std::shared_ptr<Item> SelectedContact(const std::shared_ptr<OutlookWindow>& Window);
  void NewJournalEntry(const std::shared_ptr<OutlookWindow>& Window,
                       const std::shared_ptr<Item>& contact, int32_t type_string);
  void RunBuiltInControl(const std::shared_ptr<OutlookWindow>& Window, int32_t id);
  void LinkSelectionToItem(const std::shared_ptr<OutlookWindow>& Window,
                           const std::shared_ptr<Item>& NewItem);
  void CreateLetter(const std::shared_ptr<OutlookWindow>& Window,
                    const std::shared_ptr<Item>& contact);
  void LogHandlerError(const char* proc_name);

  std::shared_ptr<ToolbarsAddin> app_;
  std::shared_ptr<ToolbarHelper> ToolbarHelper_;
  Connection bar_created_;
  Connection control_created_;
  Connection update_bar_;
  Connection update_control_;
  Connection button_clicked_;
};

}  // namespace zintra

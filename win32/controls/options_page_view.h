// OptionsPageView: the window of the options page — a tab control over four groups of
// child controls (folder sets; monitoring; what is logged and searched; caching,
// delays and the error log) — built in code from the page's field table. It shows a
// RegSettings, tells its owner of every edit (the page becomes dirty) and reads the
// controls back into a RegSettings, refusing bad input with a message that names the
// field. Values the enterprise settings file fixes are shown disabled.
//
// Ownership: the view borrows the string table and the folder list; the window is a
// child of the container's window and is destroyed with the view. Used on the thread
// that created it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "src/resources/string_table.h"
#include "src/settings/reg_settings.h"
#include "win32/com/windows_api.h"
#include "win32/controls/folder_lists.h"
#include "win32/controls/profile_folders.h"

namespace zintra::win32 {

class OptionsPageView {
 public:
  struct Callbacks {
    std::function<void()> edited;    // the user changed something
    std::function<void()> scan_all;  // "Complete Folder Search" (nullptr: not offered)
  };

  OptionsPageView(const StringTable& strings, std::vector<ProfileFolder> folders,
                  Callbacks callbacks);
  ~OptionsPageView();
  OptionsPageView(const OptionsPageView&) = delete;
  OptionsPageView& operator=(const OptionsPageView&) = delete;

  // Creates the window; false when Windows refuses.
  bool Create(HWND parent, const RECT& position);
  HWND Window() const { return window_; }
  void Move(const RECT& position);

  // Fills the controls from `settings` (without telling of edits).
  void Show(const RegSettings& settings);
  // Reads the controls into `settings`: nullopt when every field is valid, else the
  // message for the user ("" when the user declined a warning), with `settings` perhaps
  // partly written. `confirm` asks an OK/Cancel question (a cache chunk above 100).
  std::optional<std::string> Collect(RegSettings& settings,
                                     const std::function<bool(const std::string&)>& confirm);

  // Dialog navigation (Tab, arrows) for a message of one of the page's windows.
  bool TranslateDialogMessage(MSG* message);

 private:
  static LRESULT CALLBACK Proc(HWND window, UINT message, WPARAM w, LPARAM l);
  LRESULT Handle(UINT message, WPARAM w, LPARAM l);
  void Build();
  HWND Add(int tab, const wchar_t* kind, const std::string& text, DWORD style, int x, int y,
           int width, int height);
  void ShowTab(int tab);
  void OnCommand(int id, int code);
  void FillFolderCombo(HWND combo) const;
  void ShowSet(int index);
  void ShowMonitored(int index);
  void RefreshSetList();
  void RefreshMonitoredList();
  std::string Text(int32_t id) const { return strings_.Load(id); }

  const StringTable& strings_;
  std::vector<ProfileFolder> folders_;
  Callbacks callbacks_;
  HWND window_ = nullptr;
  HWND tabs_ = nullptr;
  HFONT font_ = nullptr;
  bool filling_ = false;
  std::vector<std::pair<int, HWND>> children_;  // tab, control
  std::vector<HWND> locked_;                    // disabled when the file fixes values
  std::vector<HWND> switches_, numbers_;        // in the field table's order
  HWND set_list_ = nullptr, set_add_ = nullptr, set_remove_ = nullptr;
  HWND set_combos_[kSetRoleCount] = {};
  HWND set_routed_ = nullptr, set_personal_ = nullptr;
  HWND method_ = nullptr, monitored_list_ = nullptr, monitored_pick_ = nullptr;
  HWND monitored_add_ = nullptr, monitored_remove_ = nullptr, item_types_ = nullptr;
  HWND scan_all_ = nullptr, categories_ = nullptr, log_level_ = nullptr, log_path_ = nullptr;
  HWND policy_note_ = nullptr, opt_out_ = nullptr;
  std::vector<FolderSetRow> sets_;
  std::vector<MonitoredRow> monitored_;
  int current_set_ = -1, current_monitored_ = -1;
};

}  // namespace zintra::win32

#include "win32/controls/options_page_view.h"

#include <commctrl.h>

#include "win32/com/unicode.h"
#include "win32/controls/page_fields.h"
#include "win32/ports/gui_font.h"

namespace zintra::win32 {
namespace {

constexpr wchar_t kClassName[] = L"ZintraOptionsPage";
constexpr int kFirstId = 100;
constexpr int kLeft = 14, kTop = 34, kRow = 20, kWidth = 400;
constexpr int kItemTypeFirst = 135, kItemTypeLast = 150;

// The monitoring methods in the order the list shows them, with their setting values.
constexpr struct {
  int32_t label;
  int32_t value;
} kMethods[] = {{2713, 0}, {2313, 2}, {2305, 3}, {2306, 1}};
// Log levels, most first.
constexpr struct {
  int32_t label;
  int32_t value;
} kLevels[] = {{2515, 3}, {2516, 2}, {2517, 1}, {2518, 0}};

constexpr int32_t kRoleLabels[kSetRoleCount] = {2704, 2705, 2706, 2707, 2708, 2709};

std::wstring WindowText(HWND window) {
  int length = GetWindowTextLengthW(window);
  std::wstring text(static_cast<size_t>(length) + 1, L'\0');
  GetWindowTextW(window, text.data(), length + 1);
  text.resize(static_cast<size_t>(length));
  return text;
}

bool Checked(HWND box) { return SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED; }
void Check(HWND box, bool on) {
  SendMessageW(box, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
}

LRESULT ComboData(HWND combo) {
  LRESULT at = SendMessageW(combo, CB_GETCURSEL, 0, 0);
  return at == CB_ERR ? -1 : SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(at), 0);
}

void SelectComboData(HWND combo, LRESULT data) {
  LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    if (SendMessageW(combo, CB_GETITEMDATA, static_cast<WPARAM>(i), 0) == data) {
      SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(i), 0);
      return;
    }
  }
  SendMessageW(combo, CB_SETCURSEL, 0, 0);
}

void AddString(HWND control, UINT message, const std::string& text, LRESULT data,
               UINT data_message) {
  std::wstring wide = Widen(text);
  LRESULT at = SendMessageW(control, message, 0, reinterpret_cast<LPARAM>(wide.c_str()));
  if (at >= 0) SendMessageW(control, data_message, static_cast<WPARAM>(at), data);
}

// The module the page's window procedure lives in: its class is registered for that
// module, so that it goes with the module rather than outliving it in the process.
HINSTANCE PageModule() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(reinterpret_cast<void*>(&PageModule)), &module);
  return module;
}

}  // namespace

OptionsPageView::OptionsPageView(const StringTable& strings, std::vector<ProfileFolder> folders,
                                 Callbacks callbacks)
    : strings_(strings), folders_(std::move(folders)), callbacks_(std::move(callbacks)) {}

OptionsPageView::~OptionsPageView() {
  if (window_) DestroyWindow(window_);
  // Fails while another page's window still uses the class; the last page removes it.
  UnregisterClassW(kClassName, PageModule());
}

bool OptionsPageView::Create(HWND parent, const RECT& position) {
  INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_TAB_CLASSES | ICC_STANDARD_CLASSES};
  InitCommonControlsEx(&controls);
  HINSTANCE instance = PageModule();
  WNDCLASSEXW cls{};
  cls.cbSize = sizeof(cls);
  cls.lpfnWndProc = &OptionsPageView::Proc;
  cls.hInstance = instance;
  cls.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
  cls.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  cls.lpszClassName = kClassName;
  RegisterClassExW(&cls);  // a second page finds the class registered
  window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kClassName, L"",
                            WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN | WS_TABSTOP, position.left,
                            position.top, position.right - position.left,
                            position.bottom - position.top, parent, nullptr, instance, this);
  if (!window_) return false;
  font_ = GuiFont();
  Build();
  ShowTab(0);
  return true;
}

void OptionsPageView::Move(const RECT& position) {
  if (window_) {
    MoveWindow(window_, position.left, position.top, position.right - position.left,
               position.bottom - position.top, TRUE);
  }
}

LRESULT CALLBACK OptionsPageView::Proc(HWND window, UINT message, WPARAM w, LPARAM l) {
  if (message == WM_NCCREATE) {
    auto* create = reinterpret_cast<CREATESTRUCTW*>(l);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(create->lpCreateParams));
  }
  auto* self = reinterpret_cast<OptionsPageView*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (self && self->window_ == window) return self->Handle(message, w, l);
  return DefWindowProcW(window, message, w, l);
}

LRESULT OptionsPageView::Handle(UINT message, WPARAM w, LPARAM l) {
  switch (message) {
    case WM_COMMAND:
      OnCommand(LOWORD(w), HIWORD(w));
      return 0;
    case WM_NOTIFY: {
      auto* header = reinterpret_cast<NMHDR*>(l);
      if (header->hwndFrom == tabs_ && header->code == TCN_SELCHANGE) {
        ShowTab(static_cast<int>(SendMessageW(tabs_, TCM_GETCURSEL, 0, 0)));
      }
      return 0;
    }
    case WM_SIZE:
      if (tabs_) MoveWindow(tabs_, 4, 4, LOWORD(l) - 8, HIWORD(l) - 8, TRUE);
      return 0;
    case WM_DESTROY:
      window_ = nullptr;
      return 0;
    default:
      return DefWindowProcW(window_, message, w, l);
  }
}

HWND OptionsPageView::Add(int tab, const wchar_t* kind, const std::string& text, DWORD style, int x,
                          int y, int width, int height) {
  int id = kFirstId + static_cast<int>(children_.size());
  HWND control =
      CreateWindowExW(0, kind, Widen(text).c_str(), WS_CHILD | style, x, y, width, height, window_,
                      reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)), PageModule(), nullptr);
  if (font_) SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  children_.emplace_back(tab, control);
  return control;
}

void OptionsPageView::Build() {
  RECT client{};
  GetClientRect(window_, &client);
  tabs_ =
      CreateWindowExW(0, WC_TABCONTROLW, L"", WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS, 4, 4,
                      client.right - 8, client.bottom - 8, window_, nullptr, PageModule(), nullptr);
  if (font_) SendMessageW(tabs_, WM_SETFONT, reinterpret_cast<WPARAM>(font_), FALSE);
  const int32_t tab_labels[kPageTabCount] = {2700, 2701, 2702, 2703};
  for (int i = 0; i < kPageTabCount; ++i) {
    std::wstring label = Widen(Text(tab_labels[i]));
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = label.data();
    SendMessageW(tabs_, TCM_INSERTITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
  }
  const DWORD button = WS_TABSTOP | BS_PUSHBUTTON;
  const DWORD check = WS_TABSTOP | BS_AUTOCHECKBOX;
  const DWORD drop = WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST;
  const DWORD list = WS_TABSTOP | WS_BORDER | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT;
  const DWORD edit = WS_TABSTOP | WS_BORDER | ES_AUTOHSCROLL;
  int y[kPageTabCount] = {kTop, kTop, kTop, kTop};
  auto next = [&](PageTab tab, int height) {
    int& at = y[static_cast<int>(tab)];
    int top = at;
    at += height;
    return top;
  };

  // Folder sets.
  const int t0 = static_cast<int>(PageTab::kFolderSets);
  int top = next(PageTab::kFolderSets, 92);
  set_list_ = Add(t0, L"LISTBOX", "", list, kLeft, top, kWidth - 90, 84);
  set_add_ = Add(t0, L"BUTTON", Text(2710), button, kLeft + kWidth - 80, top, 80, 24);
  set_remove_ = Add(t0, L"BUTTON", Text(2711), button, kLeft + kWidth - 80, top + 30, 80, 24);
  locked_.insert(locked_.end(), {set_list_, set_add_, set_remove_});
  for (int r = 0; r < kSetRoleCount; ++r) {
    top = next(PageTab::kFolderSets, 28);
    Add(t0, L"STATIC", Text(kRoleLabels[r]), 0, kLeft, top + 3, 110, 18);
    set_combos_[r] = Add(t0, L"COMBOBOX", "", drop, kLeft + 112, top, kWidth - 112, 300);
    locked_.push_back(set_combos_[r]);
  }
  set_routed_ =
      Add(t0, L"BUTTON", Text(2137), check, kLeft, next(PageTab::kFolderSets, kRow), kWidth, 18);
  set_personal_ =
      Add(t0, L"BUTTON", Text(2139), check, kLeft, next(PageTab::kFolderSets, kRow), kWidth, 18);
  locked_.insert(locked_.end(), {set_routed_, set_personal_});

  // Monitoring.
  const int t1 = static_cast<int>(PageTab::kMonitoring);
  top = next(PageTab::kMonitoring, 28);
  Add(t1, L"STATIC", Text(2751), 0, kLeft, top + 3, 70, 18);
  method_ = Add(t1, L"COMBOBOX", "", drop, kLeft + 72, top, kWidth - 72, 200);
  for (const auto& m : kMethods)
    AddString(method_, CB_ADDSTRING, Text(m.label), m.value, CB_SETITEMDATA);
  locked_.push_back(method_);
  Add(t1, L"STATIC", Text(2750), 0, kLeft, next(PageTab::kMonitoring, 18), kWidth, 18);
  top = next(PageTab::kMonitoring, 62);
  monitored_list_ = Add(t1, L"LISTBOX", "", list, kLeft, top, kWidth - 90, 56);
  monitored_remove_ = Add(t1, L"BUTTON", Text(2711), button, kLeft + kWidth - 80, top, 80, 24);
  top = next(PageTab::kMonitoring, 28);
  monitored_pick_ = Add(t1, L"COMBOBOX", "", drop, kLeft, top, kWidth - 90, 300);
  monitored_add_ = Add(t1, L"BUTTON", Text(2710), button, kLeft + kWidth - 80, top, 80, 24);
  Add(t1, L"STATIC", Text(2714), 0, kLeft, next(PageTab::kMonitoring, 18), kWidth, 18);
  item_types_ = Add(t1, L"LISTBOX", "", list | LBS_MULTIPLESEL, kLeft,
                    next(PageTab::kMonitoring, 84), kWidth, 80);
  for (int id = kItemTypeFirst; id <= kItemTypeLast; ++id) {
    AddString(item_types_, LB_ADDSTRING, Text(id), 1 << (id - 134), LB_SETITEMDATA);
  }
  locked_.insert(locked_.end(), {monitored_list_, monitored_remove_, monitored_pick_,
                                 monitored_add_, item_types_});

  // Logging.
  categories_ = nullptr;
  for (const SwitchField& field : SwitchFields()) {
    HWND box = Add(static_cast<int>(field.tab), L"BUTTON", Text(field.label), check, kLeft,
                   next(field.tab, 19), kWidth, 18);
    switches_.push_back(box);
    if (!field.registry_only) locked_.push_back(box);
    if (field.member == &RegSettings::DontUseEnterpriseSettings) opt_out_ = box;
  }
  const int t2 = static_cast<int>(PageTab::kLogging);
  top = next(PageTab::kLogging, 24);
  Add(t2, L"STATIC", Text(2725), 0, kLeft, top + 3, 220, 18);
  categories_ = Add(t2, L"EDIT", "", edit, kLeft + 222, top, kWidth - 222, 20);
  locked_.push_back(categories_);
  for (const NumberField& field : NumberFields()) {
    top = next(field.tab, 24);
    Add(static_cast<int>(field.tab), L"STATIC", Text(field.label), 0, kLeft, top + 3, 260, 18);
    HWND box =
        Add(static_cast<int>(field.tab), L"EDIT", "", edit | ES_RIGHT, kLeft + 262, top, 80, 20);
    numbers_.push_back(box);
    if (field.small != &RegSettings::LogMaxSizeKB) locked_.push_back(box);
  }
  top = next(PageTab::kMonitoring, 46);
  scan_all_ = Add(t1, L"BUTTON", Text(2315), button | (callbacks_.scan_all ? 0 : WS_DISABLED),
                  kLeft, top + 4, 150, 24);
  Add(t1, L"STATIC", Text(2312), 0, kLeft + 158, top, kWidth - 158, 36);

  // Advanced: the error log.
  const int t3 = static_cast<int>(PageTab::kAdvanced);
  top = next(PageTab::kAdvanced, 26);
  Add(t3, L"STATIC", Text(2739), 0, kLeft, top + 3, 120, 18);
  log_level_ = Add(t3, L"COMBOBOX", "", drop, kLeft + 122, top, 200, 200);
  for (const auto& l : kLevels)
    AddString(log_level_, CB_ADDSTRING, Text(l.label), l.value, CB_SETITEMDATA);
  top = next(PageTab::kAdvanced, 26);
  Add(t3, L"STATIC", Text(2740), 0, kLeft, top + 3, 120, 18);
  log_path_ = Add(t3, L"EDIT", "", edit, kLeft + 122, top, kWidth - 122, 20);
  policy_note_ = Add(t3, L"STATIC", Text(2744), 0, kLeft, next(PageTab::kAdvanced, 20), kWidth, 18);
}

void OptionsPageView::ShowTab(int tab) {
  SendMessageW(tabs_, TCM_SETCURSEL, static_cast<WPARAM>(tab), 0);
  for (const auto& [owner, control] : children_) {
    ShowWindow(control, owner == tab ? SW_SHOWNA : SW_HIDE);
  }
}

void OptionsPageView::FillFolderCombo(HWND combo) const {
  SendMessageW(combo, CB_RESETCONTENT, 0, 0);
  AddString(combo, CB_ADDSTRING, Text(2712), -1, CB_SETITEMDATA);
  for (size_t i = 0; i < folders_.size(); ++i) {
    AddString(combo, CB_ADDSTRING, folders_[i].path, static_cast<LRESULT>(i), CB_SETITEMDATA);
  }
}

void OptionsPageView::Show(const RegSettings& settings) {
  filling_ = true;
  sets_ = ReadFolderSets(settings);
  monitored_ = ReadMonitoredFolders(settings);
  // Folders of the settings the profile does not have stay choosable as they are.
  auto keep = [this](const FolderRef& ref) {
    if (ref.empty()) return;
    for (const ProfileFolder& f : folders_) {
      if (f.ref.entry_id == ref.entry_id) return;
    }
    folders_.push_back({"[" + ref.entry_id + "]", ref});
  };
  for (const FolderSetRow& row : sets_) {
    for (const FolderRef& ref : row.folders) keep(ref);
  }
  for (const MonitoredRow& row : monitored_) keep(row.folder);
  for (HWND combo : set_combos_) FillFolderCombo(combo);
  FillFolderCombo(monitored_pick_);
  SendMessageW(monitored_pick_, CB_DELETESTRING, 0, 0);  // a monitored folder is a folder
  RefreshSetList();
  ShowSet(sets_.empty() ? -1 : 0);
  RefreshMonitoredList();
  ShowMonitored(monitored_.empty() ? -1 : 0);
  SelectComboData(method_, settings.MonitorMethod);

  size_t i = 0;
  for (const SwitchField& field : SwitchFields()) Check(switches_[i++], settings.*field.member);
  i = 0;
  for (const NumberField& field : NumberFields()) {
    SetWindowTextW(numbers_[i++], std::to_wstring(NumberOf(settings, field)).c_str());
  }
  SetWindowTextW(categories_, Widen(settings.TrackedContactCategories).c_str());
  SelectComboData(log_level_, settings.LogLevel);
  SetWindowTextW(log_path_, Widen(settings.LogPath).c_str());

  const bool fixed = settings.UsingEnterpriseSettings;
  for (HWND control : locked_) EnableWindow(control, !fixed);
  EnableWindow(opt_out_,
               !settings.EnterpriseSettingsPath().empty() && settings.AllowLocalOverride());
  SetWindowTextW(policy_note_, fixed ? Widen(Text(2744)).c_str() : L"");
  filling_ = false;
}

void OptionsPageView::RefreshSetList() {
  SendMessageW(set_list_, LB_RESETCONTENT, 0, 0);
  for (const FolderSetRow& row : sets_) {
    std::string path = PathOf(folders_, row[SetRole::kContact]);
    AddString(set_list_, LB_ADDSTRING, path.empty() ? Text(2712) : path, 0, LB_SETITEMDATA);
  }
  if (current_set_ >= 0)
    SendMessageW(set_list_, LB_SETCURSEL, static_cast<WPARAM>(current_set_), 0);
}

void OptionsPageView::RefreshMonitoredList() {
  SendMessageW(monitored_list_, LB_RESETCONTENT, 0, 0);
  for (const MonitoredRow& row : monitored_) {
    AddString(monitored_list_, LB_ADDSTRING, PathOf(folders_, row.folder), 0, LB_SETITEMDATA);
  }
  if (current_monitored_ >= 0) {
    SendMessageW(monitored_list_, LB_SETCURSEL, static_cast<WPARAM>(current_monitored_), 0);
  }
}

void OptionsPageView::ShowSet(int index) {
  current_set_ = index;
  bool had = filling_;
  filling_ = true;
  SendMessageW(set_list_, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  for (int r = 0; r < kSetRoleCount; ++r) {
    LRESULT data = -1;
    if (index >= 0) {
      const FolderRef& ref = sets_[static_cast<size_t>(index)].folders[static_cast<size_t>(r)];
      for (size_t i = 0; i < folders_.size(); ++i) {
        if (!ref.empty() && folders_[i].ref.entry_id == ref.entry_id)
          data = static_cast<LRESULT>(i);
      }
    }
    SelectComboData(set_combos_[r], data);
    EnableWindow(set_combos_[r], index >= 0 && IsWindowEnabled(set_list_));
  }
  int32_t flags = index >= 0 ? sets_[static_cast<size_t>(index)].flags : 0;
  Check(set_routed_, (flags & kFlagLogRoutedItems) != 0);
  Check(set_personal_, (flags & kFlagLeavePersonalCopy) != 0);
  filling_ = had;
}

void OptionsPageView::ShowMonitored(int index) {
  current_monitored_ = index;
  bool had = filling_;
  filling_ = true;
  SendMessageW(monitored_list_, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
  int32_t mask = index >= 0 ? monitored_[static_cast<size_t>(index)].item_types : 0;
  for (int i = 0; i <= kItemTypeLast - kItemTypeFirst; ++i) {
    LRESULT bit = SendMessageW(item_types_, LB_GETITEMDATA, static_cast<WPARAM>(i), 0);
    SendMessageW(item_types_, LB_SETSEL, (mask & bit) != 0, i);
  }
  EnableWindow(item_types_, index >= 0 && IsWindowEnabled(monitored_list_));
  filling_ = had;
}

void OptionsPageView::OnCommand(int id, int code) {
  size_t at = static_cast<size_t>(id - kFirstId);
  if (id < kFirstId || at >= children_.size()) return;
  HWND control = children_[at].second;
  bool edited = false;
  if (control == set_list_ && code == LBN_SELCHANGE) {
    ShowSet(static_cast<int>(SendMessageW(set_list_, LB_GETCURSEL, 0, 0)));
  } else if (control == set_add_ && code == BN_CLICKED) {
    sets_.emplace_back();
    current_set_ = static_cast<int>(sets_.size()) - 1;
    RefreshSetList();
    ShowSet(current_set_);
    edited = true;
  } else if (control == set_remove_ && code == BN_CLICKED && current_set_ >= 0) {
    sets_.erase(sets_.begin() + current_set_);
    current_set_ = sets_.empty() ? -1 : 0;
    RefreshSetList();
    ShowSet(current_set_);
    edited = true;
  } else if (code == CBN_SELCHANGE && current_set_ >= 0 &&
             (control == set_combos_[0] || control == set_combos_[1] || control == set_combos_[2] ||
              control == set_combos_[3] || control == set_combos_[4] ||
              control == set_combos_[5])) {
    for (int r = 0; r < kSetRoleCount; ++r) {
      if (set_combos_[r] != control) continue;
      LRESULT data = ComboData(control);
      sets_[static_cast<size_t>(current_set_)].folders[static_cast<size_t>(r)] =
          data >= 0 ? folders_[static_cast<size_t>(data)].ref : FolderRef{};
    }
    RefreshSetList();
    edited = true;
  } else if ((control == set_routed_ || control == set_personal_) && code == BN_CLICKED) {
    if (current_set_ >= 0) {
      int32_t& flags = sets_[static_cast<size_t>(current_set_)].flags;
      flags = (Checked(set_routed_) ? kFlagLogRoutedItems : 0) |
              (Checked(set_personal_) ? kFlagLeavePersonalCopy : 0) |
              (flags & ~(kFlagLogRoutedItems | kFlagLeavePersonalCopy));
    }
    edited = true;
  } else if (control == monitored_list_ && code == LBN_SELCHANGE) {
    ShowMonitored(static_cast<int>(SendMessageW(monitored_list_, LB_GETCURSEL, 0, 0)));
  } else if (control == monitored_add_ && code == BN_CLICKED) {
    LRESULT data = ComboData(monitored_pick_);
    if (data >= 0) {
      // A new monitored folder logs mail until the user says otherwise.
      monitored_.push_back({folders_[static_cast<size_t>(data)].ref, 64});
      current_monitored_ = static_cast<int>(monitored_.size()) - 1;
      RefreshMonitoredList();
      ShowMonitored(current_monitored_);
      edited = true;
    }
  } else if (control == monitored_remove_ && code == BN_CLICKED && current_monitored_ >= 0) {
    monitored_.erase(monitored_.begin() + current_monitored_);
    current_monitored_ = monitored_.empty() ? -1 : 0;
    RefreshMonitoredList();
    ShowMonitored(current_monitored_);
    edited = true;
  } else if (control == item_types_ && code == LBN_SELCHANGE && current_monitored_ >= 0) {
    int32_t mask = 0;
    for (int i = 0; i <= kItemTypeLast - kItemTypeFirst; ++i) {
      if (SendMessageW(item_types_, LB_GETSEL, static_cast<WPARAM>(i), 0) > 0) {
        mask |= static_cast<int32_t>(
            SendMessageW(item_types_, LB_GETITEMDATA, static_cast<WPARAM>(i), 0));
      }
    }
    monitored_[static_cast<size_t>(current_monitored_)].item_types = mask;
    edited = true;
  } else if (control == scan_all_ && code == BN_CLICKED) {
    if (callbacks_.scan_all) callbacks_.scan_all();
  } else if (code == BN_CLICKED || code == EN_CHANGE || code == CBN_SELCHANGE) {
    edited = control != monitored_pick_;
  }
  if (edited && !filling_ && callbacks_.edited) callbacks_.edited();
}

std::optional<std::string> OptionsPageView::Collect(
    RegSettings& settings, const std::function<bool(const std::string&)>& confirm) {
  size_t i = 0;
  for (const NumberField& field : NumberFields()) {
    HWND box = numbers_[i++];
    std::optional<int32_t> value = ParseWholeNumber(Narrow(WindowText(box)), field.min, field.max);
    if (!value) {
      SetFocus(box);
      if (field.small == &RegSettings::GetRowChunkSize) return Text(2450);
      return StringTable::Substitute(
          Text(2745),
          {FieldName(Text(field.label)), std::to_string(field.min), std::to_string(field.max)});
    }
    if (field.small == &RegSettings::GetRowChunkSize && *value > 100 &&
        *value != settings.GetRowChunkSize && confirm && !confirm(Text(2451))) {
      SetFocus(box);
      return std::string();  // the user chose to change the entry
    }
    SetNumber(settings, field, *value);
  }
  std::string log_path = Narrow(WindowText(log_path_));
  while (log_path.size() > 3 && (log_path.back() == '\\' || log_path.back() == '/'))
    log_path.pop_back();
  DWORD attributes = GetFileAttributesW(Widen(log_path).c_str());
  if (log_path.empty() || attributes == INVALID_FILE_ATTRIBUTES ||
      !(attributes & FILE_ATTRIBUTE_DIRECTORY)) {
    SetFocus(log_path_);
    return StringTable::Substitute(Text(2746), {log_path});
  }
  for (size_t s = 0; s < sets_.size(); ++s) {
    if (sets_[s][SetRole::kContact].empty()) {
      ShowSet(static_cast<int>(s));
      return StringTable::Substitute(Text(2747), {std::to_string(s + 1)});
    }
  }
  int32_t method = static_cast<int32_t>(ComboData(method_));
  if (method == 3) {
    for (size_t m = 0; m < monitored_.size(); ++m) {
      if (monitored_[m].item_types == 0) {
        ShowMonitored(static_cast<int>(m));
        return StringTable::Substitute(Text(2752), {PathOf(folders_, monitored_[m].folder)});
      }
    }
  }
  i = 0;
  for (const SwitchField& field : SwitchFields()) settings.*field.member = Checked(switches_[i++]);
  settings.LogPath = log_path;
  settings.LogLevel = static_cast<int32_t>(ComboData(log_level_));
  if (!settings.UsingEnterpriseSettings) {
    // Values the enterprise file fixes are left as they were read.
    settings.MonitorMethod = method < 0 ? 0 : method;
    settings.TrackedContactCategories = Narrow(WindowText(categories_));
    WriteFolderSets(sets_, settings);
    WriteMonitoredFolders(monitored_, settings);
  }
  return std::nullopt;
}

bool OptionsPageView::TranslateDialogMessage(MSG* message) {
  return window_ && IsChild(window_, message->hwnd) && IsDialogMessageW(window_, message);
}

}  // namespace zintra::win32

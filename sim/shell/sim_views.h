// The simulated forms' windows: they keep what the system showed in them (captions,
// rows, progress, menu items, visibility) and let a test act as the user (click a
// button, send an icon message, pick a menu item).
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "src/host/popup_menu.h"
#include "src/host/task_list_view.h"
#include "src/host/tray_view.h"
#include "src/host/window.h"

namespace zintra::sim {

class SimFormView : public FormView {
 public:
  explicit SimFormView(WindowHandle hwnd) : hwnd_(hwnd) {}
  WindowHandle hWnd() const override { return hwnd_; }
  bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override;
  void SetCaption(const std::string& caption) override { caption_ = caption; }

  const std::string& caption() const { return caption_; }
  // Every change of visibility, in order (true = shown).
  const std::vector<bool>& visibility_changes() const { return visibility_changes_; }

 private:
  WindowHandle hwnd_;
  bool visible_ = false;
  std::string caption_;
  std::vector<bool> visibility_changes_;
};

class SimTaskListView : public TaskListView {
 public:
  struct Row {
    std::string key;
    std::string description;
    int32_t icon = 0;
    int32_t percent = 0;
  };

  explicit SimTaskListView(WindowHandle hwnd) : form_(hwnd) {}
  WindowHandle hWnd() const override { return form_.hWnd(); }
  bool Visible() const override { return form_.Visible(); }
  void SetVisible(bool visible) override { form_.SetVisible(visible); }
  void SetCaption(const std::string& caption) override { form_.SetCaption(caption); }
  void SetAbortCaption(const std::string& caption) override { abort_caption_ = caption; }
  void AddRow(const std::string& key, const std::string& description, int32_t icon) override;
  void SetRowProgress(const std::string& key, int32_t percent) override;
  void RemoveRow(const std::string& key) override;
  int32_t ProgressMax() const override { return progress_max_; }
  void SetProgress(int32_t value) override { progress_ = value; }

  // The user's clicks.
  void ClickAbort() { AbortClick.Raise(); }
  void ClickMinimize() { MinimizeClick.Raise(); }

  const std::string& caption() const { return form_.caption(); }
  const std::string& abort_caption() const { return abort_caption_; }
  const std::vector<Row>& rows() const { return rows_; }
  const Row* FindRow(const std::string& key) const;
  int32_t progress() const { return progress_; }
  void set_progress_max(int32_t max) { progress_max_ = max; }
  const std::vector<bool>& visibility_changes() const { return form_.visibility_changes(); }

 private:
  SimFormView form_;
  std::string abort_caption_;
  std::vector<Row> rows_;
  int32_t progress_ = 0;
  int32_t progress_max_ = 100;
};

class SimPopupMenu : public PopupMenu {
 public:
  struct Item {
    std::string caption;
    bool visible = false;
    bool enabled = true;
  };

  SimPopupMenu() { items_[0] = Item{}; }
  void LoadItem(int32_t index) override;
  void UnloadItem(int32_t index) override;
  void SetCaption(int32_t index, const std::string& caption) override;
  void SetVisible(int32_t index, bool visible) override;
  void SetEnabled(int32_t index, bool enabled) override;
  void Popup(int32_t default_index) override;

  // The item the user will pick at the next Popup (none: the menu is dismissed).
  void ChooseOnPopup(int32_t index) { choice_ = index; }
  // Picks an item while no menu is up, as a click on it would.
  void Choose(int32_t index) { Click.Raise(index); }

  const std::map<int32_t, Item>& items() const { return items_; }
  const Item& item(int32_t index) const;
  // The default index of every Popup so far.
  const std::vector<int32_t>& popups() const { return popups_; }

 private:
  Item& At(int32_t index);

  std::map<int32_t, Item> items_;
  std::optional<int32_t> choice_;
  std::vector<int32_t> popups_;
};

class SimTrayView : public TrayView {
 public:
  SimTrayView(WindowHandle hwnd, int32_t icon) : hwnd_(hwnd), icon_(icon) {}
  WindowHandle hWnd() const override { return hwnd_; }
  float ScaleXPerPixel() const override { return scale_; }
  int32_t IconHandle() const override { return icon_; }
  PopupMenu& Menu() override { return menu_; }

  // The shell delivering an icon message, as a mouse move at X = message pixels.
  void SendIconMessage(uint32_t message) { MouseMove.Raise(static_cast<float>(message) * scale_); }
  void set_scale(float scale) { scale_ = scale; }
  SimPopupMenu& menu() { return menu_; }

 private:
  WindowHandle hwnd_;
  int32_t icon_;
  float scale_ = 15.0f;  // twips per pixel at 96 dpi
  SimPopupMenu menu_;
};

}  // namespace zintra::sim

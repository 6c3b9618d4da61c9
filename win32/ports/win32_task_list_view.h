// Win32TaskListView: the "finishing tasks" window. Each row shows its description and a
// bar of its progress (drawn by the window itself); below them an overall progress bar
// (comctl32's), the abort button and a minimise button. The window grows and shrinks
// with its rows. Created hidden; destroyed with the object. A second row with a key in
// use throws ZError 35602 (key is not unique), as the list control did.
#pragma once

#include <string>
#include <vector>

#include "src/host/task_list_view.h"
#include "win32/ports/message_window.h"

namespace zintra::win32 {

class Win32TaskListView : public TaskListView {
 public:
  static constexpr int32_t kProgressMax = 100;

  Win32TaskListView();

  WindowHandle hWnd() const override;
  bool Visible() const override;
  void SetVisible(bool visible) override;
  void SetCaption(const std::string& caption) override;
  void SetAbortCaption(const std::string& caption) override;
  void AddRow(const std::string& key, const std::string& description, int32_t icon_index) override;
  void SetRowProgress(const std::string& key, int32_t percent) override;
  void RemoveRow(const std::string& key) override;
  int32_t ProgressMax() const override { return kProgressMax; }
  void SetProgress(int32_t value) override;

  struct Row {
    std::string key;
    std::string description;
    int32_t icon_index = 0;
    int32_t percent = 0;
  };
  const std::vector<Row>& Rows() const { return rows_; }
  int32_t Progress() const;
  // The window's buttons, for the user (and tests) to press.
  HWND AbortButton() const { return abort_; }
  HWND MinimizeButton() const { return minimize_; }

 private:
  bool OnMessage(UINT message, WPARAM wparam, LPARAM lparam, LRESULT* result);
  void Layout();
  void Paint();
  Row* Find(const std::string& key);

  std::vector<Row> rows_;
  MessageWindow window_;
  HWND progress_ = nullptr;
  HWND abort_ = nullptr;
  HWND minimize_ = nullptr;
};

}  // namespace zintra::win32

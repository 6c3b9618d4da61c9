// PageContainer: plays the Options dialog of Outlook for one property page control. A
// top-level window with an OLE site that answers IOleClientSite, IOleInPlaceSite and
// Outlook's PropertyPageSite (late-bound: Session, Application, Parent, Class, and
// OnStatusChange, which it counts). Host() activates the control in place in the
// window; the helpers find the page's child controls by their labels and work them as a
// user would, and Snapshot() writes what the window shows to a 24-bit BMP file.
#pragma once

#include <string>
#include <vector>

#include "win32/com/com_ptr.h"
#include "win32/com/windows_api.h"

namespace zintra::win32 {

class PageSite;

class PageContainer {
 public:
  // `session` is what the page site's Session answers (may be empty).
  explicit PageContainer(ComPtr<IDispatch> session);
  ~PageContainer();
  PageContainer(const PageContainer&) = delete;
  PageContainer& operator=(const PageContainer&) = delete;

  HWND Window() const { return window_; }
  // SetClientSite, then DoVerb(OLEIVERB_INPLACEACTIVATE) in the window.
  HRESULT Host(const ComPtr<IDispatch>& control);
  // InPlaceDeactivate, Close and SetClientSite(nullptr), as the dialog does on closing.
  void Close();
  int StatusChanges() const;

  // The page's child windows in creation order.
  std::vector<HWND> Children() const;
  // The control after the label with this text (a combo box or edit box; `skip` more
  // further on), or the control with this text (a button); nullptr when there is none.
  HWND After(const std::string& label, size_t skip = 0) const;
  HWND Named(const std::string& text) const;
  void Click(HWND button) const;
  // Selects the item whose text ends with `tail`; false when none does.
  bool Choose(HWND combo, const std::string& tail) const;
  // Selects exactly the items of a multiple-selection list box with these texts.
  void Select(HWND list, const std::vector<std::string>& items) const;
  void Type(HWND edit, const std::string& text) const;
  void ShowTab(int index) const;
  static std::string TextOf(HWND window);

  bool Snapshot(const std::string& bmp_path) const;
  static void Pump(int ms);

 private:
  HWND window_ = nullptr;
  PageSite* site_ = nullptr;
  ComPtr<IOleObject> control_;
};

// Answers the next message box of this thread with `answer` (IDOK, IDCANCEL) and keeps
// its text; while it lives, every box is answered so a test never blocks on one.
class MessageBoxAnswerer {
 public:
  explicit MessageBoxAnswerer(int answer);
  ~MessageBoxAnswerer();
  const std::vector<std::string>& Texts() const;
};

}  // namespace zintra::win32

#include "tests/win32/controls/page_container.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdio>

#include "win32/com/unicode.h"
#include "win32/sim_server/outlook_declarations.h"

namespace zintra::win32 {
namespace {

constexpr wchar_t kClass[] = L"ZintraTestOptionsDialog";
constexpr RECT kPagePosition{0, 0, 460, 440};

// PropertyPageSite's members, as Outlook's type library numbers them.
namespace site = declared::property_page_site;
constexpr DISPID kApplication = site::kApplication, kParent = site::kParent, kClass_ = site::kClass,
                 kSession = site::kSession, kOnStatusChange = site::kOnStatusChange;
constexpr IID kIidPropertyPageSite = site::kIid;

}  // namespace

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
class PageSite final : public IOleClientSite, public IOleInPlaceSite, public IDispatch {
 public:
  PageSite(HWND window, ComPtr<IDispatch> session)
      : window_(window), session_(std::move(session)) {}
  int status_changes = 0;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (iid == IID_IUnknown || iid == IID_IOleClientSite) {
      *out = static_cast<IOleClientSite*>(this);
    } else if (iid == IID_IOleInPlaceSite || iid == IID_IOleWindow) {
      *out = static_cast<IOleInPlaceSite*>(this);
    } else if (iid == IID_IDispatch || iid == kIidPropertyPageSite) {
      *out = static_cast<IDispatch*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++refs_); }
  ULONG STDMETHODCALLTYPE Release() override {
    LONG left = --refs_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  // IOleClientSite
  HRESULT STDMETHODCALLTYPE SaveObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetMoniker(DWORD, DWORD, IMoniker**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetContainer(IOleContainer** c) override {
    if (c) *c = nullptr;
    return E_NOINTERFACE;
  }
  HRESULT STDMETHODCALLTYPE ShowObject() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnShowWindow(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE RequestNewObjectLayout() override { return E_NOTIMPL; }
  // IOleWindow, IOleInPlaceSite
  HRESULT STDMETHODCALLTYPE GetWindow(HWND* window) override {
    *window = window_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE ContextSensitiveHelp(BOOL) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE CanInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnUIActivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE GetWindowContext(IOleInPlaceFrame** frame, IOleInPlaceUIWindow** doc,
                                             LPRECT pos, LPRECT clip,
                                             LPOLEINPLACEFRAMEINFO) override {
    if (frame) *frame = nullptr;
    if (doc) *doc = nullptr;
    *pos = kPagePosition;
    *clip = kPagePosition;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Scroll(SIZE) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE OnUIDeactivate(BOOL) override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnInPlaceDeactivate() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DiscardUndoState() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE DeactivateAndUndo() override { return S_OK; }
  HRESULT STDMETHODCALLTYPE OnPosRectChange(LPCRECT) override { return S_OK; }
  // IDispatch: PropertyPageSite
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* n) override {
    *n = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID,
                                          DISPID* ids) override {
    static const struct {
      const wchar_t* name;
      DISPID id;
    } kMembers[] = {{L"Application", kApplication},
                    {L"Parent", kParent},
                    {L"Class", kClass_},
                    {L"Session", kSession},
                    {L"OnStatusChange", kOnStatusChange}};
    for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
    for (const auto& m : kMembers) {
      if (_wcsicmp(m.name, names[0]) == 0) ids[0] = m.id;
    }
    return ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS*, VARIANT* result,
                                   EXCEPINFO*, UINT*) override {
    if (result) VariantInit(result);
    switch (id) {
      case kOnStatusChange:
        ++status_changes;
        return S_OK;
      case kSession:
        if (result && session_) {
          result->vt = VT_DISPATCH;
          result->pdispVal = session_.Get();
          session_->AddRef();
        }
        return S_OK;
      case kClass_:
        if (result) {
          result->vt = VT_I4;
          result->lVal = 105;  // olPropertyPageSite
        }
        return S_OK;
      case kApplication:
      case kParent:
        return S_OK;  // Nothing: the page must not need them
      default:
        return DISP_E_MEMBERNOTFOUND;
    }
  }

 private:
  LONG refs_ = 1;
  HWND window_;
  ComPtr<IDispatch> session_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

PageContainer::PageContainer(ComPtr<IDispatch> session) {
  WNDCLASSEXW cls{};
  cls.cbSize = sizeof(cls);
  cls.lpfnWndProc = DefWindowProcW;
  cls.hInstance = GetModuleHandleW(nullptr);
  cls.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
  cls.lpszClassName = kClass;
  RegisterClassExW(&cls);
  RECT frame = kPagePosition;
  AdjustWindowRect(&frame, WS_OVERLAPPED | WS_CAPTION, FALSE);
  window_ = CreateWindowExW(WS_EX_CONTROLPARENT, kClass, L"Options",
                            WS_OVERLAPPED | WS_CAPTION | WS_VISIBLE, 20, 20,
                            frame.right - frame.left, frame.bottom - frame.top, nullptr, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
  site_ = new PageSite(window_, std::move(session));
}

PageContainer::~PageContainer() {
  Close();
  site_->Release();
  if (window_) DestroyWindow(window_);
}

HRESULT PageContainer::Host(const ComPtr<IDispatch>& control) {
  control_ = control.As<IOleObject>();
  if (!control_) return E_NOINTERFACE;
  HRESULT hr = control_->SetClientSite(static_cast<IOleClientSite*>(site_));
  if (FAILED(hr)) return hr;
  RECT position = kPagePosition;
  hr = control_->DoVerb(OLEIVERB_INPLACEACTIVATE, nullptr, static_cast<IOleClientSite*>(site_), 0,
                        window_, &position);
  Pump(50);
  return hr;
}

void PageContainer::Close() {
  if (!control_) return;
  if (auto in_place = control_.As<IOleInPlaceObject>()) in_place->InPlaceDeactivate();
  control_->Close(OLECLOSE_NOSAVE);
  control_->SetClientSite(nullptr);
  control_ = ComPtr<IOleObject>();
}

int PageContainer::StatusChanges() const { return site_->status_changes; }

std::vector<HWND> PageContainer::Children() const {
  std::vector<HWND> out;
  EnumChildWindows(
      window_,
      [](HWND child, LPARAM list) -> BOOL {
        reinterpret_cast<std::vector<HWND>*>(list)->push_back(child);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&out));
  return out;
}

std::string PageContainer::TextOf(HWND window) {
  wchar_t text[512] = {};
  GetWindowTextW(window, text, 512);
  return Narrow(text);
}

HWND PageContainer::After(const std::string& label, size_t skip) const {
  std::vector<HWND> children = Children();
  for (size_t i = 0; i + 1 + skip < children.size(); ++i) {
    if (TextOf(children[i]) == label) return children[i + 1 + skip];
  }
  return nullptr;
}

void PageContainer::Select(HWND list, const std::vector<std::string>& items) const {
  LRESULT count = SendMessageW(list, LB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    wchar_t text[512] = {};
    if (SendMessageW(list, LB_GETTEXTLEN, static_cast<WPARAM>(i), 0) >= 511) continue;
    SendMessageW(list, LB_GETTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    bool wanted = std::find(items.begin(), items.end(), Narrow(text)) != items.end();
    SendMessageW(list, LB_SETSEL, wanted, i);
  }
  SendMessageW(GetParent(list), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(list), LBN_SELCHANGE),
               reinterpret_cast<LPARAM>(list));
}

HWND PageContainer::Named(const std::string& text) const {
  for (HWND child : Children()) {
    if (TextOf(child) == text) return child;
  }
  return nullptr;
}

void PageContainer::Click(HWND button) const {
  SendMessageW(button, BM_CLICK, 0, 0);
  Pump(10);
}

bool PageContainer::Choose(HWND combo, const std::string& tail) const {
  LRESULT count = SendMessageW(combo, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    wchar_t text[512] = {};
    if (SendMessageW(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(i), 0) >= 511) continue;
    SendMessageW(combo, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(text));
    std::string item = Narrow(text);
    if (item.size() >= tail.size() &&
        item.compare(item.size() - tail.size(), tail.size(), tail) == 0) {
      SendMessageW(combo, CB_SETCURSEL, static_cast<WPARAM>(i), 0);
      SendMessageW(GetParent(combo), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(combo), CBN_SELCHANGE),
                   reinterpret_cast<LPARAM>(combo));
      return true;
    }
  }
  return false;
}

void PageContainer::Type(HWND edit, const std::string& text) const {
  SetWindowTextW(edit, Widen(text).c_str());
  SendMessageW(GetParent(edit), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(edit), EN_CHANGE),
               reinterpret_cast<LPARAM>(edit));
}

void PageContainer::ShowTab(int index) const {
  for (HWND child : Children()) {
    wchar_t cls[64] = {};
    GetClassNameW(child, cls, 64);
    if (_wcsicmp(cls, WC_TABCONTROLW) != 0) continue;
    SendMessageW(child, TCM_SETCURSEL, static_cast<WPARAM>(index), 0);
    NMHDR header{child, static_cast<UINT_PTR>(GetDlgCtrlID(child)),
                 static_cast<UINT>(TCN_SELCHANGE)};
    SendMessageW(GetParent(child), WM_NOTIFY, header.idFrom, reinterpret_cast<LPARAM>(&header));
  }
  Pump(50);
}

void PageContainer::Pump(int ms) {
  DWORD until = GetTickCount() + static_cast<DWORD>(ms);
  do {
    MSG msg;
    while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&msg);
      DispatchMessageW(&msg);
    }
    Sleep(5);
  } while (static_cast<LONG>(until - GetTickCount()) > 0);
}

bool PageContainer::Snapshot(const std::string& bmp_path) const {
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
  Pump(200);
  RECT rect{};
  GetWindowRect(window_, &rect);
  const int width = rect.right - rect.left, height = rect.bottom - rect.top;
  HDC screen = GetDC(nullptr);
  HDC memory = CreateCompatibleDC(screen);
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;  // bottom-up, as BMP files store rows
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
  void* bits = nullptr;
  HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  HGDIOBJ old = SelectObject(memory, bitmap);
  BOOL copied = BitBlt(memory, 0, 0, width, height, screen, rect.left, rect.top, SRCCOPY);
  GdiFlush();
  const DWORD row = static_cast<DWORD>((width * 3 + 3) & ~3);
  const DWORD image = row * static_cast<DWORD>(height);
  BITMAPFILEHEADER file{};
  file.bfType = 0x4D42;
  file.bfOffBits = sizeof(BITMAPFILEHEADER) + sizeof(BITMAPINFOHEADER);
  file.bfSize = file.bfOffBits + image;
  bool written = false;
  if (copied && bits) {
    if (FILE* out = _wfopen(Widen(bmp_path).c_str(), L"wb")) {
      written = fwrite(&file, sizeof(file), 1, out) == 1 &&
                fwrite(&info.bmiHeader, sizeof(info.bmiHeader), 1, out) == 1 &&
                fwrite(bits, image, 1, out) == 1;
      fclose(out);
    }
  }
  SelectObject(memory, old);
  DeleteObject(bitmap);
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return written;
}

namespace {

int g_answer = IDOK;
std::vector<std::string> g_texts;
UINT_PTR g_timer = 0;

BOOL CALLBACK AnswerBox(HWND window, LPARAM) {
  wchar_t cls[16] = {};
  GetClassNameW(window, cls, 16);
  if (wcscmp(cls, L"#32770") != 0 || !IsWindowVisible(window)) return TRUE;
  // The text's control is 0xFFFF on Windows, 100 in Wine's message box.
  std::string text = PageContainer::TextOf(GetDlgItem(window, 0xFFFF));
  if (text.empty()) text = PageContainer::TextOf(GetDlgItem(window, 100));
  g_texts.push_back(text);
  PostMessageW(window, WM_COMMAND, MAKEWPARAM(g_answer, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(window, g_answer)));
  return FALSE;
}

void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
  EnumThreadWindows(GetCurrentThreadId(), AnswerBox, 0);
}

}  // namespace

MessageBoxAnswerer::MessageBoxAnswerer(int answer) {
  g_answer = answer;
  g_texts.clear();
  g_timer = SetTimer(nullptr, 0, 50, Tick);
}

MessageBoxAnswerer::~MessageBoxAnswerer() { KillTimer(nullptr, g_timer); }

const std::vector<std::string>& MessageBoxAnswerer::Texts() const { return g_texts; }

}  // namespace zintra::win32

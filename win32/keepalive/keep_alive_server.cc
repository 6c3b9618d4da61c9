#include "win32/keepalive/keep_alive_server.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "win32/keepalive/keep_alive_ids.h"

namespace zintra::win32 {

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
// The class object COM hands the activating client. It lives on the server's stack for
// the whole run, so its reference count only answers COM's bookkeeping.
class KeepAliveServer::Factory final : public IClassFactory {
 public:
  explicit Factory(KeepAliveServer& server) : server_(server) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IClassFactory)) {
      *out = static_cast<IClassFactory*>(this);
      return S_OK;
    }
    *out = nullptr;
    return E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    if (!out) return E_POINTER;
    *out = nullptr;
    if (outer) return CLASS_E_NOAGGREGATION;
    return server_.CreateObject(iid, out);
  }
  STDMETHODIMP LockServer(BOOL lock) override {
    server_.locks_ += lock ? 1 : -1;
    if (!lock && server_.locks_ == 0 && server_.created_ && !server_.object_) {
      server_.End(Ending::kReleased);
    }
    return S_OK;
  }

 private:
  KeepAliveServer& server_;
};
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

namespace {
constexpr UINT_PTR kNoTimer = 0;
constexpr UINT kWatchdogGraceMs = 5000;
}  // namespace

bool KeepAliveServer::MeansServerGone(HRESULT hr) {
  switch (hr) {
    case RPC_E_DISCONNECTED:
    case RPC_E_SERVER_DIED:
    case RPC_E_SERVER_DIED_DNE:
    case CO_E_OBJNOTCONNECTED:
    case HRESULT_FROM_WIN32(RPC_S_SERVER_UNAVAILABLE):
    case HRESULT_FROM_WIN32(RPC_S_CALL_FAILED):
    case HRESULT_FROM_WIN32(RPC_S_CALL_FAILED_DNE):
      return true;
    default:
      return false;
  }
}

HRESULT KeepAliveServer::CreateObject(REFIID iid, void** out) {
  if (object_ || ended_) return CO_E_SERVER_STOPPING;  // one object per process
  auto* object = new KeepAliveObject([this] { held_ = true; }, [this] { ObjectReleased(); });
  object_ = object;
  created_ = true;
  HRESULT hr = object->QueryInterface(iid, out);
  object->Release();  // the caller's reference, if any, is the one left
  return hr;
}

void KeepAliveServer::ObjectReleased() {
  object_ = nullptr;
  if (locks_ == 0) End(Ending::kReleased);
}

void KeepAliveServer::Watch() {
  if (!object_ || !object_->Holding()) return;
  // A round trip to Outlook's apartment: a busy Outlook only makes it wait, a dead one
  // answers that the server is gone.
  // Our own reference: the add-in may release the object while the call waits.
  ComPtr<IDispatch> outlook = object_->Outlook();
  UINT count = 0;
  HRESULT hr = outlook->GetTypeInfoCount(&count);
  if (MeansServerGone(hr)) {
    if (object_) object_->LetGo();
    End(Ending::kOutlookEnded);
  }
}

void KeepAliveServer::End(Ending ending) {
  if (ended_) return;
  ended_ = true;
  ending_ = ending;
  PostQuitMessage(0);
}

KeepAliveServer::Ending KeepAliveServer::Run() {
  Factory factory(*this);
  DWORD cookie = 0;
  HRESULT hr = CoRegisterClassObject(kClsidKeepAlive, &factory, CLSCTX_LOCAL_SERVER,
                                     REGCLS_SINGLEUSE, &cookie);
  if (FAILED(hr)) return Ending::kFailed;
  // The idle limit holds even when this thread is stuck in a call that never returns
  // (a system service that does not answer): a process that never came to hold Outlook
  // ends a little after the limit, from a thread of its own.
  std::mutex mutex;
  std::condition_variable stopped;
  bool running = true;
  std::thread watchdog([&] {
    std::unique_lock lock(mutex);
    const auto limit = std::chrono::milliseconds(timing_.idle_limit_ms + kWatchdogGraceMs);
    if (!stopped.wait_for(lock, limit, [&] { return !running; }) && !held_) ExitProcess(0);
  });
  UINT_PTR watch = SetTimer(nullptr, kNoTimer, timing_.watch_interval_ms, nullptr);
  UINT_PTR idle = SetTimer(nullptr, kNoTimer, timing_.idle_limit_ms, nullptr);
  MSG msg;
  while (GetMessageW(&msg, nullptr, 0, 0) > 0) {
    if (msg.hwnd == nullptr && msg.message == WM_TIMER) {
      if (msg.wParam == watch) {
        Watch();
      } else if (msg.wParam == idle) {
        KillTimer(nullptr, idle);
        idle = kNoTimer;
        if (!object_ || !object_->Holding()) End(Ending::kIdle);
      }
      continue;
    }
    TranslateMessage(&msg);
    DispatchMessageW(&msg);
  }
  {
    std::lock_guard lock(mutex);
    running = false;
  }
  stopped.notify_all();
  watchdog.join();
  if (watch != kNoTimer) KillTimer(nullptr, watch);
  if (idle != kNoTimer) KillTimer(nullptr, idle);
  CoRevokeClassObject(cookie);
  // A caller that is gone (Outlook ended) still owns the object: cut it off, so that
  // COM's clean-up does not wait on it.
  if (object_) {
    object_->LetGo();
    CoDisconnectObject(object_, 0);
  }
  return ending_;
}

}  // namespace zintra::win32

// KeepAliveServer: the keep-alive process as COM starts it ("-Embedding"). It offers
// its class for one activation (REGCLS_SINGLEUSE: each Outlook that needs holding gets
// a process of its own, watching only that Outlook), serves the one KeepAliveObject, and
// ends by itself:
//   - when the object's last reference is released (the add-in's shut-down is done);
//   - when the Outlook it holds has ended (abruptly, or killed): every watch tick pings
//     the Application and a reply that the server is gone ends the process, so it never
//     outlives Outlook;
//   - when nothing has started holding Outlook within the idle limit of its start (the
//     caller died, or never called Initialize), even if its thread is stuck in a call.
// One thread, a single-threaded apartment; COM's calls arrive through its message loop.
#pragma once

#include <atomic>

#include "win32/com/windows_api.h"
#include "win32/keepalive/keep_alive_object.h"

namespace zintra::win32 {

class KeepAliveServer {
 public:
  struct Timing {
    UINT watch_interval_ms = 500;
    UINT idle_limit_ms = 60000;
  };
  enum class Ending { kReleased, kOutlookEnded, kIdle, kFailed };

  explicit KeepAliveServer(Timing timing) : timing_(timing) {}

  // Registers the class, runs the message loop until one of the endings above, revokes
  // the class. COM must be initialised (apartment-threaded) on the calling thread.
  Ending Run();

  // Whether a failed call on Outlook means its process is gone, rather than busy.
  static bool MeansServerGone(HRESULT hr);

 private:
  class Factory;
  HRESULT CreateObject(REFIID iid, void** out);
  void ObjectReleased();
  void Watch();
  void End(Ending ending);

  Timing timing_;
  KeepAliveObject* object_ = nullptr;  // while it lives; COM's callers own it
  int locks_ = 0;                      // IClassFactory::LockServer
  bool created_ = false;
  std::atomic<bool> held_ = false;  // Outlook was held at some time (read by the watchdog)
  bool ended_ = false;
  Ending ending_ = Ending::kFailed;
};

}  // namespace zintra::win32

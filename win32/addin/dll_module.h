// DllModule: the process-wide state of ZintraAddin.dll. DllMain records the module
// handle; every COM object of ours counts itself here while it lives (event sinks,
// which the shared COM layer makes, count themselves in EventSink), and
// IClassFactory::LockServer holds locks, so that DllCanUnloadNow answers S_OK only when
// nothing of ours is left: a sink that an Outlook connection point still holds keeps
// the DLL loaded. An add-in whose shut-down waits for a job outlives the COM object
// that started it: its host is parked here (KeepUntilDone) and keeps the DLL loaded
// until the add-in has finished.
//
// Called on the threads COM calls the DLL on; the counts are atomic, the parked hosts
// are only touched on the thread that created them (Outlook's user-interface thread).
#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "win32/com/windows_api.h"

namespace zintra::win32 {

class DllModule {
 public:
  static DllModule& Instance();

  void Attach(HMODULE module) { module_ = module; }
  HMODULE Handle() const { return module_; }
  // The full path of the DLL file ("" before DllMain ran).
  std::wstring Path() const;

  void ObjectCreated() { ++objects_; }
  void ObjectDestroyed() { --objects_; }
  void Lock(bool lock) {
    if (lock) {
      ++locks_;
    } else {
      --locks_;
    }
  }
  long Objects() const { return objects_; }

  // Keeps `holder` alive until `done` answers true (asked whenever DllCanUnloadNow is).
  void KeepUntilDone(std::shared_ptr<void> holder, std::function<bool()> done);
  // Releases the parked holders that are done; then whether the DLL may be unloaded.
  bool CanUnload();

 private:
  DllModule() = default;

  struct Parked {
    std::shared_ptr<void> holder;
    std::function<bool()> done;
  };

  HMODULE module_ = nullptr;
  std::atomic<long> objects_{0};
  std::atomic<long> locks_{0};
  std::vector<Parked> parked_;
};

// Counts one object of ours for the lifetime of the object that holds it.
class ModuleObjectCount {
 public:
  ModuleObjectCount() { DllModule::Instance().ObjectCreated(); }
  ~ModuleObjectCount() { DllModule::Instance().ObjectDestroyed(); }
  ModuleObjectCount(const ModuleObjectCount&) = delete;
  ModuleObjectCount& operator=(const ModuleObjectCount&) = delete;
};

}  // namespace zintra::win32

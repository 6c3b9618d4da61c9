#include "win32/addin/dll_module.h"

#include <utility>

#include "win32/com/event_sink.h"

namespace zintra::win32 {

DllModule& DllModule::Instance() {
  static DllModule module;
  return module;
}

std::wstring DllModule::Path() const {
  if (!module_) return {};
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    DWORD n = GetModuleFileNameW(module_, path.data(), static_cast<DWORD>(path.size()));
    if (n == 0) return {};
    if (n < path.size()) {
      path.resize(n);
      return path;
    }
    path.resize(path.size() * 2);  // truncated: a long path
  }
}

void DllModule::KeepUntilDone(std::shared_ptr<void> holder, std::function<bool()> done) {
  parked_.push_back(Parked{std::move(holder), std::move(done)});
}

bool DllModule::CanUnload() {
  // Take the finished ones out first: releasing a host may run code that parks another.
  std::vector<Parked> finished;
  for (auto it = parked_.begin(); it != parked_.end();) {
    if (it->done()) {
      finished.push_back(std::move(*it));
      it = parked_.erase(it);
    } else {
      ++it;
    }
  }
  finished.clear();
  return objects_ == 0 && locks_ == 0 && EventSink::LiveCount() == 0 && parked_.empty();
}

}  // namespace zintra::win32

#include "win32/outlook/lazy_advise.h"

#include "win32/outlook/com_adapter.h"

namespace zintra::win32 {

LazyAdvise::LazyAdvise(const DispatchClient& source, const IID& iid, EventHandler handler,
                       std::string what)
    : source_(source), iid_(iid), handler_(std::move(handler)), what_(std::move(what)) {}

LazyAdvise::~LazyAdvise() { advise_.Reset(); }

void LazyAdvise::Up() {
  if (users_++ > 0) return;
  try {
    std::string what = what_;
    auto sink = EventSink::Create(iid_, handler_, [what](DISPID id, const ZError& error) {
      ReportEventError(what + " (event " + std::to_string(id) + ")", error);
    });
    advise_ = Advise(ComPtr<IUnknown>(source_.Object().Get()), iid_, std::move(sink), what_);
  } catch (...) {
    --users_;
    throw;
  }
}

void LazyAdvise::Down() {
  if (users_ > 0 && --users_ == 0) advise_.Reset();
}

IID DefaultSourceOf(IDispatch* object, const IID& fallback) {
  if (!object) return fallback;
  ComPtr<IProvideClassInfo2> info;
  if (FAILED(
          object->QueryInterface(IID_IProvideClassInfo2, reinterpret_cast<void**>(info.Put())))) {
    return fallback;
  }
  GUID source{};
  if (FAILED(info->GetGUID(GUIDKIND_DEFAULT_SOURCE_DISP_IID, &source))) return fallback;
  return source;
}

}  // namespace zintra::win32

// The toolbar library ("Quillbar.ToolbarHelper") over its automation object. The
// helper's five events share one connection, advised while any has handlers; the
// application handed to Initialize goes out as the automation object it wraps.
#pragma once

#include "src/host/toolbar_library.h"
#include "win32/outlook/com_adapter.h"
#include "win32/outlook/lazy_advise.h"

namespace zintra::win32 {

inline constexpr char kToolbarHelperProgId[] = "Quillbar.ToolbarHelper";

class ComToolbarHelper final : public ToolbarHelper, public ComAdapter {
 public:
  explicit ComToolbarHelper(const ComPtr<IDispatch>& object);
  std::string TypeName() const override { return "ToolbarHelper"; }
  void Initialize(const std::shared_ptr<Application>& application,
                  const std::string& name) override;
  void DeclareBar(int32_t kind, const std::string& bar_name) override;
  void DeclareButton(int32_t kind, const std::string& bar_name, const std::string& tag,
                     int32_t style, bool visible) override;

 private:
  void OnEvent(DISPID id, const EventArgs& args);
  LazyAdvise events_;
};

class ComToolbarLibrary final : public ToolbarLibrary {
 public:
  // Throws 429 when the library is not installed.
  std::shared_ptr<ToolbarHelper> CreateToolbarHelper() override;
};

}  // namespace zintra::win32

#include "win32/addin/options_page_link.h"

#include "src/addin/addin_services.h"
#include "src/addin/zintra_addin_app.h"
#include "src/monitoring/monitoring.h"
#include "win32/addin/dispatch_table.h"
#include "win32/com/com_error.h"
#include "win32/com/variant.h"

namespace zintra::win32 {
namespace {

constexpr DISPID kDispIdSettingsSaved = 1;
constexpr DISPID kDispIdScanAll = 2;

const DispatchTable& OptionsPageLinkMembers() {
  static const DispatchTable table{{L"SettingsSaved", kDispIdSettingsSaved},
                                   {L"ScanAll", kDispIdScanAll}};
  return table;
}

}  // namespace

OptionsPageLink::OptionsPageLink(std::weak_ptr<ZintraAddinApp> app)
    : LateBoundObject(OptionsPageLinkMembers()), app_(std::move(app)) {}

ComPtr<IDispatch> OptionsPageLink::Create(const std::shared_ptr<ZintraAddinApp>& app) {
  return ComPtr<IDispatch>::Attach(new OptionsPageLink(app));
}

HRESULT OptionsPageLink::Invoke(DISPID id, REFIID /*iid*/, LCID /*lcid*/, WORD flags,
                                DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepinfo,
                                UINT* /*arg_error*/) {
  if (result) VariantInit(result);
  if ((flags & DISPATCH_METHOD) == 0) return DISP_E_MEMBERNOTFOUND;
  DispatchTable::Args args(params);
  if (HRESULT hr = args.CheckNoNamedArgs(); FAILED(hr)) return hr;
  switch (id) {
    case kDispIdSettingsSaved:
      if (args.Count() != 0) return DISP_E_BADPARAMCOUNT;
      return GuardCall("OptionsPageLink.SettingsSaved", excepinfo, [&] {
        SettingsSaved();
        return S_OK;
      });
    case kDispIdScanAll:
      if (args.Count() != 1) return DISP_E_BADPARAMCOUNT;
      return GuardCall("OptionsPageLink.ScanAll", excepinfo, [&] {
        ScanAll(ValueOf(*args.At(0)).ToBool());
        return S_OK;
      });
    default:
      return DISP_E_MEMBERNOTFOUND;
  }
}

void OptionsPageLink::SettingsSaved() {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  if (!app || app->Quitting() || app->TornDown()) return;
  const Host& host = app->Host();
  RegSettings saved(host.registry, host.file_system, host.platform);
  // As stored: no adjustment for Outlook's version, which SetRegSettings would save.
  saved.Read(false, false, false);
  app->SetRegSettings(saved);
}

void OptionsPageLink::ScanAll(bool stop_when_found) {
  std::shared_ptr<ZintraAddinApp> app = app_.lock();
  if (!app || app->Quitting() || app->TornDown()) return;
  const std::shared_ptr<Monitoring>& monitoring = AddinServices::Of(app)->GetMonitoring();
  if (monitoring) monitoring->ScanAll(stop_when_found);
}

}  // namespace zintra::win32

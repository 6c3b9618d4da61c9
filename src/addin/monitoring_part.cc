// Monitoring as the add-in's part: holds the manager until Kill, hands it the add-in's
// services and registers it there (the options page's complete scan). Monitoring logs
// its own errors; Kill never throws.
#include <memory>

#include "src/addin/addin_part.h"
#include "src/addin/addin_services.h"
#include "src/addin/zintra_addin_app.h"
#include "src/monitoring/hooked_inspector.h"
#include "src/monitoring/monitoring.h"

namespace zintra {
namespace {

// Last among the parts: its delayed scans stop at the start of Shutdown, and every new
// inspector gets a HookedInspector (the queue's wait list keeps it until it closes).
class MonitoringPart : public AddinPart {
 public:
  void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) override {
    std::shared_ptr<AddinServices> services = AddinServices::Of(AddinApp);
    services_ = services;
    monitoring_ = std::make_shared<Monitoring>();
    services->SetMonitoring(monitoring_);
    monitoring_->Initialize(services);
  }
  void Kill() override {
    if (monitoring_) monitoring_->Kill();
    monitoring_.reset();
    if (std::shared_ptr<AddinServices> services = services_.lock())
      services->SetMonitoring(nullptr);
  }
  void StopMonitoring() override {
    if (monitoring_) monitoring_->StopMonitoring();
  }
  void Inspectors_NewInspector(const std::shared_ptr<Inspector>& Inspector) override {
    std::shared_ptr<AddinServices> services = services_.lock();
    if (!services || !monitoring_ || !Inspector) return;
    std::make_shared<HookedInspector>()->Initialize(Inspector, services);
  }
  void Addin_RegSettingsChanged(const RegSettings& OldSettings) override {
    if (monitoring_) monitoring_->Addin_RegSettingsChanged(&OldSettings);
  }

 private:
  std::weak_ptr<AddinServices> services_;
  std::shared_ptr<Monitoring> monitoring_;
};

}  // namespace

AddinPartFactory MonitoringPartFactory() {
  return []() -> std::shared_ptr<AddinPart> { return std::make_shared<MonitoringPart>(); };
}

}  // namespace zintra

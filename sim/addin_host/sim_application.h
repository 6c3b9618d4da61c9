// SimApplication: Outlook's Application object in the simulated process, and
// SimComAddIn, the add-in instance Outlook passes at connection. The windows are
// opened and closed by SimOutlook; the namespace is whatever profile the test set.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "sim/addin_host/sim_windows.h"
#include "src/host/idt_extensibility2.h"
#include "src/host/outlook_application.h"

namespace zintra::sim {

class SimApplication : public Application {
 public:
  std::string TypeName() const override { return "Application"; }
  std::shared_ptr<zintra::Explorers> Explorers() override { return explorers_; }
  std::shared_ptr<zintra::Inspectors> Inspectors() override { return inspectors_; }
  std::string Version() const override { return version_; }
  std::string ProductCode() const override { return product_code_; }
  // Throws kMapiNotInitialized when no profile is logged on.
  std::shared_ptr<Namespace> Session() override;
  std::shared_ptr<Explorer> ActiveExplorer() override;
  std::shared_ptr<Inspector> ActiveInspector() override;
  // Through the creator the test set; kMapiNoSupport without one.
  std::shared_ptr<Item> CreateItem(int32_t item_type) override;

  void SetVersion(std::string version) { version_ = std::move(version); }
  void SetProductCode(std::string code) { product_code_ = std::move(code); }
  void SetSession(std::shared_ptr<Namespace> session) { session_ = std::move(session); }
  void SetItemCreator(std::function<std::shared_ptr<Item>(int32_t)> creator) {
    item_creator_ = std::move(creator);
  }
  SimExplorers& explorers() { return *explorers_; }
  SimInspectors& inspectors() { return *inspectors_; }

 private:
  std::string version_ = "11.0.0.8312";
  std::string product_code_ = "{90110409-6000-11D3-8CFE-0150048383C9}";
  std::shared_ptr<Namespace> session_;
  std::shared_ptr<SimExplorers> explorers_ = std::make_shared<SimExplorers>();
  std::shared_ptr<SimInspectors> inspectors_ = std::make_shared<SimInspectors>();
  std::function<std::shared_ptr<Item>(int32_t)> item_creator_;
};

class SimComAddIn : public ComAddIn {
 public:
  explicit SimComAddIn(std::string prog_id) : prog_id_(std::move(prog_id)) {}
  std::string TypeName() const override { return "COMAddIn"; }
  std::string ProgId() const override { return prog_id_; }
  std::string Description() const override { return "Zintra 3.0"; }
  bool Connect() const override { return connected; }
  bool connected = false;

 private:
  std::string prog_id_;
};

}  // namespace zintra::sim

// OptionsPage: the add-in's page in Outlook's Options dialog, a separate control
// created by ProgID kOptionsPageProgId. The add-in creates it when the dialog opens,
// calls Initialize with itself (the page reads and replaces the settings through
// ZintraAddinApp::RegSettings / SetRegSettings, and offers the complete folder search
// of the monitoring manager, Services()->GetMonitoring()), and hands it to Outlook. An
// object of that ProgID that is not an OptionsPage is not added. Called on Outlook's
// thread.
#pragma once

#include <memory>

#include "src/host/automation_object.h"

namespace zintra {

class ZintraAddinApp;

class OptionsPage : public AutomationObject {
 public:
  virtual void Initialize(const std::shared_ptr<ZintraAddinApp>& AddinApp) = 0;
};

}  // namespace zintra

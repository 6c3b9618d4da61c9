// ByWindowSetting: the setting object of the window-based monitoring method
// ("Monitoring\MonitoringMethod"). It carries no data of its own.
#pragma once

namespace zintra {

class ByWindowSetting {};

}  // namespace zintra

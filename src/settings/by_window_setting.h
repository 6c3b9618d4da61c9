// ByWindowSetting: the setting object of the window-based monitoring method. It carries
// no data of its own: which items are logged is decided per window, not per folder.
#pragma once

namespace zintra {

class ByWindowSetting {};

}  // namespace zintra

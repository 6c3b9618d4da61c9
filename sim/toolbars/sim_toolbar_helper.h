// The simulated toolbar library: the helper that serves windows over the Application
// port (hosts/toolbars), made by a ToolbarLibrary port that tests can make unavailable.
#pragma once

#include <cstdint>
#include <memory>

#include "hosts/toolbars/window_toolbar_helper.h"
#include "src/host/toolbar_library.h"

namespace zintra::sim {

// The simulated Outlook's scenarios find the buttons by their declared tags.
using SimToolbarHelper = hosts::WindowToolbarHelper;

// The ToolbarLibrary port; counts the helpers it made, for tests.
class SimToolbarLibrary : public ToolbarLibrary {
 public:
  std::shared_ptr<ToolbarHelper> CreateToolbarHelper() override;

  // When set, CreateToolbarHelper throws 429 as an unregistered library does.
  bool unavailable = false;
  int32_t created() const { return created_; }
  // The last helper made, while it lives.
  std::shared_ptr<SimToolbarHelper> Last() const { return last_.lock(); }

 private:
  int32_t created_ = 0;
  std::weak_ptr<SimToolbarHelper> last_;
};

}  // namespace zintra::sim

// RecordingShell: the simulated notification area. It keeps every NotifyIcon call
// (message and a copy of the record) and the icons currently shown, and can be told
// to refuse calls.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "src/host/shell.h"

namespace zintra::sim {

class RecordingShell : public Shell {
 public:
  struct Call {
    uint32_t message;
    NotifyIconData data;
  };

  bool NotifyIcon(uint32_t message, const NotifyIconData& data) override;

  // The next `count` calls fail (are recorded but change nothing).
  void FailNext(int count) { fail_next_ = count; }
  void set_fail_always(bool fail) { fail_always_ = fail; }

  const std::vector<Call>& calls() const { return calls_; }
  void ClearCalls() { calls_.clear(); }
  // Icons shown now, by (window, id).
  const std::map<std::pair<WindowHandle, uint32_t>, NotifyIconData>& icons() const {
    return icons_;
  }

 private:
  std::vector<Call> calls_;
  std::map<std::pair<WindowHandle, uint32_t>, NotifyIconData> icons_;
  int fail_next_ = 0;
  bool fail_always_ = false;
};

}  // namespace zintra::sim

// RecordingWindowManager: the simulated window placement; records every call.
#pragma once

#include <cstdint>
#include <vector>

#include "src/host/window.h"

namespace zintra::sim {

class RecordingWindowManager : public WindowManager {
 public:
  struct Call {
    WindowHandle hwnd;
    WindowHandle insert_after;
    int32_t x, y, cx, cy;
    uint32_t flags;
  };

  bool SetWindowPos(WindowHandle hwnd, WindowHandle insert_after, int32_t x, int32_t y, int32_t cx,
                    int32_t cy, uint32_t flags) override {
    calls_.push_back({hwnd, insert_after, x, y, cx, cy, flags});
    return !fail_;
  }
  void set_fail(bool fail) { fail_ = fail; }
  const std::vector<Call>& calls() const { return calls_; }

 private:
  std::vector<Call> calls_;
  bool fail_ = false;
};

}  // namespace zintra::sim

// SimSubclasser: the window-subclassing service in the simulated host. Window messages
// reach it through Deliver (wire the simulated application's WindowMessage to it);
// each client attached to that window and message gets WindowProc, in attach order.
// Clients are not owned (see Subclasser). Records the responses it was given.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "src/host/subclasser.h"

namespace zintra::sim {

class SimSubclasser : public Subclasser {
 public:
  std::string TypeName() const override { return "Subclasser"; }
  void AttachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) override;
  void DetachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) override;

  // A message sent to `hwnd`; returns how many clients it reached.
  int Deliver(WindowHandle hwnd, int32_t message, int32_t wParam, int32_t lParam = 0);
  int AttachedCount() const { return static_cast<int>(hooks_.size()); }
  // MsgResponse answers seen by Deliver, in order.
  const std::vector<int32_t>& Responses() const { return responses_; }

 private:
  struct Hook {
    ISubclass* client;
    WindowHandle hwnd;
    int32_t message;
  };
  std::vector<Hook> hooks_;
  std::vector<int32_t> responses_;
};

}  // namespace zintra::sim

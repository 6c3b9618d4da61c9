#include "sim/subclass/sim_subclasser.h"

#include <algorithm>

namespace zintra::sim {

void SimSubclasser::AttachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) {
  for (const Hook& h : hooks_) {
    if (h.client == client && h.hwnd == hwnd && h.message == message) return;
  }
  hooks_.push_back({client, hwnd, message});
}

void SimSubclasser::DetachMessage(ISubclass* client, WindowHandle hwnd, int32_t message) {
  hooks_.erase(std::remove_if(hooks_.begin(), hooks_.end(),
                              [&](const Hook& h) {
                                return h.client == client && h.hwnd == hwnd && h.message == message;
                              }),
               hooks_.end());
}

int SimSubclasser::Deliver(WindowHandle hwnd, int32_t message, int32_t wParam, int32_t lParam) {
  // A client may detach (or go away) from inside its WindowProc: work on a copy and
  // call only clients still attached.
  const std::vector<Hook> snapshot = hooks_;
  int reached = 0;
  for (const Hook& h : snapshot) {
    if (h.hwnd != hwnd || h.message != message) continue;
    const bool still = std::any_of(hooks_.begin(), hooks_.end(), [&](const Hook& x) {
      return x.client == h.client && x.hwnd == hwnd && x.message == message;
    });
    if (!still) continue;
    responses_.push_back(h.client->MsgResponse(hwnd, message));
    h.client->WindowProc(hwnd, message, wParam, lParam);
    ++reached;
  }
  return reached;
}

}  // namespace zintra::sim

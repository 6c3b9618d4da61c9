// MessagePump: lets the platform process the window messages that are waiting
// (VB's DoEvents), so forms repaint and clicks arrive during long synchronous work.
// Handlers of those messages (timer ticks, button clicks) run inside the call, so
// callers must be ready for re-entrancy. Never fails.
#pragma once

namespace zintra {

class MessagePump {
 public:
  virtual ~MessagePump() = default;
  virtual void DoEvents() = 0;
};

}  // namespace zintra

// Win32MessagePump: DoEvents over the calling thread's message queue. It dispatches the
// messages waiting (timer ticks included) and returns when the queue is empty. A quit
// request found on the way is put back for the host's own loop and ends the call.
// Messages that keep arriving (a timer shorter than its handler) cannot hold the caller:
// one call dispatches at most kMaxMessages.
#pragma once

#include "src/host/message_pump.h"

namespace zintra::win32 {

class Win32MessagePump : public MessagePump {
 public:
  static constexpr int kMaxMessages = 10000;

  void DoEvents() override;
};

}  // namespace zintra::win32

// The subclassing service on real windows of this thread.
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "src/core/z_error.h"
#include "tests/support/error_of.h"
#include "win32/ports/failure_log.h"
#include "win32/ports/handles.h"
#include "win32/ports/message_window.h"
#include "win32/ports/win32_subclasser.h"

namespace zintra::win32 {
namespace {

constexpr int32_t kMessage = WM_APP + 5;

// Records every call in a log shared with the window's own procedure.
class Client : public ISubclass {
 public:
  Client(std::string name, int32_t response, std::vector<std::string>* log)
      : name_(std::move(name)), response_(response), log_(log) {}
  int32_t MsgResponse(WindowHandle, int32_t) override { return response_; }
  int32_t WindowProc(WindowHandle, int32_t message, int32_t wparam, int32_t) override {
    log_->push_back(name_ + ":" + std::to_string(message - WM_APP) + ":" + std::to_string(wparam));
    if (on_call) on_call();
    return 42;
  }
  std::function<void()> on_call;

 private:
  std::string name_;
  int32_t response_;
  std::vector<std::string>* log_;
};

class SubclasserTest : public ::testing::Test {
 protected:
  SubclasserTest()
      : window_(
            std::make_unique<MessageWindow>([this](UINT message, WPARAM, LPARAM, LRESULT* result) {
              if (message < WM_APP) return false;
              log_.push_back("own");
              *result = 7;
              return true;
            })) {}

  LRESULT Send(UINT message = kMessage, WPARAM wparam = 1) {
    return SendMessageA(window_->hwnd(), message, wparam, 0);
  }
  WindowHandle handle() const { return ToWindowHandle(window_->hwnd()); }

  std::vector<std::string> log_;
  std::unique_ptr<MessageWindow> window_;
  Win32Subclasser subclasser_;
};

TEST_F(SubclasserTest, ClientsRunBeforeOrAfterTheWindowAsTheyAsk) {
  Client pre("pre", kSubclassPreProcess, &log_), post("post", kSubclassPostProcess, &log_);
  subclasser_.AttachMessage(&post, handle(), kMessage);
  subclasser_.AttachMessage(&pre, handle(), kMessage);
  subclasser_.AttachMessage(&pre, handle(), kMessage);  // twice is harmless
  EXPECT_EQ(Send(), 7);
  EXPECT_EQ(log_, (std::vector<std::string>{"pre:5:1", "own", "post:5:1"}));

  log_.clear();
  Send(kMessage + 1);
  EXPECT_EQ(log_, (std::vector<std::string>{"own"})) << "other messages pass untouched";

  Client eater("eat", kSubclassConsume, &log_);
  subclasser_.AttachMessage(&eater, handle(), kMessage);
  log_.clear();
  EXPECT_EQ(Send(), 42) << "a consuming client's result replaces the window's";
  EXPECT_EQ(log_, (std::vector<std::string>{"pre:5:1", "eat:5:1", "post:5:1"}));

  for (Client* client : {&pre, &post, &eater})
    subclasser_.DetachMessage(client, handle(), kMessage);
  EXPECT_EQ(subclasser_.HookedWindowCount(), 0u);
  log_.clear();
  Send();
  EXPECT_EQ(log_, (std::vector<std::string>{"own"}));
}

TEST_F(SubclasserTest, ClientsMayDetachFromTheirOwnCallAndFailuresAreReported) {
  Client first("first", kSubclassPostProcess, &log_), second("second", kSubclassPostProcess, &log_);
  first.on_call = [&] {
    subclasser_.DetachMessage(&first, handle(), kMessage);
    subclasser_.DetachMessage(&second, handle(), kMessage);
  };
  subclasser_.AttachMessage(&first, handle(), kMessage);
  subclasser_.AttachMessage(&second, handle(), kMessage);
  Send();
  EXPECT_EQ(log_, (std::vector<std::string>{"own", "first:5:1"}));

  std::vector<std::string> reports;
  FailureSink old = SetFailureSink([&](const std::string& where, const std::string& what) {
    reports.push_back(where + ": " + what);
  });
  Client thrower("thrower", kSubclassPreProcess, &log_);
  thrower.on_call = [] { throw std::runtime_error("client failed"); };
  subclasser_.AttachMessage(&thrower, handle(), kMessage);
  log_.clear();
  EXPECT_EQ(Send(), 7);
  SetFailureSink(old);
  EXPECT_EQ(log_, (std::vector<std::string>{"thrower:5:1", "own"}));
  EXPECT_EQ(reports, (std::vector<std::string>{"Subclass WindowProc: client failed"}));
  subclasser_.DetachMessage(&thrower, handle(), kMessage);
}

TEST_F(SubclasserTest, ADestroyedWindowIsReleasedAndRefused) {
  Client client("c", kSubclassPostProcess, &log_);
  subclasser_.AttachMessage(&client, handle(), kMessage);
  const WindowHandle gone = handle();
  window_.reset();
  EXPECT_EQ(subclasser_.HookedWindowCount(), 0u);
  EXPECT_EQ(ErrorOf([&] { subclasser_.AttachMessage(&client, gone, kMessage); }), 1400);
}

}  // namespace
}  // namespace zintra::win32

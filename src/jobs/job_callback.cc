#include "src/jobs/job_callback.h"

#include <utility>

namespace zintra {

void JobCallback::Initialize(std::shared_ptr<Dispatchable> Object, std::string Description,
                             std::string CallbackFunctionName, std::string AbortFunctionName,
                             std::optional<Value> Arguments) {
  target_ = std::move(Object);
  description_ = std::move(Description);
  callback_name_ = std::move(CallbackFunctionName);
  abort_name_ = std::move(AbortFunctionName);
  arguments_ = std::move(Arguments);
}

void JobCallback::Call(const std::string& name) {
  std::shared_ptr<Dispatchable> target = std::move(target_);
  if (!target) return;
  try {
    target->Invoke(name, arguments_ ? &*arguments_ : nullptr);
  } catch (...) {
    // The callee's failure is its own business; the job is done either way.
  }
}

void JobCallback::Activate() { Call(callback_name_); }

void JobCallback::Abort() {
  if (abort_name_.empty()) {
    target_.reset();
  } else {
    Call(abort_name_);
  }
}

}  // namespace zintra

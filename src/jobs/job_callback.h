// JobCallback: a one-shot job that calls a method by name on an object when the
// queue reaches it (or another method when the queue aborts it). Errors raised by
// the called method are swallowed: the job counts as done either way. The target
// is released after the call.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "src/core/dispatchable.h"
#include "src/core/value.h"
#include "src/jobs/i_job.h"

namespace zintra {

class JobCallback : public IJob {
 public:
  // Stores the values; the creator queues the job. Without Arguments the methods
  // are called with no argument, otherwise with exactly that one value.
  void Initialize(std::shared_ptr<Dispatchable> Object, std::string Description,
                  std::string CallbackFunctionName, std::string AbortFunctionName,
                  std::optional<Value> Arguments = std::nullopt);

  void Activate() override;
  // Calls the abort method when one is named; releases the target in every case.
  void Abort() override;
  std::string JobDescription() override { return description_; }

  bool HoldsTarget() const { return target_ != nullptr; }

 private:
  void Call(const std::string& name);

  std::shared_ptr<Dispatchable> target_;
  std::string description_;
  std::string callback_name_;
  std::string abort_name_;
  std::optional<Value> arguments_;
};

}  // namespace zintra

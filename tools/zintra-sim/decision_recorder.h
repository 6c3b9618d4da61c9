// DecisionRecorder: the decision log zintra-sim connects to the add-in. It keeps every
// decision in the order the add-in took it; the report of why is built from these.
#pragma once

#include <vector>

#include "src/host/decision_log.h"

namespace zintra::simtool {

class DecisionRecorder : public DecisionLog {
 public:
  void Record(const Decision& decision) override { decisions_.push_back(decision); }
  const std::vector<Decision>& Decisions() const { return decisions_; }

 private:
  std::vector<Decision> decisions_;
};

}  // namespace zintra::simtool

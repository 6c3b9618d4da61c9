// Linked into every test program: a programming error (a C++ fault that one of the
// system's handlers caught and logged) fails the test that caused it, instead of
// passing as a handled error. A test that provokes one on purpose installs its own
// observer for the time it needs it.
#include <gtest/gtest.h>

#include "src/errors/programming_error.h"

namespace zintra::testing_support {
namespace {

class ProgrammingErrorGuard : public ::testing::Environment {
 public:
  void SetUp() override {
    SetProgrammingErrorObserver(
        [](const std::string& description) { ADD_FAILURE() << description; });
  }
  void TearDown() override { SetProgrammingErrorObserver(nullptr); }
};

[[maybe_unused]] const auto* const kGuard =
    ::testing::AddGlobalTestEnvironment(new ProgrammingErrorGuard);

}  // namespace
}  // namespace zintra::testing_support

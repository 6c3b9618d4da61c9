#include <gtest/gtest.h>
#include "src/core/date.h"
TEST(Smoke, Builds) { EXPECT_EQ(zintra::DateSerial(1899, 12, 30), 0.0); }

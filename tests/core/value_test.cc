#include "src/core/value.h"

#include <gtest/gtest.h>

#include "src/core/z_error.h"
#include "tests/support/error_of.h"

namespace zintra {
namespace {

TEST(ValueTest, EmptyConvertsToZeroAndEmptyText) {
  Value v;
  EXPECT_TRUE(v.IsEmpty());
  EXPECT_EQ(v.ToString(), "");
  EXPECT_EQ(v.ToLong(), 0);
  EXPECT_FALSE(v.ToBool());
}

TEST(ValueTest, NumbersTurnIntoDecimalTextAndNonZeroIsTrue) {
  EXPECT_EQ(Value(int32_t{1234567}).ToString(), "1234567");
  EXPECT_EQ(Value(int16_t{-12}).ToString(), "-12");
  EXPECT_EQ(Value(2.5).ToString(), "2.5");
  EXPECT_EQ(Value(3.0).ToString(), "3");
  EXPECT_TRUE(Value(int32_t{7}).ToBool());
  EXPECT_TRUE(Value(-0.5).ToBool());
  EXPECT_FALSE(Value(int32_t{0}).ToBool());
  EXPECT_EQ(Value(true).ToLong(), -1);
  EXPECT_EQ(Value(true).ToString(), "True");
}

TEST(ValueTest, TextConvertsToNumbersOrFailsWithTypeMismatch) {
  EXPECT_EQ(Value("42").ToLong(), 42);
  EXPECT_EQ(Value(" 17 ").ToLong(), 17);
  EXPECT_TRUE(Value("True").ToBool());
  EXPECT_FALSE(Value("0").ToBool());
  EXPECT_EQ(ErrorOf([] { (void)Value("abc").ToLong(); }), kErrTypeMismatch);
  EXPECT_EQ(ErrorOf([] { (void)Value("").ToBool(); }), kErrTypeMismatch);
}

TEST(ValueTest, LongConversionRoundsHalfToEvenAndOverflows) {
  EXPECT_EQ(Value(2.5).ToLong(), 2);
  EXPECT_EQ(Value(3.5).ToLong(), 4);
  EXPECT_EQ(ErrorOf([] { (void)Value(3e10).ToLong(); }), kErrOverflow);
  EXPECT_EQ(ErrorOf([] { (void)Value(int32_t{40000}).ToInteger(); }), kErrOverflow);
  EXPECT_EQ(Value(int32_t{32767}).ToInteger(), 32767);
}

TEST(ValueTest, ArraysAndBinaryKeepTheirKind) {
  Value a(Value::StringArray{"x", "y"});
  EXPECT_EQ(a.ToStringArray().size(), 2u);
  EXPECT_EQ(ErrorOf([&] { (void)a.ToString(); }), kErrTypeMismatch);
  Value b(Value::Binary{1, 2, 3});
  EXPECT_EQ(b.ToBinary()[2], 3);
  EXPECT_EQ(ErrorOf([] { (void)Value("x").ToBinary(); }), kErrTypeMismatch);
}

TEST(ZErrorTest, CarriesTheRunTimesTextWhenNoneIsGiven) {
  ZError e(457);
  EXPECT_EQ(e.Description(), "This key is already associated with an element of this collection");
  ZError f(5, "JobQueue already initialized", "JobQueue");
  EXPECT_EQ(f.Description(), "JobQueue already initialized");
  EXPECT_EQ(f.Source(), "JobQueue");
}

}  // namespace
}  // namespace zintra

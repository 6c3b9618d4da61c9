#include "win32/com/variant.h"

#include <gtest/gtest.h>

#include "src/core/z_error.h"
#include "tests/support/error_of.h"
#include "win32/com/bstr.h"
#include "win32/com/com_error.h"

namespace zintra::win32 {
namespace {

TEST(VariantTest, EveryValueKindSurvivesTheRoundTrip) {
  const Value values[] = {Value{},
                          Value(true),
                          Value(false),
                          Value(int16_t{-7}),
                          Value(int32_t{123456}),
                          Value(2.5),
                          Value::Date(45000.25),
                          Value("caf\xc3\xa9 \xe2\x82\xac"),
                          Value(Value::StringArray{"a", "", "\xc3\xbc"}),
                          Value(Value::Binary{0, 1, 255})};
  for (const Value& v : values) {
    Variant variant(v);
    EXPECT_EQ(variant.ToValue(), v) << v.ToString();
    Variant copy = variant;
    EXPECT_EQ(copy.ToValue(), v);
  }
}

TEST(VariantTest, OtherWidthsReadAsLongOrDoubleAndByReferenceIsFollowed) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_UI4;
  v.ulVal = 4000000000u;
  EXPECT_EQ(ValueOf(v), Value(4000000000.0));
  v.vt = VT_UI1;
  v.bVal = 200;
  EXPECT_EQ(ValueOf(v), Value(int32_t{200}));
  LONG target = 42;
  v.vt = VT_I4 | VT_BYREF;
  v.plVal = &target;
  EXPECT_EQ(ValueOf(v), Value(int32_t{42}));
  v.vt = VT_NULL;
  EXPECT_TRUE(ValueOf(v).IsEmpty());
}

TEST(VariantTest, AnObjectIsNotAValue) {
  Variant nothing{ComPtr<IDispatch>()};
  EXPECT_FALSE(nothing.ToObject());
  EXPECT_EQ(ErrorOf([&] { nothing.ToValue(); }), kErrTypeMismatch);
}

TEST(ComErrorTest, ErrorsRoundTripThroughExcepInfo) {
  for (int32_t number : {438, 5, static_cast<int32_t>(0x8004010Fu)}) {
    EXCEPINFO info;
    HRESULT hr = ReportError(ZError(number, "it broke", "Items.Find"), &info);
    try {
      ThrowComError(hr, &info, "Items.Find");
      FAIL();
    } catch (const ZError& e) {
      EXPECT_EQ(e.Number(), number);
      EXPECT_EQ(e.Description(), "it broke");
      EXPECT_EQ(e.Source(), "Items.Find");
    }
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrSource);
  }
  EXPECT_EQ(ErrorNumberOf(DISP_E_UNKNOWNNAME, nullptr), kErrNoSuchMember);
  EXPECT_EQ(ErrorNumberOf(REGDB_E_CLASSNOTREG, nullptr), kErrCannotCreateObject);
  // A server's run-time error as a FACILITY_CONTROL code reads as its number.
  EXCEPINFO word{};
  word.scode = static_cast<SCODE>(0x800A16C1u);  // 5825
  EXPECT_EQ(ErrorNumberOf(DISP_E_EXCEPTION, &word), 5825);
  EXPECT_EQ(ErrorNumberOf(static_cast<HRESULT>(0x800A1436u), nullptr), 5174);
}

TEST(ComErrorTest, GuardCallStopsEveryException) {
  EXCEPINFO info{};
  EXPECT_EQ(GuardCall("Connect.OnConnection", &info,
                      []() -> HRESULT { throw std::runtime_error("boom"); }),
            DISP_E_EXCEPTION);
  EXPECT_EQ(Bstr::ToUtf8(info.bstrDescription), "Connect.OnConnection: boom");
  SysFreeString(info.bstrDescription);
  SysFreeString(info.bstrSource);
  EXPECT_EQ(GuardCall("x", nullptr, []() -> HRESULT { throw 3; }), E_UNEXPECTED);
  EXPECT_EQ(GuardCall("x", nullptr, [] { return S_OK; }), S_OK);
}

}  // namespace
}  // namespace zintra::win32

#include "src/core/date.h"

#include <gtest/gtest.h>

namespace zintra {
namespace {

TEST(DateTest, SerialsCountDaysFrom18991230) {
  EXPECT_EQ(DateSerial(1899, 12, 30), 0.0);
  EXPECT_EQ(DateSerial(1900, 1, 1), 2.0);
  EXPECT_EQ(DateSerial(2000, 1, 1), 36526.0);
  EXPECT_EQ(DateSerial(100, 1, 1), kUnsetDate);
  EXPECT_EQ(DateSerial(2024, 13, 1), DateSerial(2025, 1, 1));  // months overflow as VB allows
  DateParts p = SplitDate(MakeDate(2026, 11, 22, 17, 5, 9));
  EXPECT_EQ(p.year, 2026);
  EXPECT_EQ(p.month, 11);
  EXPECT_EQ(p.day, 22);
  EXPECT_EQ(p.hour, 17);
  EXPECT_EQ(p.minute, 5);
  EXPECT_EQ(p.second, 9);
  EXPECT_EQ(p.weekday, 1);  // a Sunday
}

TEST(DateTest, DatesBeforeTheEpochKeepAPositiveTimeFraction) {
  double d = MakeDate(1899, 12, 29, 6, 0, 0);
  EXPECT_DOUBLE_EQ(d, -1.25);
  DateParts p = SplitDate(d);
  EXPECT_EQ(p.day, 29);
  EXPECT_EQ(p.hour, 6);
}

TEST(DateTest, FormatsThePatternsTheSystemUses) {
  double d = MakeDate(2026, 3, 7, 14, 5, 0);
  EXPECT_EQ(FormatDate(d, "dd-mmm\\/yy h\\:Nna/p"), "07-Mar/26 2:05p");
  EXPECT_EQ(FormatDate(MakeDate(2026, 3, 7, 0, 30, 0), "dd-mmm\\/yy h\\:Nna/p"),
            "07-Mar/26 12:30a");
  EXPECT_EQ(FormatDate(d, "Short Date"), "3/7/2026");
  EXPECT_EQ(FormatDate(d, "yyyy-mm-dd hh:nn:ss"), "2026-03-07 14:05:00");
  EXPECT_EQ(FormatDate(d, "h:mm"), "14:05");  // m after h means minutes
}

// 7 March 2026 was a Saturday.
TEST(DateTest, FormatsNamesPaddingAndTheTwelveHourClock) {
  const double d = MakeDate(2026, 3, 7, 9, 4, 3);
  EXPECT_EQ(FormatDate(d, "Long Date"), "Saturday, March 7, 2026");
  EXPECT_EQ(FormatDate(d, "ddd d mmm"), "Sat 7 Mar");
  EXPECT_EQ(FormatDate(d, "Long Time"), "9:04:03 AM");
  EXPECT_EQ(FormatDate(MakeDate(2026, 3, 7, 23, 4, 3), "hh:nn am/pm"), "11:04 pm");
  EXPECT_EQ(FormatDate(MakeDate(2026, 3, 7, 12, 0, 0), "h A/P"), "12 P");
  EXPECT_EQ(FormatDate(d, "hh:nn:ss"), "09:04:03");  // no AM/PM: the 24-hour clock
  EXPECT_EQ(FormatDate(d, "h:n:s"), "9:4:3");
  EXPECT_EQ(FormatDate(MakeDate(2005, 11, 30, 0, 0, 0), "m/d/yy"), "11/30/05");
  EXPECT_EQ(FormatDate(d, "\"at\" yyyy"), "at 2026");
}

TEST(DateTest, DateDiffCountsBoundariesCrossedNotElapsedTime) {
  double a = MakeDate(2026, 1, 1, 10, 59, 59);
  double b = MakeDate(2026, 1, 1, 11, 0, 1);
  EXPECT_EQ(DateDiff("h", a, b), 1);  // two seconds, one hour boundary
  EXPECT_EQ(DateDiff("n", a, b), 1);
  EXPECT_EQ(DateDiff("s", a, b), 2);
  EXPECT_EQ(DateDiff("h", MakeDate(2026, 1, 1, 11, 0, 0), MakeDate(2026, 1, 1, 11, 59, 59)), 0);
  EXPECT_EQ(DateDiff("h", b, a), -1);
  EXPECT_EQ(DateDiff("d", MakeDate(2026, 1, 1, 23, 0, 0), MakeDate(2026, 1, 2, 1, 0, 0)), 1);
  EXPECT_GT(DateDiff("h", kUnsetDate, b), 0);  // unset dates are far in the past
}

TEST(DateTest, DateAddMovesAcrossTheEpoch) {
  double d = DateAdd("h", -30, MakeDate(1899, 12, 31, 0, 0, 0));
  DateParts p = SplitDate(d);
  EXPECT_EQ(p.day, 29);
  EXPECT_EQ(p.hour, 18);
  EXPECT_EQ(DateAdd("n", 90, MakeDate(2026, 1, 1)), MakeDate(2026, 1, 1, 1, 30, 0));
}

}  // namespace
}  // namespace zintra

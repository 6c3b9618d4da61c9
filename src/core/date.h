// Dates as VB keeps them: a double counting days since 1899-12-30, the fraction
// being the time of day. Before that day the integer part counts back while the
// fraction still counts forward (-1.25 is 1899-12-29 06:00), as OLE dates do.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zintra {

// A date that is not set; scan code compares against exactly this value.
inline constexpr double kUnsetDate = -657434.0;  // 0100-01-01 00:00

struct DateParts {
  int year = 1899, month = 12, day = 30;
  int hour = 0, minute = 0, second = 0;
  int weekday = 7;  // 1 = Sunday .. 7 = Saturday, as VB's Weekday
};

double DateSerial(int year, int month, int day);  // month and day may overflow, as VB allows
double TimeSerial(int hour, int minute, int second);
double MakeDate(int year, int month, int day, int hour = 0, int minute = 0, int second = 0);
DateParts SplitDate(double serial);  // rounded to the nearest second

// Format for the patterns the system uses: d dd ddd dddd m mm mmm mmmm yy yyyy h hh
// n nn s ss (m after h is minutes), AM/PM am/pm A/P a/p, "\x" and "quoted" literals,
// and the named formats "Short Date" (m/d/yyyy), "Long Time", "Short Time" and
// "General Date".
std::string FormatDate(double serial, std::string_view pattern);

// DateDiff for intervals "d", "h", "n" and "s": the number of interval boundaries
// crossed going from d1 to d2 (negative when d2 is earlier), as VB counts them.
int64_t DateDiff(std::string_view interval, double d1, double d2);
// DateAdd for intervals "d", "h", "n" and "s".
double DateAdd(std::string_view interval, double number, double date);

// Conversions between the serial and a continuous day count (negative dates linearised).
double DateToLinear(double serial);
double LinearToDate(double linear);

}  // namespace zintra

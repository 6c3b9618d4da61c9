#include "src/core/date.h"

#include <cmath>

#include "src/core/z_error.h"

namespace zintra {
namespace {

// Days from 1899-12-30 to a civil date (proleptic Gregorian), after H. Hinnant.
int64_t DaysFromCivil(int64_t y, int64_t m, int64_t d) {
  y -= m <= 2;
  const int64_t era = (y >= 0 ? y : y - 399) / 400;
  const int64_t yoe = y - era * 400;
  const int64_t doy = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
  const int64_t doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + doe - 719468 + 25569;
}

void CivilFromDays(int64_t z, int& y, int& m, int& d) {
  z += 719468 - 25569;
  const int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const int64_t doe = z - era * 146097;
  const int64_t yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const int64_t doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const int64_t mp = (5 * doy + 2) / 153;
  d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  y = static_cast<int>(yoe + era * 400 + (m <= 2));
}

const char* const kMonths[] = {"January",   "February", "March",    "April",
                               "May",       "June",     "July",     "August",
                               "September", "October",  "November", "December"};
const char* const kDays[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                             "Thursday", "Friday", "Saturday"};

// The decimal form of `v`, with a leading zero when it is a single digit and `pad2`
// is set ("%02d"), appended without a temporary string.
void AppendNumber(std::string& out, int v, bool pad2) {
  if (v < 0) {
    out += std::to_string(v);  // "%02d" pads no negative number: "-5" is two wide
    return;
  }
  char buf[12];
  char* end = buf + sizeof buf;
  char* p = end;
  do {
    *--p = static_cast<char>('0' + v % 10);
    v /= 10;
  } while (v != 0);
  if (pad2 && end - p < 2) *--p = '0';
  out.append(p, end);
}

double UnitsPerDay(std::string_view interval) {
  if (interval == "d" || interval == "D") return 1;
  if (interval == "h" || interval == "H") return 24;
  if (interval == "n" || interval == "N") return 1440;
  if (interval == "s" || interval == "S") return 86400;
  throw ZError(kErrInvalidCall);
}

}  // namespace

double DateToLinear(double serial) {
  double whole = std::trunc(serial);
  return whole + std::fabs(serial - whole);
}

double LinearToDate(double linear) {
  double day = std::floor(linear);
  double frac = linear - day;
  if (day >= 0 || frac == 0) return linear;
  return day - frac;  // -0.75 (29th, 06:00) is stored as -1.25
}

double DateSerial(int year, int month, int day) {
  int64_t y = year + (month - 1) / 12;
  int64_t m = (month - 1) % 12;
  if (m < 0) {
    m += 12;
    --y;
  }
  return static_cast<double>(DaysFromCivil(y, m + 1, 1) + day - 1);
}

double TimeSerial(int hour, int minute, int second) {
  return (hour * 3600.0 + minute * 60.0 + second) / 86400.0;
}

double MakeDate(int year, int month, int day, int hour, int minute, int second) {
  return LinearToDate(DateSerial(year, month, day) + TimeSerial(hour, minute, second));
}

DateParts SplitDate(double serial) {
  double linear = DateToLinear(serial);
  int64_t total = static_cast<int64_t>(std::llround(linear * 86400.0));
  int64_t days = total >= 0 ? total / 86400 : -((-total + 86399) / 86400);
  int64_t secs = total - days * 86400;
  DateParts p;
  CivilFromDays(days, p.year, p.month, p.day);
  p.hour = static_cast<int>(secs / 3600);
  p.minute = static_cast<int>(secs / 60 % 60);
  p.second = static_cast<int>(secs % 60);
  int64_t wd = (days + 6) % 7;  // 1899-12-30 was a Saturday
  if (wd < 0) wd += 7;
  p.weekday = static_cast<int>(wd) + 1;
  return p;
}

std::string FormatDate(double serial, std::string_view pattern) {
  if (pattern == "Short Date") return FormatDate(serial, "m/d/yyyy");
  if (pattern == "Long Date") return FormatDate(serial, "dddd, mmmm d, yyyy");
  if (pattern == "Long Time") return FormatDate(serial, "h:nn:ss AM/PM");
  if (pattern == "Short Time") return FormatDate(serial, "hh:nn");
  if (pattern == "General Date") {
    DateParts p = SplitDate(serial);
    bool has_time = p.hour || p.minute || p.second;
    bool has_date = std::trunc(serial) != 0;
    if (has_date && has_time) return FormatDate(serial, "m/d/yyyy h:nn:ss AM/PM");
    if (has_time) return FormatDate(serial, "h:nn:ss AM/PM");
    return FormatDate(serial, "m/d/yyyy");
  }

  const DateParts p = SplitDate(serial);
  std::string out;
  out.reserve(pattern.size() + 16);
  bool last_was_hour = false;
  auto run = [&](size_t i, char c) {
    size_t n = 0;
    while (i + n < pattern.size() && (pattern[i + n] | 0x20) == c) ++n;
    return n;
  };
  auto starts = [&](size_t i, std::string_view token) {
    return pattern.substr(i, token.size()) == token;
  };
  const bool twelve_hour = pattern.find("AM/PM") != std::string_view::npos ||
                           pattern.find("am/pm") != std::string_view::npos ||
                           pattern.find("A/P") != std::string_view::npos ||
                           pattern.find("a/p") != std::string_view::npos;
  const bool upper_ampm = p.hour >= 12;
  for (size_t i = 0; i < pattern.size();) {
    char c = pattern[i];
    char lc = static_cast<char>(c | 0x20);
    if (c == '\\' && i + 1 < pattern.size()) {
      out += pattern[i + 1];
      i += 2;
      continue;
    }
    if (c == '"') {
      size_t end = pattern.find('"', i + 1);
      if (end == std::string_view::npos) end = pattern.size();
      out.append(pattern.substr(i + 1, end - i - 1));
      i = end + 1;
      continue;
    }
    if (starts(i, "AM/PM") || starts(i, "am/pm")) {
      if (c == 'a') {
        out += upper_ampm ? "pm" : "am";
      } else {
        out += upper_ampm ? "PM" : "AM";
      }
      i += 5;
      continue;
    }
    if (starts(i, "A/P") || starts(i, "a/p")) {
      char ch = upper_ampm ? 'P' : 'A';
      out += c == 'a' ? static_cast<char>(ch | 0x20) : ch;
      i += 3;
      continue;
    }
    if (lc == 'd') {
      size_t n = run(i, 'd');
      if (n <= 2)
        AppendNumber(out, p.day, n == 2);
      else if (n == 3)
        out.append(kDays[p.weekday - 1], 3);
      else
        out += kDays[p.weekday - 1];
      i += n;
      last_was_hour = false;
    } else if (lc == 'm') {
      size_t n = run(i, 'm');
      if (last_was_hour && n <= 2) {
        AppendNumber(out, p.minute, n == 2);
      } else if (n <= 2) {
        AppendNumber(out, p.month, n == 2);
      } else if (n == 3) {
        out.append(kMonths[p.month - 1], 3);
      } else {
        out += kMonths[p.month - 1];
      }
      i += n;
      last_was_hour = false;
    } else if (lc == 'y') {
      size_t n = run(i, 'y');
      AppendNumber(out, n <= 2 ? p.year % 100 : p.year, n <= 2);
      i += n;
      last_was_hour = false;
    } else if (lc == 'h') {
      size_t n = run(i, 'h');
      int h = p.hour;
      if (twelve_hour) {
        h %= 12;
        if (h == 0) h = 12;
      }
      AppendNumber(out, h, n != 1);
      i += n;
      last_was_hour = true;
    } else if (lc == 'n') {
      size_t n = run(i, 'n');
      AppendNumber(out, p.minute, n != 1);
      i += n;
      last_was_hour = false;
    } else if (lc == 's') {
      size_t n = run(i, 's');
      AppendNumber(out, p.second, n != 1);
      i += n;
      last_was_hour = false;
    } else {
      out += c;
      ++i;
    }
  }
  return out;
}

int64_t DateDiff(std::string_view interval, double d1, double d2) {
  double per_day = UnitsPerDay(interval);
  // Round each date to whole seconds first so that float noise never adds a boundary.
  auto units = [per_day](double serial) {
    double seconds = std::round(DateToLinear(serial) * 86400.0);
    return std::floor(seconds * per_day / 86400.0 + 1e-9);
  };
  return static_cast<int64_t>(units(d2) - units(d1));
}

double DateAdd(std::string_view interval, double number, double date) {
  double per_day = UnitsPerDay(interval);
  return LinearToDate(DateToLinear(date) + number / per_day);
}

}  // namespace zintra

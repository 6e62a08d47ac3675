#include "core/Calendar.h"

#include <algorithm>
#include <cmath>

namespace qv {
namespace {

// The first Julian date that takes the Gregorian century correction on the way in, and the first
// Gregorian day on the way back.
constexpr double kGregorianCorrectionFrom = 2299150.0;
constexpr double kGregorianDayFrom = 2299161.0;

// Beyond this number of days on either side the year does not fit an int with certainty.
constexpr double kLargestJulianDate = 1e11;

double ZoneOf(double longitude) {
  return std::copysign(std::floor(std::abs(longitude) / 15.0 + 0.5), longitude);
}

}  // namespace

double JulianDateFromCalendar(int year, int month, int day, double hours, double longitude) {
  const double m = month < 3 ? month + 12.0 : month;
  const double y = month < 3 ? year - 1.0 : year;
  const double julianDate = std::floor((m - 2) * 30.59) + std::floor(y * 365.25) + day +
                            hours / 24.0 - ZoneOf(longitude) / 24.0 + 1721086.5;
  if (julianDate <= kGregorianCorrectionFrom) return julianDate;
  return julianDate + std::floor(y / 400) - std::floor(y / 100) + 2;
}

CalendarDate CalendarFromJulianDate(double julianDate, double longitude) {
  double fraction = julianDate + ZoneOf(longitude) / 24.0 + 0.5;
  if (!(std::abs(fraction) < kLargestJulianDate)) return {};
  const double whole = std::floor(fraction);
  fraction -= whole;

  double a = whole;
  if (whole >= kGregorianDayFrom) {
    const double b = std::floor((whole - 1867216.25) / 36524.25);
    a = whole + 1 + b - std::floor(b * 0.25);
  }
  a += 1524;
  const double c = std::floor((a - 122.1) / 365.25);
  a -= std::floor(c * 365.25);
  const double d = std::floor(a / 30.6001);

  CalendarDate date;
  // 30.60001, one zero more than above: the day of the month rests on it.
  date.day = static_cast<int>(std::floor(a - std::floor(d * 30.60001) + fraction));
  date.hours = fraction * 24;
  date.month = static_cast<int>(d < 14 ? d - 1 : d - 13);
  date.year = static_cast<int>(date.month > 2 ? c - 4716 : c - 4715);
  return date;
}

CalendarTime CalendarTimeFromJulianDate(double julianDate, double longitude) {
  constexpr double kHalfSecond = 0.5 / 86400.0;
  const CalendarDate date = CalendarFromJulianDate(julianDate + kHalfSecond, longitude);
  const int seconds = std::clamp(static_cast<int>(date.hours * 3600), 0, 86399);
  return {date.year, date.month, date.day, seconds / 3600, seconds / 60 % 60, seconds % 60};
}

}  // namespace qv

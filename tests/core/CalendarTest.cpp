#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>

#include "core/Calendar.h"

namespace qv {
namespace {

// J. Meeus, Astronomical Algorithms, chapter 7, but for the last, which the definition of the
// Modified Julian Date gives.
TEST(Calendar, GivesPublishedJulianDates) {
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(2000, 1, 1, 12, 0), 2451545.0);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1999, 1, 1, 0, 0), 2451179.5);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1987, 6, 19, 12, 0), 2446966.0);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1988, 1, 27, 0, 0), 2447187.5);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1957, 10, 4, 0.81 * 24, 0), 2436116.31);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1600, 12, 31, 0, 0), 2305812.5);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1582, 10, 15, 0, 0), 2299160.5);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(837, 4, 10, 0.3 * 24, 0), 2026871.8);
  EXPECT_DOUBLE_EQ(JulianDateFromCalendar(1858, 11, 17, 0, 0), 2400000.5);
}

TEST(Calendar, AgreesWithTheStandardLibraryDayByDay) {
  using namespace std::chrono;
  constexpr double kJulianDateOfUnixEpoch = 2440587.5;
  for (sys_days day = 1583y / 1 / 1; day < sys_days(2501y / 1 / 1); day += days(1)) {
    const year_month_day date(day);
    const int y = static_cast<int>(date.year());
    const int m = static_cast<int>(static_cast<unsigned>(date.month()));
    const int d = static_cast<int>(static_cast<unsigned>(date.day()));
    const double expected =
        kJulianDateOfUnixEpoch + static_cast<double>(day.time_since_epoch().count());
    ASSERT_EQ(JulianDateFromCalendar(y, m, d, 0, 0), expected) << y << '-' << m << '-' << d;

    const CalendarDate back = CalendarFromJulianDate(expected + 0.25, 0);
    ASSERT_EQ(back.year, y) << expected;
    ASSERT_EQ(back.month, m) << expected;
    ASSERT_EQ(back.day, d) << expected;
    ASSERT_EQ(back.hours, 6) << expected;
  }
}

// The zone is that of the nearest whole hour, 15 degrees to the hour, halves away from Greenwich.
TEST(Calendar, TakesTheZoneFromTheLongitude) {
  const auto zone = [](double longitude) {
    return std::lround((JulianDateFromCalendar(2000, 1, 1, 12, 0) -
                        JulianDateFromCalendar(2000, 1, 1, 12, longitude)) *
                       24);
  };
  EXPECT_EQ(zone(0), 0);
  EXPECT_EQ(zone(7.4), 0);
  EXPECT_EQ(zone(-7.4), 0);
  EXPECT_EQ(zone(7.5), 1);
  EXPECT_EQ(zone(-7.5), -1);
  EXPECT_EQ(zone(-105), -7);
  EXPECT_EQ(zone(180), 12);
}

TEST(Calendar, TurnsBackBeforeTheGregorianDays) {
  const CalendarDate date = CalendarFromJulianDate(2299159.5, 0);
  EXPECT_EQ(date.year, 1582);
  EXPECT_EQ(date.month, 10);
  EXPECT_EQ(date.day, 4) << "the day before the 15th";
}

TEST(Calendar, GivesNoDateForWhatIsNone) {
  for (double julianDate : {std::nan(""), 1e300, -1e300, std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(CalendarFromJulianDate(julianDate, 0).month, 0) << julianDate;
    EXPECT_EQ(CalendarFromJulianDate(2451545, julianDate).month, 0) << julianDate;
  }
}

TEST(Calendar, GivesBackEverySecondOfADay) {
  for (int second = 0; second < 86400; ++second) {
    const double julianDate = JulianDateFromCalendar(2024, 6, 21, second / 3600.0, 8.4);
    const CalendarTime back = CalendarTimeFromJulianDate(julianDate, 8.4);
    ASSERT_EQ(back.day, 21);
    ASSERT_EQ((back.hour * 60 + back.minute) * 60 + back.second, second);
  }
}

}  // namespace
}  // namespace qv

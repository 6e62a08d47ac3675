#include <gtest/gtest.h>

#include <clocale>

#include "app/NumericLocale.h"
#include "app/StatusTexts.h"
#include "core/Calendar.h"

namespace qv {
namespace {

TEST(SunTimeText, TellsLocalTimeOfTheZoneOfTheLongitude) {
  // Julian date 2451545.0 is 2000-01-01 12:00 UT.
  EXPECT_EQ(SunTimeText(2451545.0, 0), "12:00 1/1");
  EXPECT_EQ(SunTimeText(2451545.0, 15), "13:00 1/1");
  EXPECT_EQ(SunTimeText(2451545.0, -180), "00:00 1/1");
  EXPECT_EQ(SunTimeText(2451545.0, 180), "00:00 1/2");
}

TEST(SunTimeText, ShowsEveryMinuteThatWasSent) {
  for (int minute = 0; minute < 24 * 60; ++minute) {
    const double julianDate = JulianDateFromCalendar(2024, 6, 21, minute / 60.0, 8.4);
    char expected[32];
    std::snprintf(expected, sizeof(expected), "%02d:%02d 6/21", minute / 60, minute % 60);
    ASSERT_EQ(SunTimeText(julianDate, 8.4f), expected);
  }
}

TEST(StatusTexts, UseADecimalPoint) {
  UseDecimalPoint();
  EXPECT_STREQ(std::localeconv()->decimal_point, ".");
  EXPECT_EQ(EyeHeightText(70), "Cam Height: 70.0\"");
  EXPECT_EQ(EyeHeightText(-3.26f), "Cam Height: -3.3\"");
  EXPECT_EQ(StatisticsText(0.0314, 1.5, 12345, 7),
            "Rendering Time = 0.031 Rendering Time(AA)= 1.500\nPolygon = 12345, Material = 7");
}

}  // namespace
}  // namespace qv

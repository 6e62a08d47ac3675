#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "sky/SunColor.h"
#include "sky/SunPosition.h"

namespace qv::sky {
namespace {

constexpr double kDegree = std::numbers::pi / 180;

LocalTime TimeOf(int year, int month, int day, double hours, double timeZone = 0) {
  LocalTime time;
  time.SetDaylightSaving(false);
  time.SetYear(year);
  time.SetMonth(month);
  time.SetDay(day);
  time.SetHour(static_cast<int>(hours));
  const double minutes = (hours - std::floor(hours)) * 60;
  time.SetMinute(static_cast<int>(minutes));
  time.SetSeconds((minutes - std::floor(minutes)) * 60);
  time.SetTimeZone(timeZone);
  return time;
}

Location PlaceAt(double latitude, double longitude) {
  Location place;
  place.SetLatitude(latitude);
  place.SetLongitude(longitude);
  return place;
}

double ElevationOf(const Eigen::Vector3d& position) {
  return std::asin(position.y()) / kDegree;
}

// From north through east, 0 to 360 degrees.
double AzimuthOf(const Eigen::Vector3d& position) {
  const double azimuth = std::atan2(position.x(), -position.z()) / kDegree;
  return azimuth < 0 ? azimuth + 360 : azimuth;
}

double HighestElevation(int year, int month, int day, double latitude) {
  double highest = -90;
  for (int minute = 0; minute < 24 * 60; ++minute) {
    const LocalTime time = TimeOf(year, month, day, minute / 60.0);
    highest = std::max(highest, ElevationOf(SunPosition(time, PlaceAt(latitude, 0))));
  }
  return highest;
}

// I. Reda and A. Andreas, "Solar Position Algorithm for Solar Radiation Applications",
// NREL/TP-560-34302, appendix A.5: Golden, Colorado, 2003-10-17 12:30:30 at UT-7. Its elevation
// without refraction is 39.87205 degrees, and sea level air adds 1.16 minutes of arc.
TEST(SunPosition, AgreesWithThePublishedExampleOfThePreciseTheory) {
  const Eigen::Vector3d sun =
      SunPosition(TimeOf(2003, 10, 17, 12 + 30.5 / 60, -7.0), PlaceAt(39.742476, -105.1786));
  EXPECT_NEAR(ElevationOf(sun), 39.87205 + 1.16 / 60, 0.01);
  EXPECT_NEAR(AzimuthOf(sun), 194.34024, 0.02);
}

// The declination of the sun is +23.44 degrees at the June solstice, -23.44 at the December one,
// and passes 0 on 2006-03-20 at 18:26 UT.
TEST(SunPosition, StandsAtNoonWhereTheSeasonPutsIt) {
  EXPECT_NEAR(HighestElevation(2006, 6, 21, 50), 90 - 50 + 23.44, 0.02);
  EXPECT_NEAR(HighestElevation(2006, 12, 22, 50), 90 - 50 - 23.44, 0.07);  // refraction 0.053
  EXPECT_NEAR(HighestElevation(2006, 12, 22, -35), 90 - 35 + 23.44, 0.02);
  EXPECT_NEAR(HighestElevation(2006, 3, 20, 40), 90 - 40, 0.13);
  EXPECT_LT(HighestElevation(2006, 12, 22, 70), 0) << "polar night";
}

// The equation of time is greatest on 3 November, +16 min 25 s, and least on 11 February, -14 min
// 14 s; the sun crosses the meridian of Greenwich at 12:00 less that.
TEST(SunPosition, CrossesTheMeridianByTheEquationOfTime) {
  const Location greenwich = PlaceAt(51.48, 0);
  const double november = 12 - (16 + 25 / 60.0) / 60;
  const double february = 12 + (14 + 14 / 60.0) / 60;
  EXPECT_NEAR(AzimuthOf(SunPosition(TimeOf(2006, 11, 3, november), greenwich)), 180, 0.04);
  EXPECT_NEAR(AzimuthOf(SunPosition(TimeOf(2006, 2, 11, february), greenwich)), 180, 0.04);
}

// Values for 1010 hPa and 10 degrees Celsius, in minutes of arc (The Astronomical Almanac; J.
// Meeus, Astronomical Algorithms, chapter 16): 34.5 at a seen horizon is 28.9 for a true elevation
// of 0.
TEST(Refraction, LiftsBodiesByThePublishedAmounts) {
  const auto lift = [](double degrees) {
    return (Refracted(degrees * kDegree) / kDegree - degrees) * 60;
  };
  EXPECT_NEAR(lift(0), 28.9, 0.2);
  EXPECT_NEAR(lift(10), 5.3, 0.1);
  EXPECT_NEAR(lift(45), 0.97, 0.03);
  EXPECT_EQ(lift(90), 0);
  for (double degrees = -89; degrees < 90; degrees += 0.25) {
    EXPECT_LT(Refracted(degrees * kDegree), Refracted((degrees + 0.25) * kDegree)) << degrees;
  }
}

TEST(SunColor, IsNearlyWhiteAtNoonAndOrangeByEvening) {
  const Vec3 noon = SunColor(std::sin(60 * kDegree));
  EXPECT_GT(noon.minCoeff(), 0.75f);
  EXPECT_LE(noon.maxCoeff(), 1.0f);
  EXPECT_LT(noon.maxCoeff() - noon.minCoeff(), 0.05f);

  const Vec3 evening = SunColor(std::sin(4 * kDegree));
  EXPECT_GT(evening.x(), 1.2f * evening.y());
  EXPECT_GT(evening.y(), 1.5f * evening.z());
  EXPECT_GT(evening.x(), 0.2f);
}

TEST(SunColor, GrowsWithElevationAndIsBlackAfterSunset) {
  EXPECT_EQ(SunColor(-1), Vec3(0, 0, 0));
  EXPECT_EQ(SunColor(std::sin(-0.28 * kDegree)), Vec3(0, 0, 0));
  Vec3 before(0, 0, 0);
  for (double degrees = -0.26; degrees < 90; degrees += 0.5) {
    const Vec3 color = SunColor(std::sin(degrees * kDegree));
    for (int i = 0; i < 3; ++i) EXPECT_GE(color[i], before[i]) << degrees;
    before = color;
  }
}

TEST(LightDirection, TakesTheSkysAxesToTheModels) {
  const auto expect = [](const Vec3& got, const Vec3& expected) {
    EXPECT_LT((got - expected).norm(), 1e-6f) << got.transpose();
  };
  expect(LightDirection({1, 0, 0}, 0), {-1, 0, 0});  // in the east
  expect(LightDirection({0, 0, 1}, 0), {0, 1, 0});   // in the south
  expect(LightDirection({0, 2, 0}, 1), {0, 0, -1});  // overhead
  // A quarter turn takes light that goes north to light that goes west.
  expect(LightDirection({0, 0, 1}, std::numbers::pi_v<float> / 2), {-1, 0, 0});
  expect(LightDirection({0, 0, 0}, 0), {0, 0, 0});
}

}  // namespace
}  // namespace qv::sky

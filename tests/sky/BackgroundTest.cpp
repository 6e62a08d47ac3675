#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "core/Calendar.h"
#include "sky/Background.h"

namespace qv::sky {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

SkyMoment MomentAt(float latitude, float longitude, int year, int month, int day, double hours,
                   float timeZone) {
  SkyMoment moment;
  moment.latitude = latitude;
  moment.longitude = longitude;
  moment.timeZone = timeZone;
  moment.julianDate = JulianDateFromCalendar(year, month, day, hours, longitude);
  return moment;
}

SunRecord SunAt(const SkyMoment& moment) {
  static Background* const background = new Background;
  background->SetMoment(moment);
  EXPECT_TRUE(background->Update());
  return background->sun();
}

void ExpectSameSun(const SkyMoment& one, const SkyMoment& other, float degrees = 0.01f) {
  const Vec3 a = SunAt(one).direction;
  const Vec3 b = SunAt(other).direction;
  EXPECT_LT((a - b).norm(), degrees * std::numbers::pi_v<float> / 180)
      << a.transpose() << " and " << b.transpose();
}

TEST(Background, UpdatesOnlyWhatWasMarked) {
  Background background;
  EXPECT_TRUE(background.Update()) << "the first picture needs a sky";
  EXPECT_EQ(background.faces().pixels[5].size(), std::size_t{1024} * 1024 * 4);
  EXPECT_FALSE(background.Update());

  background.SetMoment(MomentAt(50, 8, 2006, 6, 21, 12, 1));
  EXPECT_TRUE(background.Update());
  EXPECT_FALSE(background.Update());

  background.SetType(8, 3);
  EXPECT_EQ(background.Type(), 8);
  EXPECT_EQ(background.CubeMapIndex(), 0) << "of an empty list";
  EXPECT_TRUE(background.Update());
  EXPECT_FALSE(background.Update());
}

TEST(Background, ShinesFromTheSouthAtNoonInTheNorth) {
  const SunRecord sun = SunAt(MomentAt(50, 15, 2006, 6, 21, 12, 1));
  EXPECT_NEAR(sun.direction.norm(), 1, 1e-6);
  EXPECT_NEAR(sun.direction.x(), 0, 0.02);
  EXPECT_GT(sun.direction.y(), 0.4f);
  EXPECT_NEAR(sun.direction.z(), -std::sin((90 - 50 + 23.44) * std::numbers::pi / 180), 0.002);
  EXPECT_GT(sun.color.minCoeff(), 0.7f);
}

TEST(Background, TurnsTheSunWithTheModelsNorth) {
  SkyMoment moment = MomentAt(50, 15, 2006, 6, 21, 12, 1);
  const Vec3 plain = SunAt(moment).direction;
  moment.sunRotation = std::numbers::pi_v<float> / 2;
  const Vec3 turned = SunAt(moment).direction;
  EXPECT_LT((turned - Vec3(-plain.y(), plain.x(), plain.z())).norm(), 1e-5f);
}

// Published times for London on the longest day: sunrise at 4:43 and sunset at 21:21 summer time.
TEST(Background, LightsTheModelFromSunriseToSunset) {
  const auto lit = [](double hours) {
    return SunAt(MomentAt(51.5f, -0.13f, 2006, 6, 21, hours, 0)).color.maxCoeff() > 0;
  };
  EXPECT_FALSE(lit(3 + 41 / 60.0));
  EXPECT_TRUE(lit(3 + 46 / 60.0));
  EXPECT_TRUE(lit(20 + 18 / 60.0));
  EXPECT_FALSE(lit(20 + 24 / 60.0));
}

// Madrid keeps the clock of an hour east of where it lies: its noon by the clock is 11 hours UT.
TEST(Background, ReadsTheClockInTheUsersTimeZone) {
  ExpectSameSun(MomentAt(40.4f, -3.7f, 2006, 6, 21, 12, 1),
                MomentAt(40.4f, -3.7f, 2006, 6, 21, 11, 0));
  // Half hours and the other side of the date line of the zone count.
  ExpectSameSun(MomentAt(28.6f, 77.2f, 2006, 6, 21, 12, 5.5f),
                MomentAt(28.6f, 77.2f, 2006, 6, 21, 6.5, 0));
}

TEST(Background, KeepsTheDefaultsForPlacesAndTimesThatDoNotExist) {
  ExpectSameSun(MomentAt(91, -120, 2006, 6, 21, 12, -8), MomentAt(30, -120, 2006, 6, 21, 12, -8));
  ExpectSameSun(MomentAt(kNan, -120, 2006, 6, 21, 12, -8), MomentAt(30, -120, 2006, 6, 21, 12, -8));
  ExpectSameSun(MomentAt(40, -120, 2006, 6, 21, 12, 13), MomentAt(40, -120, 2006, 6, 21, 12, -8));
  ExpectSameSun(MomentAt(40, -120, 1500, 6, 21, 12, -8), MomentAt(40, -120, 2006, 6, 21, 12, -8),
                0.1f);
}

TEST(Background, StaysFiniteWhateverTheMoment) {
  for (double julianDate : {0.0, -1e300, 1e300, std::nan(""), 2451545.0}) {
    for (float angle : {kNan, 1e38f, -1e38f, std::numeric_limits<float>::infinity(), 10.0f}) {
      SkyMoment moment;
      moment.sunRotation = angle;
      moment.latitude = angle;
      moment.longitude = angle;
      moment.timeZone = angle;
      moment.julianDate = julianDate;
      const SunRecord sun = SunAt(moment);
      EXPECT_NEAR(sun.direction.norm(), 1, 1e-5) << julianDate << ' ' << angle;
      EXPECT_TRUE(sun.color.allFinite());
    }
  }
}

}  // namespace
}  // namespace qv::sky

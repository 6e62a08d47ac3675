#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "host/app/Options.h"
#include "host/app/Sunlight.h"

namespace qv::host {
namespace {

// At noon by the sun on the equator at the equinox it stands overhead; at the solstice in the
// middle of Europe in the south, 90 - 48.1 + 23.4 degrees high.
TEST(Sunlight, ComesFromWhereTheSunStands) {
  LocationAndTime when = DefaultPlaceAndTime();
  when.day = 21;
  // 12:00 + 13.6 minutes for the longitude within the zone + 1.9 minutes of the equation of time.
  when.hour = 12;
  when.minute = 15;
  when.second = 30;
  const Vec3 light = SunlightAt(when);
  EXPECT_NEAR(light.norm(), 1, 1e-5f);
  const float height = std::asin(-light.z()) * 180 / std::numbers::pi_v<float>;
  EXPECT_NEAR(height, 65.3f, 0.2f);
  EXPECT_GT(light.y(), 0.4f);
  EXPECT_NEAR(light.x(), 0, 0.01f);

  // With north in the model's +x the sun shines along -x... that is, from the model's -x side.
  when.sunRotation = -std::numbers::pi_v<float> / 2;
  EXPECT_GT(SunlightAt(when).x(), 0.4f);
}

}  // namespace
}  // namespace qv::host

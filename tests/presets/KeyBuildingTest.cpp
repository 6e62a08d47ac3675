#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "presets/KeyBuilding.h"

namespace qv {
namespace {

constexpr double kTurnRate = 0.785398;
constexpr float kPi = std::numbers::pi_v<float>;
const SunRecord kNoSun;

ViewPreset View(const Vec3& position, float yaw = 0, float pitch = 0, float fieldOfView = 0.5f) {
  return {"View", {position, QuaternionFromYawPitch(yaw, pitch), fieldOfView},
          0,      70,
          false,  {2456000, 35, 139, 2, 5}};
}

std::vector<CameraKey> Build(const std::vector<ViewPreset>& views, float speed = 10) {
  return BuildKeyframePath(views, speed, kNoSun, 1, 1);
}

// A cubic by its Bezier points, halved down by de Casteljau's construction: another way to the
// curve between two points with their tangents.
Vec3 Bezier(const Vec3& from, const Vec3& to, const Vec3& fromTangent, const Vec3& toTangent,
            float s) {
  Vec3 points[] = {from, from + fromTangent / 3, to - toTangent / 3, to};
  for (int left = 3; left > 0; --left) {
    for (int i = 0; i < left; ++i) points[i] += s * (points[i + 1] - points[i]);
  }
  return points[0];
}

// Expects the ten keys of one span of many to lie on that curve, in even steps of its parameter.
void ExpectSpan(const std::vector<CameraKey>& keys, std::size_t span, const Vec3& from,
                const Vec3& to, const Vec3& fromTangent, const Vec3& toTangent) {
  for (std::size_t k = 1; k <= 10; ++k) {
    const Vec3 expected = Bezier(from, to, fromTangent, toTangent, static_cast<float>(k) / 10);
    const Vec3& got = keys[1 + span * 10 + k].pose.position;
    EXPECT_LT((got - expected).norm(), 1e-4f)
        << "span " << span << " key " << k << ": " << got.transpose();
  }
}

TEST(KeyframePath, JoinsTwoViewsByALine) {
  std::vector views{View({0, 0, 0}), View({30, 40, 0}, 0.2f, 0.1f, 0.9f)};
  const auto keys = Build(views);
  ASSERT_EQ(keys.size(), 4u);
  const double times[] = {0, 1, 6, 7};  // 50 units at 10 a second between the pauses
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_NEAR(keys[i].time, times[i], 1e-6);
    EXPECT_EQ(keys[i].pose.position, views[i / 2].pose.position);
    EXPECT_EQ(keys[i].pose.orientation.coeffs(), views[i / 2].pose.orientation.coeffs());
    EXPECT_EQ(keys[i].pose.fieldOfView, 0.5f);
    EXPECT_EQ(keys[i].sun.julianDate, 2456000);
    EXPECT_EQ(keys[i].sun.sunTag, 5);
  }
  // Turns need their time: 350 degrees the long way round, or 0.6 of slope.
  EXPECT_NEAR(Build({View({0, 0, 0}, -3), View({1, 0, 0}, 3)})[2].time, 1 + 6 / kTurnRate, 1e-4);
  EXPECT_NEAR(Build({View({0, 0, 0}, 0, -0.2f), View({1, 0, 0}, 0, 0.4f)})[2].time,
              1 + 0.6 / kTurnRate, 1e-4);
  EXPECT_EQ(Build({View({0, 0, 0}), View({0, 0, 0})})[2].time, 1);
}

TEST(KeyframePath, RunsOnOneCurveThroughThreeViews) {
  const Vec3 a(0, 0, 0), b(100, 0, 0), c(100, 100, 20);
  const auto keys = Build({View(a), View(b), View(c)});
  ASSERT_EQ(keys.size(), 23u);
  const Vec3 first(50, 0, 0), middle(50, 50, 10), last(0, 50, 10);  // tangents
  ExpectSpan(keys, 0, a, b, first, middle);
  ExpectSpan(keys, 1, b, c, middle, last);
  EXPECT_EQ(keys[11].pose.position, b);

  // The camera's speed is that asked for on every step.
  EXPECT_EQ(keys[1].time, 1);
  for (std::size_t i = 2; i < 22; ++i) {
    const double way = (keys[i].pose.position - keys[i - 1].pose.position).norm();
    EXPECT_NEAR((keys[i].time - keys[i - 1].time) * 10, way, 1e-3);
  }
  EXPECT_NEAR(keys[22].time - keys[21].time, 1, 1e-12);
  EXPECT_EQ(keys[22].pose.position, c);
  EXPECT_EQ(keys[0].sun.julianDate, 0);  // of the animation, not of the view
  EXPECT_EQ(keys[22].sun.sunTag, 5);     // of the view
}

TEST(KeyframePath, GoesOnAsItBeganWhereItCloses) {
  const Vec3 a(0, 0, 0), b(100, 0, 0), c(50, 80, 0);
  const auto keys = Build({View(a), View(b), View(c), View(a)});
  ASSERT_EQ(keys.size(), 33u);
  const Vec3 atA = (b - c) / 2, atB = c / 2, atC = -b / 2;
  ExpectSpan(keys, 0, a, b, atA, atB);
  ExpectSpan(keys, 1, b, c, atB, atC);
  ExpectSpan(keys, 2, c, a, atC, atA);
}

TEST(KeyframePath, DoesNotSwingWideOnAShortSpanBesideALongOne) {
  // Short behind long: the curve comes from a point 30 before the middle view.
  const Vec3 a(0, 0, 0), b(100, 0, 0), c(100, 10, 0);
  ExpectSpan(Build({View(a), View(b), View(c)}), 1, b, c, (c - Vec3(70, 0, 0)) / 2, (c - b) / 2);
  // Long behind short: it goes to a point 30 beyond.
  ExpectSpan(Build({View(c), View(b), View(a)}), 0, c, b, (b - c) / 2, (Vec3(70, 0, 0) - c) / 2);
  // Short between long ones.
  const Vec3 d(0, 10, 0);
  const auto between = Build({View(a), View(b), View(c), View(d)});
  ExpectSpan(between, 1, b, c, (c - Vec3(70, 0, 0)) / 2, (Vec3(70, 10, 0) - b) / 2);
  // Short behind long, and a middling one after it; then mirrored.
  const Vec3 e(100, 10, 40);
  ExpectSpan(Build({View(a), View(b), View(c), View(e)}), 1, b, c, (c - Vec3(70, 0, 0)) / 2,
             (e - b) / 2);
  ExpectSpan(Build({View(e), View(c), View(b), View(a)}), 1, c, b, (b - e) / 2,
             (Vec3(70, 0, 0) - c) / 2);
  // A fifth is not short.
  const Vec3 f(100, 20, 0);
  ExpectSpan(Build({View(a), View(b), View(f)}), 1, b, f, (f - a) / 2, (f - b) / 2);
}

TEST(KeyframePath, TakesANegligibleSpanStraight) {
  // 0.04 of a unit, where 0.05 is flown in five milliseconds.
  const Vec3 a(0, 0, 0), b(100, 0, 0), c(100, 0.04f, 0), d(0, 100, 0);
  const auto keys = Build({View(a), View(b), View(c), View(d)});
  ExpectSpan(keys, 1, b, c, (c - b) / 2, (c - b) / 2);
  EXPECT_EQ(keys[21].pose.position, c);
}

TEST(KeyframePath, TurnsTheShortWayAndNotTooFast) {
  // Headings 3, -3 (that is 3.28) and -2: on by 0.283, then on by 1.
  const auto keys = Build({View({0, 0, 0}, 3), View({1, 0, 0}, -3), View({2, 0, 0}, -2)}, 1000);
  ASSERT_EQ(keys.size(), 23u);
  const float turn = 2 * kPi - 6;
  for (int k = 0; k <= 20; ++k) {
    const float yaw = k <= 10 ? 3 + turn * k / 10 : 3 + turn + 1.0f * (k - 10) / 10;
    const Vec3 direction(-std::cos(yaw), -std::sin(yaw), 0);
    const auto& orientation = keys[static_cast<std::size_t>(k) + 1].pose.orientation;
    EXPECT_LT((DirectionFromQuaternion(orientation) - direction).norm(), 1e-4f) << k;
    // No jump to the other of the two quaternions of an orientation.
    EXPECT_GT(orientation.dot(keys[static_cast<std::size_t>(k)].pose.orientation), 0.9f) << k;
  }
  EXPECT_NEAR(keys[11].time, 1 + turn / kTurnRate, 1e-4);
  EXPECT_NEAR(keys[21].time, 1 + (turn + 1) / kTurnRate, 1e-4);
}

TEST(KeyframePath, KeepsItsHeadOnDegenerateViews) {
  EXPECT_TRUE(Build({}).empty());
  EXPECT_EQ(Build({View({1, 2, 3})}).size(), 3u);
  for (const CameraKey& key : Build({View({1, 2, 3}), View({1, 2, 3}), View({1, 2, 3})})) {
    EXPECT_LT((key.pose.position - Vec3(1, 2, 3)).norm(), 1e-5f);
    EXPECT_LT(key.time, 2.001);
  }
}

TEST(Tour, StaysAtEachViewAndTravelsBetween) {
  std::vector views{View({0, 0, 0}), View({9, 0, 0}, 1, 0, 0.7f), View({0, 0, 9})};
  views[1].sun.sunTag = 8;
  const auto keys = BuildTour(views, 1, 1.5, 2, 3);
  ASSERT_EQ(keys.size(), 6u);
  const double times[] = {0, 1, 3, 6, 8, 9.5};
  for (std::size_t i = 0; i < 6; ++i) {
    EXPECT_EQ(keys[i].time, times[i]);
    EXPECT_EQ(keys[i].pose.position, views[i / 2].pose.position);
  }
  EXPECT_EQ(keys[3].pose.fieldOfView, 0.7f);
  EXPECT_EQ(keys[3].sun.sunTag, 8);
  EXPECT_EQ(BuildTour(std::span(views).first(1), 1, 1.5, 2, 3).back().time, 1);
}

}  // namespace
}  // namespace qv

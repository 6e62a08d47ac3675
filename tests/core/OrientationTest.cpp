#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>

#include "core/Orientation.h"

namespace qv {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;

TEST(Orientation, TellsHeadingAndSlope) {
  const struct {
    Vec3 direction;
    float yaw, pitch;
  } cases[] = {
      {{-2, 0, 0}, 0, 0},
      {{0, -1, 0}, kPi / 2, 0},
      {{0, 1, 0}, -kPi / 2, 0},
      {{1, 0, 0}, kPi, 0},
      {{-1, 0, 1}, 0, kPi / 4},
      {{-1, 1, -std::sqrt(2.0f)}, -kPi / 4, -kPi / 4},
      {{0, 0, -3}, kPi / 2, -kPi / 2},  // no horizontal part
      {{0, 0, 0}, kPi / 2, kPi / 2},
  };
  for (const auto& [direction, yaw, pitch] : cases) {
    const YawPitch angles = YawPitchFromDirection(direction);
    EXPECT_NEAR(angles.yaw, yaw, 1e-6) << direction.transpose();
    EXPECT_NEAR(angles.pitch, pitch, 1e-6) << direction.transpose();
  }
}

TEST(Orientation, LooksWhereItWasToldAndStandsUpright) {
  std::mt19937 random(1);
  std::normal_distribution<float> normal;
  for (int i = 0; i < 1000; ++i) {
    const Vec3 direction = Vec3(normal(random), normal(random), normal(random)).normalized();
    RenderCamera camera;
    camera.forward = direction;
    const RenderCamera level = CameraFromPose(LevelPose(camera));
    EXPECT_LT((level.forward - direction).norm(), 2e-3f) << direction.transpose();
    EXPECT_NEAR(level.up.dot(level.forward), 0, 1e-5);
    EXPECT_NEAR(level.up.cross(level.forward).z(), 0, 1e-5);  // the horizon lies level
    EXPECT_GT(level.up.z(), 0);
  }
}

TEST(Orientation, IsMixedOnTheShortArc) {
  std::mt19937 random(2);
  std::normal_distribution<float> normal;
  const auto any = [&] {
    return Eigen::Quaternionf(normal(random), normal(random), normal(random), normal(random))
        .normalized();
  };
  for (int i = 0; i < 1000; ++i) {
    const Eigen::Quaternionf q0 = any(), q1 = any();
    const float t = static_cast<float>(i) / 1000;
    EXPECT_LT((Slerp(q0, t, q1).coeffs() - q0.slerp(t, q1).coeffs()).norm(), 1e-4f);
    EXPECT_NEAR(QuaternionAngle(q0, q1), q0.angularDistance(q1), 1e-4);
  }
  const Eigen::Quaternionf q = any();
  EXPECT_EQ(Slerp(q, 0.25, q).coeffs(), q.coeffs());
}

}  // namespace
}  // namespace qv

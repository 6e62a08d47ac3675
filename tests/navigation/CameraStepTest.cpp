#include <gtest/gtest.h>

#include <cmath>

#include "FakeScene.h"
#include "navigation/CameraMath.h"
#include "navigation/CameraStep.h"

namespace qv {
namespace {

constexpr double kDegree = 3.14159265358979 / 180;

void ExpectNear(const Vec3& actual, const Vec3& expected, float tolerance) {
  EXPECT_LE((actual - expected).norm(), tolerance)
      << actual.transpose() << " instead of " << expected.transpose();
}

class CameraStep : public ::testing::Test {
 protected:
  // Looks along +y from 100 above the origin.
  CameraStep() {
    input_.camera.position = {0, 0, 100};
    input_.seconds = 0.1;
    input_.eyeHeight = 70;
  }

  StepResult Step() { return StepCamera(input_, scene_); }
  // Steps until `done` says so; the time that it took, or -1.
  template <class Done>
  double Run(double seconds, Done&& done) {
    input_.seconds = seconds;
    for (int steps = 1; steps < 10000; ++steps) {
      const StepResult result = Step();
      input_.camera = result.camera;
      input_.state = result.state;
      if (done(result)) return steps * seconds;
    }
    return -1;
  }

  StepInput input_;
  FakeScene scene_;
};

TEST_F(CameraStep, KeysMoveHorizontallyAtFiftyUnitsASecond) {
  input_.camera.forward = Vec3(0, 0.6f, -0.8f);  // tilted: the way stays level
  input_.camera.up = Vec3(0, 0.8f, 0.6f);
  input_.held.forward = true;
  ExpectNear(Step().camera.position, {0, 5, 100}, 1e-4f);
  input_.held.rightward = true;
  ExpectNear(Step().camera.position, {5, 5, 100}, 1e-4f);
  input_.held = {};
  input_.held.leftward = input_.held.backward = input_.held.rise = true;
  ExpectNear(Step().camera.position, {-5, -5, 105}, 1e-4f);
  // Shift turns Space round, and has reached a boost of 2 at the end of this step.
  input_.held = {};
  input_.held.rise = input_.held.shift = true;
  ExpectNear(Step().camera.position, {0, 0, 90}, 1e-4f);
  // Straight up there is no way ahead.
  input_.held = {};
  input_.held.forward = true;
  input_.camera.forward = {0, 0, 1};
  input_.camera.up = {0, -1, 0};
  EXPECT_FALSE(Step().render);
}

TEST_F(CameraStep, AStallCountsAsATenthOfASecond) {
  input_.held.forward = true;
  input_.seconds = 1;
  ExpectNear(Step().camera.position, {0, 5, 100}, 1e-4f);
  input_.seconds = -1;
  ExpectNear(Step().camera.position, {0, 0, 100}, 1e-4f);
}

TEST_F(CameraStep, BoostGrowsByTenASecondAndFallsTwiceAsFast) {
  input_.held.shift = true;
  EXPECT_NEAR(Run(0.01, [](const StepResult& r) { return r.state.boost >= 10; }), 0.9, 0.0101);
  EXPECT_EQ(Step().state.boost, 10);
  input_.held.shift = false;
  EXPECT_NEAR(Run(0.01, [](const StepResult& r) { return r.state.boost <= 1; }), 0.45, 0.0101);
  EXPECT_EQ(Step().state.boost, 1);
}

TEST_F(CameraStep, DriveGrowsWithTheDistanceFromThePress) {
  input_.held.left = true;
  input_.state.pressX = 400;
  input_.state.pressY = 300;
  // A tenth of the frame's 600 pixels ahead and to the right: 50 units and 15 degrees a second.
  input_.held.x = 460;
  input_.held.y = 240;
  const StepResult result = Step();
  ExpectNear(result.camera.position, {0, 5, 100}, 1e-4f);
  ExpectNear(result.camera.forward,
             Vec3(static_cast<float>(std::sin(1.5 * kDegree)),
                  static_cast<float>(std::cos(1.5 * kDegree)), 0),
             1e-6f);
  EXPECT_EQ(result.state.lastX, 460);
  // With the right button too nothing happens.
  input_.held.right = true;
  EXPECT_FALSE(Step().render);
}

// Tilted by any angle about its right side, the view is driven the way that is ahead on the screen.
TEST_F(CameraStep, DriveGoesAheadHoweverTheViewIsTilted) {
  for (int degrees = -170; degrees <= 170; degrees += 20) {
    const double a = degrees * kDegree;
    const Vec3 forward(0, static_cast<float>(std::cos(a)), static_cast<float>(std::sin(a)));
    const Vec3 up(0, static_cast<float>(-std::sin(a)), static_cast<float>(std::cos(a)));
    ExpectNear(DriveHeading(forward, up), {0, 1, 0}, 1e-6f);
  }
  ExpectNear(DriveHeading({0, 0, -1}, {0, 1, 0}), {0, 1, 0}, 1e-6f);
}

TEST_F(CameraStep, LookTurnsByThePixelsSinceTheLastStepWithoutRoll) {
  input_.held.right = true;
  input_.state.lastX = 100;
  input_.state.lastY = 100;
  input_.held.x = 150;  // 9 degrees to the right
  input_.held.y = 200;  // 18 degrees down
  StepResult result = Step();
  const double yaw = 9 * kDegree, pitch = 18 * kDegree;
  ExpectNear(result.camera.forward,
             Vec3(static_cast<float>(std::sin(yaw) * std::cos(pitch)),
                  static_cast<float>(std::cos(yaw) * std::cos(pitch)),
                  static_cast<float>(-std::sin(pitch))),
             1e-5f);
  ExpectNear(result.camera.position, {0, 0, 100}, 0);
  EXPECT_NEAR(result.camera.forward.cross(result.camera.up).z(), 0, 1e-6);
  // The same pixels do not count again.
  input_.state = result.state;
  EXPECT_FALSE(Step().render);
}

TEST_F(CameraStep, OrbitKeepsTheDistanceAndWhereThePivotIsSeen) {
  input_.held.middle = true;
  input_.state.orbitPivot = {30, 200, 40};
  const Vec3 arm = input_.camera.position - input_.state.orbitPivot;
  const float across = input_.camera.forward.dot(arm);
  for (int i = 0; i < 500; ++i) {
    input_.held.x += 7 * (i % 5) - 9;
    input_.held.y += i % 2 ? 3 : -2;
    const StepResult result = Step();
    input_.camera = result.camera;
    input_.state = result.state;
  }
  const Vec3 after = input_.camera.position - input_.state.orbitPivot;
  EXPECT_NEAR(after.norm(), arm.norm(), 0.02);
  EXPECT_NEAR(input_.camera.forward.dot(after), across, 0.05);
  EXPECT_GT((after - arm).norm(), 10);
  // A hand that rests starts no pictures.
  EXPECT_FALSE(Step().render);
}

TEST_F(CameraStep, PanDragsThePlaneUnderThePointer) {
  input_.held.middle = input_.held.shift = true;
  input_.state.panDistance = 200;
  input_.held.x = 10;
  input_.held.y = 20;
  // The scene's pixels are a thousandth of the distance: 0.2.
  ExpectNear(Step().camera.position, {-2, 0, 104}, 1e-4f);
}

TEST_F(CameraStep, ControlAndLeftMoveTheSun) {
  input_.held.left = input_.held.control = true;
  input_.held.x = 200;
  StepResult result = Step();
  EXPECT_NEAR(result.days, 2 * 0.125 * 0.1, 1e-12);
  EXPECT_FALSE(result.render);
  // Whole days with Shift.
  input_.held.shift = true;
  EXPECT_EQ(Step().days, 36);  // of 36.5
  input_.held.x = -200;
  EXPECT_EQ(Step().days, -36);
  // Steps that come to less than a day move nothing, however many there are.
  double days = 0;
  Run(0.002, [&, steps = 0](const StepResult& r) mutable {
    days += r.days;
    return ++steps == 100;
  });
  EXPECT_EQ(days, 0);
}

TEST_F(CameraStep, WalkerStopsFiveUnitsBeforeAWall) {
  input_.mode = NavigationMode::kWalk;
  scene_.wallY = 20;
  input_.held.forward = true;
  Run(0.03, [](const StepResult& r) { return !r.render; });
  ExpectNear(input_.camera.position, {0, 15, 100}, 1e-3f);
  // Nearer than that no way is open whose ray meets the wall, but the others are.
  input_.camera.position.y() = 17;
  input_.held.leftward = true;
  EXPECT_FALSE(Step().render);
  input_.held.forward = false;
  EXPECT_TRUE(Step().render);
  // Shift goes through.
  input_.seconds = 0.1;
  input_.held = {};
  input_.held.forward = input_.held.shift = true;
  EXPECT_GT(Step().camera.position.y(), 20);
}

TEST_F(CameraStep, WalkerFallsAtFiftyUnitsASecondSquaredAndLandsAtEyeHeight) {
  input_.mode = NavigationMode::kWalk;
  scene_.floor = [](float, float) { return 5.0f; };
  input_.camera.position.z() = 175;
  // 100 units down to 75 at 50 units a second squared: two seconds; half of that after 1.414.
  const double half = Run(0.001, [](const StepResult& r) { return r.camera.position.z() <= 125; });
  EXPECT_NEAR(half, std::sqrt(2.0), 0.005);
  EXPECT_NEAR(input_.state.fallSpeed, 50 * half, 0.1);
  const double rest = Run(0.001, [](const StepResult& r) { return r.state.fallSpeed == 0; });
  EXPECT_NEAR(half + rest, 2.0, 0.005);
  ExpectNear(input_.camera.position, {0, 0, 75}, 1e-4f);
  EXPECT_FALSE(Step().render);

  // A higher floor lifts the walker, and over nothing there is no fall.
  scene_.floor = [](float, float) { return 20.0f; };
  ExpectNear(Step().camera.position, {0, 0, 90}, 1e-4f);
  scene_.floor = [](float, float) { return std::nullopt; };
  input_.state.fallSpeed = 30;
  EXPECT_EQ(Step().state.fallSpeed, 0);
  EXPECT_FALSE(Step().render);
}

TEST_F(CameraStep, CastsNoRaysInFlightAndTwoInAWalk) {
  input_.held.forward = true;
  Step();
  EXPECT_EQ(scene_.rays, 0);
  input_.mode = NavigationMode::kWalk;
  Step();
  EXPECT_EQ(scene_.rays, 2);
}

TEST_F(CameraStep, ACameraWithoutDirectionStays) {
  input_.camera.forward = input_.camera.up = Vec3::Zero();
  input_.held = {.left = true, .forward = true, .leftward = true, .x = 50, .y = -50};
  const StepResult result = Step();
  EXPECT_TRUE(result.camera.position.allFinite());
  EXPECT_TRUE(result.camera.forward.isZero());
}

TEST(CameraRoll, IsTakenOutOfUp) {
  const Vec3 forward(0.6f, 0, 0.8f);
  ExpectNear(LevelUp(forward, {0, 1, 0}), {-0.8f, 0, 0.6f}, 1e-6f);
  ExpectNear(LevelUp({0, 0, -1}, {0, 1, 0}), {0, 1, 0}, 0);
}

}  // namespace
}  // namespace qv

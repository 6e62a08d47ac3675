#include <gtest/gtest.h>

#include "FakeScene.h"
#include "navigation/Navigator.h"

namespace qv {
namespace {

// The program around it: keeps what it was asked for.
class NotedActions : public NavigationActions {
 public:
  RenderCamera camera;
  float eyeHeight = 70;
  bool ticking = false, linked = true;
  std::optional<Vec3> hostTarget;
  int moving = 0, still = 0, sent = 0;
  double days = 0;

  RenderCamera Camera() const override { return camera; }
  float EyeHeight() const override { return eyeHeight; }
  void SetTicking(bool on) override { ticking = on; }
  void ShowMoving(const RenderCamera& shown) override {
    camera = shown;
    ++moving;
  }
  void ShowStill(const RenderCamera& shown) override {
    camera = shown;
    ++still;
  }
  void AddDays(double more) override { days += more; }
  bool IsCameraLinked() const override { return linked; }
  std::optional<Vec3> AskHostTarget() override { return hostTarget; }
  void SendCamera() override { ++sent; }
};

class NavigatorTest : public ::testing::Test {
 protected:
  // Ticks of a hundredth of a second until the clock is switched off; the seconds that it took.
  double Rest(const NavigationInput& held = {}) {
    const double start = now_;
    while (actions_.ticking && now_ < start + 100) navigator_.Tick(held, now_ += 0.01);
    return now_ - start;
  }

  FakeScene scene_;
  NotedActions actions_;
  Navigator navigator_{scene_, actions_};
  NavigationInput none_;
  NavigationInput ahead_{.forward = true};
  double now_ = 100;
};

TEST_F(NavigatorTest, OneMovementSendsOneCamera) {
  navigator_.KeyPressed(ahead_, now_);
  EXPECT_TRUE(actions_.ticking);
  navigator_.Tick(ahead_, now_ += 0.05);
  // A button comes and goes meanwhile, and the key repeats: time goes on.
  NavigationInput both = ahead_;
  both.left = true;
  navigator_.ButtonPressed(both, false, now_ += 0.01);
  navigator_.KeyPressed(both, now_ += 0.01);
  navigator_.Released(both, ahead_, now_ += 0.01);
  EXPECT_TRUE(actions_.ticking);
  EXPECT_EQ(actions_.sent, 0);
  // The way since the last tick counts.
  navigator_.Released(ahead_, none_, now_ += 0.02);
  EXPECT_FALSE(actions_.ticking);
  EXPECT_NEAR(actions_.camera.position.y(), 50 * 0.10, 1e-3);
  EXPECT_EQ(actions_.sent, 1);
  // Keys that move nothing, and a late tick, change nothing.
  navigator_.KeyPressed({.shift = true}, now_);
  navigator_.Released({.shift = true}, none_, now_);
  navigator_.Tick(none_, now_ += 1);
  EXPECT_EQ(actions_.sent, 1);
  actions_.linked = false;
  navigator_.KeyPressed(ahead_, now_);
  navigator_.Released(ahead_, none_, now_ += 0.02);
  EXPECT_EQ(actions_.sent, 1);
}

TEST_F(NavigatorTest, AMovementEndsWithTheLandingAndIsToldAtTheRelease) {
  scene_.floor = [](float, float) { return 0.0f; };
  actions_.camera.position = {0, 0, 95};
  navigator_.SetMode(NavigationMode::kWalk);
  navigator_.KeyPressed(ahead_, now_);
  navigator_.Tick(ahead_, now_ += 0.01);
  navigator_.Released(ahead_, none_, now_ += 0.01);
  EXPECT_TRUE(actions_.ticking);
  EXPECT_EQ(actions_.sent, 1) << "in mid-air";
  EXPECT_NEAR(Rest(), 1, 0.03);  // 25 units
  EXPECT_NEAR(actions_.camera.position.z(), 70, 1e-4);

  // Who gets a lower eye height sinks to it: 25 units take one second.
  actions_.eyeHeight = 45;
  navigator_.EyeHeightChanged(now_);
  EXPECT_NEAR(Rest(), 1, 0.03);
  EXPECT_NEAR(actions_.camera.position.z(), 45, 1e-4);
  EXPECT_EQ(actions_.sent, 1) << "neither at the landing nor of an eye height";

  // A fall ends where flying begins.
  actions_.camera.position.z() = 500;
  navigator_.EyeHeightChanged(now_);
  navigator_.Tick(none_, now_ += 0.01);
  navigator_.SetMode(NavigationMode::kFly);
  const int moving = actions_.moving;
  EXPECT_LT(Rest(), 0.02);
  EXPECT_EQ(actions_.moving, moving);
}

TEST_F(NavigatorTest, MiddlePressTakesThePivotFromWhatIsSeen) {
  NavigationInput held{.middle = true, .x = 100, .y = 100};
  const auto orbit = [&] {
    actions_.camera = {};
    held.x = 100;
    navigator_.ButtonPressed(held, true, now_);
    // Half a turn ends on the other side of the pivot.
    held.x = 1100;
    navigator_.Tick(held, now_ += 0.01);
    navigator_.Released(held, none_, now_);
    return Vec3(actions_.camera.position / 2);
  };
  actions_.linked = false;
  scene_.picked = {true, {10, 40, 0}, 41.2f, {0, 1, 0}};
  EXPECT_LT((orbit() - Vec3(10, 40, 0)).norm(), 1e-3f);
  // Beside the model: straight ahead, as far as its middle.
  scene_.picked = {};
  scene_.bounds = SceneBox{{20, -10, -10}, {40, 10, 10}};
  EXPECT_LT((orbit() - Vec3(0, 30, 0)).norm(), 1e-3f);
  // A host that answers knows better.
  actions_.linked = true;
  EXPECT_LT((orbit() - Vec3(0, 30, 0)).norm(), 1e-3f);
  actions_.hostTarget = Vec3(-5, 6, 0);
  EXPECT_LT((orbit() - Vec3(-5, 6, 0)).norm(), 1e-3f);
}

TEST_F(NavigatorTest, ShiftAndMiddleDragWhatIsUnderThePointer) {
  NavigationInput held{.middle = true, .shift = true, .x = 100, .y = 100};
  const auto pan = [&] {
    actions_.camera = {};
    held.x = held.y = 100;
    navigator_.ButtonPressed(held, true, now_);
    held.x = 130;
    held.y = 90;
    navigator_.Tick(held, now_ += 0.01);
    navigator_.Released(held, none_, now_);
    return actions_.camera.position;
  };
  // A pixel is a thousandth of the distance; the eye goes against the hand.
  scene_.picked = {true, {0, 500, 0}, 500, {0, 1, 0}};
  EXPECT_LT((pan() - Vec3(-15, 0, -5)).norm(), 1e-4f);
  EXPECT_EQ(scene_.lastPick, std::pair(100, 100));
  // Beside the model: as far as its middle.
  scene_.picked = {};
  scene_.bounds = SceneBox{{-10, 150, -10}, {10, 250, 10}};
  EXPECT_LT((pan() - Vec3(-6, 0, -2)).norm(), 1e-4f);
}

TEST_F(NavigatorTest, RollIsTakenBackInOneStillPicture) {
  actions_.camera.position = {1, 2, 3};
  actions_.camera.forward = {0, 0.6f, 0.8f};
  actions_.camera.up = {1, 0, 0};
  navigator_.ResetRoll();
  EXPECT_EQ(actions_.still, 1);
  EXPECT_EQ(actions_.moving, 0);
  EXPECT_LT((actions_.camera.up - Vec3(0, -0.8f, 0.6f)).norm(), 1e-6f);
  EXPECT_EQ(actions_.camera.forward, Vec3(0, 0.6f, 0.8f));
  EXPECT_EQ(actions_.camera.position, Vec3(1, 2, 3));
}

TEST_F(NavigatorTest, ControlAndLeftMoveTheSunAndNotTheCamera) {
  NavigationInput held{.left = true, .control = true, .x = 100, .y = 100};
  navigator_.ButtonPressed(held, false, now_);
  held.x = 300;
  navigator_.Tick(held, now_ += 0.05);
  navigator_.Tick(held, now_ += 0.05);
  EXPECT_NEAR(actions_.days, 2 * 0.125 * 0.1, 1e-9);
  EXPECT_EQ(actions_.moving + actions_.still, 0);
}

TEST_F(NavigatorTest, WheelGoesAPartOfTheWayToThePointUnderThePointer) {
  scene_.picked = {true, {0, 120, 160}, 200, {0, 0.6f, 0.8f}};
  navigator_.Wheel(33, 44, 2);
  EXPECT_EQ(scene_.lastPick, std::pair(33, 44));
  EXPECT_LT((actions_.camera.position - Vec3(0, 12, 16)).norm(), 1e-4f);
  EXPECT_EQ(actions_.sent, 1);
  // Near a surface a notch is one unit; backwards the other way.
  scene_.picked = {true, {0, 12, 26}, 10, {0, 0, 1}};
  navigator_.Wheel(0, 0, -1);
  EXPECT_LT((actions_.camera.position - Vec3(0, 12, 15)).norm(), 1e-4f);
  // Over the sky: a hundredth of the diagonal, here 300.
  scene_.picked = {};
  scene_.bounds = SceneBox{{0, 0, 0}, {200, 200, 100}};
  navigator_.Wheel(0, 0, 1);
  EXPECT_LT((actions_.camera.position - Vec3(0, 15, 15)).norm(), 1e-4f);
}

TEST_F(NavigatorTest, F5MakesOnePictureAndNoMovement) {
  navigator_.KeyPressed({.redraw = true}, now_);
  Rest({.redraw = true});
  EXPECT_EQ(actions_.moving, 1);
  EXPECT_EQ(actions_.sent, 0);
}

TEST_F(NavigatorTest, StopEndsAFallSilently) {
  scene_.floor = [](float, float) { return -5000.0f; };
  navigator_.SetMode(NavigationMode::kWalk);
  navigator_.KeyPressed(ahead_, now_);
  navigator_.Tick(ahead_, now_ += 0.05);
  navigator_.Stop();
  EXPECT_FALSE(actions_.ticking);
  navigator_.Released(ahead_, none_, now_);
  EXPECT_EQ(actions_.sent, 0);
}

}  // namespace
}  // namespace qv

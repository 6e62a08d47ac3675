#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <numbers>

#include "presets/FakeStage.h"
#include "presets/Preset.h"
#include "presets/ViewMove.h"

namespace qv {
namespace {

// Looks along y from (10, 20, 30).
ViewPreset TargetView() {
  const float half = std::numbers::sqrt2_v<float> / 2;
  return {
      "Target", {{10, 20, 30}, {half, 0, 0, -half}, 0.5f}, 0, 70, false, {2456000.25, 0, 0, 0, 0}};
}

TEST(ViewMove, EasesAsItsSpeedAddsUp) {
  // Speed rises evenly for half a second, stays for a second and falls as it rose; the way is its
  // integral, here in steps of a millisecond.
  double way = 0;
  for (int step = 0; step < 2000; ++step) {
    const double t = (step + 0.5) / 1000;
    way += std::min({t, 0.5, 2 - t}) / 0.5 * (2.0 / 3) / 1000;
    EXPECT_NEAR(ViewMove::Ease((step + 1) / 1000.0), way, 2e-6);
  }
  EXPECT_EQ(ViewMove::Ease(0), 0);
  EXPECT_EQ(ViewMove::Ease(2), 1);
}

TEST(ViewMove, TakesTwoSecondsAndEndsAtTheView) {
  FakeStage stage;
  stage.camera.forward = {-1, 0, 0};
  stage.camera.fieldOfView = 1;
  EXPECT_TRUE(TargetView().Apply(stage));

  ASSERT_EQ(stage.shown.size(), 34u);  // 0 to 2 seconds in sixteenths, and the view itself
  EXPECT_TRUE(std::all_of(stage.shown.begin(), stage.shown.end() - 1, [](const auto& shown) {
    return shown.frame == StageFrame::kMoveStep && shown.camera.fieldOfView == 0.5f;
  }));
  const RenderCamera& middle = stage.shown[16].camera;
  EXPECT_LT((middle.position - Vec3(5, 10, 15)).norm(), 1e-4f);
  EXPECT_LT((middle.forward - Vec3(-1, 1, 0).normalized()).norm(), 1e-5f);
  const RenderCamera& end = stage.shown.back().camera;
  EXPECT_EQ(stage.shown.back().frame, StageFrame::kMoveEnd);
  EXPECT_EQ(end.position, Vec3(10, 20, 30));
  EXPECT_LT((end.forward - Vec3(0, 1, 0)).norm(), 1e-6f);
  EXPECT_LT((end.up - Vec3(0, 0, 1)).norm(), 1e-6f);
  EXPECT_TRUE(stage.dates.empty());
}

TEST(ViewMove, WaitsForItsFramesAndKeepsItsTime) {
  FakeStage stage;
  stage.framesTake = 0.35;
  stage.yieldTakes = 0;
  TargetView().Apply(stage);
  // At 0, 0.35, ... 1.75: six steps, and the view after the seventh has begun too late.
  EXPECT_EQ(stage.shown.size(), 7u);
  EXPECT_NEAR(stage.time, 2.1, 0.05);
}

TEST(ViewMove, IsMadeByACameraThatIsThereAlready) {
  FakeStage stage;
  TargetView().Apply(stage);
  stage.shown.clear();
  TargetView().Apply(stage);
  EXPECT_EQ(stage.shown.size(), 34u);
}

TEST(ViewMove, StopsInTheMiddleOnEscape) {
  FakeStage stage;
  stage.escapeAt = 0.5;
  EXPECT_FALSE(TargetView().Apply(stage));
  EXPECT_EQ(stage.shown.back().frame, StageFrame::kMoveStep);
  EXPECT_NEAR(stage.camera.position.x(), 10.0 / 6, 1e-4);

  FakeStage stuck;  // a frame that never comes
  stuck.framesTake = 1e9;
  stuck.escapeAt = 1;
  EXPECT_FALSE(TargetView().Apply(stuck));
}

TEST(ViewMove, IsLeftOutWhereItIsNotWanted) {
  FakeStage stage;
  ViewPreset view = TargetView();
  view.jumpDirectly = true;
  view.hasSunTime = true;
  EXPECT_TRUE(view.Apply(stage));
  EXPECT_EQ(stage.shown.size(), 1u);
  EXPECT_EQ(stage.dates, std::vector{2456000.25});

  view.noCamera = true;
  view.Apply(stage);
  EXPECT_EQ(stage.shown.size(), 1u);
  EXPECT_EQ(stage.dates.size(), 2u);
}

TEST(ViewMove, ShowsNothingThatIsNoNumber) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  FakeStage stage;
  ViewPreset view = TargetView();
  view.hasSunTime = true;
  view.sun.julianDate = kInfinity;
  view.pose.position.x() = kInfinity;
  view.Apply(stage);
  EXPECT_TRUE(stage.shown.empty());
  EXPECT_TRUE(stage.dates.empty());

  view = TargetView();
  view.pose.orientation = {0, 0, 0, 0};
  view.Apply(stage);
  EXPECT_EQ(stage.camera.forward, Vec3(-1, 0, 0));
}

}  // namespace
}  // namespace qv

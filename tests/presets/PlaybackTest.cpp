#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>

#include "presets/AnimationPresets.h"
#include "presets/CameraRecorder.h"
#include "presets/FakeStage.h"
#include "presets/PathPlayback.h"

namespace qv {
namespace {

constexpr float kHalfRoot = std::numbers::sqrt2_v<float> / 2;

CameraKey Key(double time, float x, double julianDate = 0) {
  return {time, {{x, 0, 0}, Eigen::Quaternionf::Identity(), 0.5f}, {julianDate, 0, 0, 0, -1}};
}

CameraAnimationPreset Path(std::vector<CameraKey> keys) {
  CameraAnimationPreset path;
  path.keys = std::move(keys);
  return path;
}

TEST(PathPlayback, MixesTheKeysAroundAMoment) {
  CameraKey k0 = Key(1, 10), k1 = Key(3, 20);
  k1.pose.orientation = {kHalfRoot, 0, 0, -kHalfRoot};  // from -x to y
  k1.pose.fieldOfView = 0.9f;
  const std::vector keys{k0, k1};
  PathPlayback playback(keys);
  EXPECT_EQ(playback.At(0.5)->pose.position.x(), 10);  // nothing lies before the first
  const auto frame = playback.At(1.5);
  ASSERT_TRUE(frame);
  EXPECT_FLOAT_EQ(frame->pose.position.x(), 12.5f);
  EXPECT_FLOAT_EQ(frame->pose.fieldOfView, 0.6f);
  const float angle = std::numbers::pi_v<float> / 8;  // a quarter of a right angle
  const Vec3 direction = DirectionFromQuaternion(frame->pose.orientation);
  EXPECT_LT((direction - Vec3(-std::cos(angle), std::sin(angle), 0)).norm(), 1e-6f);
  EXPECT_FALSE(playback.At(3));
}

TEST(PathPlayback, DropsTheRollBetweenKeys) {
  CameraKey k0 = Key(0, 0), k1 = Key(1, 0);
  k0.pose.orientation = k1.pose.orientation = {kHalfRoot, kHalfRoot, 0, 0};  // rolled by 90 degrees
  const CameraPose pose = FrameBetween(k0, k1, 0.5).pose;
  EXPECT_LT((DirectionFromQuaternion(pose.orientation) - Vec3(-1, 0, 0)).norm(), 1e-6f);
  EXPECT_LT((UpFromQuaternion(pose.orientation) - Vec3(0, 0, 1)).norm(), 1e-6f);
}

TEST(PathPlayback, MixesDaysAndTimesOfDayApart) {
  // Ten days and twelve hours apart, halfway: twelve hours' mean is 0.5, and the days' mean
  // 2456005.
  EXPECT_EQ(FrameBetween(Key(0, 0, 2456000.25), Key(1, 0, 2456010.75), 0.5).julianDate, 2456005.5);
  // A quarter of the way: 0.375 of a day, and 2456002.5 days rounded up.
  EXPECT_EQ(FrameBetween(Key(0, 0, 2456000.25), Key(1, 0, 2456010.75), 0.25).julianDate,
            2456003.375);
}

TEST(Play, RunsInRealTimeHoweverSlowTheFrames) {
  TourAnimationPreset tour;
  tour.keys = {Key(0, 0), Key(1, 0), Key(3, 8), Key(4, 8)};
  for (const double frameTime : {0.0078125, 0.0625, 0.75}) {
    FakeStage stage;
    stage.yieldTakes = frameTime;
    bool aborted = false;
    const int frames = tour.Play(stage, aborted);
    EXPECT_FALSE(aborted);
    EXPECT_NEAR(stage.time, 4, frameTime);
    // The first key, the frames and the last key.
    EXPECT_EQ(stage.shown.size(), static_cast<std::size_t>(frames) + 2);
    for (const auto& [time, camera, frame] : stage.shown) {
      const double x = time <= 1 ? 0 : time >= 3 ? 8 : (time - 1) * 4;
      EXPECT_NEAR(camera.position.x(), x, 1e-5);
    }
    EXPECT_EQ(stage.shown.front().frame, StageFrame::kPlayed);
    EXPECT_EQ(stage.shown.back().frame, StageFrame::kPlayEnd);
  }
}

TEST(Play, FollowsTheDateOnlyIfAsked) {
  CameraAnimationPreset path = Path({Key(0, 0, 2456000), Key(1, 1, 2456000.5)});
  FakeStage stage;
  path.Apply(stage);
  EXPECT_TRUE(stage.dates.empty());
  path.hasSunTime = true;
  path.Apply(stage);
  ASSERT_EQ(stage.dates.size(), 18u);  // 16 frames between the keys
  EXPECT_EQ(stage.dates[9], 2456000.25);
  EXPECT_EQ(stage.dates.back(), 2456000.5);
}

TEST(Play, JumpsToItsEndOnEscape) {
  FakeStage stage;
  stage.escapeAt = 0.5;
  bool aborted = false;
  EXPECT_EQ(Path({Key(0, 0), Key(2, 5)}).Play(stage, aborted), 8);
  EXPECT_TRUE(aborted);
  EXPECT_EQ(stage.camera.position.x(), 5);
}

TEST(Play, EndsWithWhateverTimes) {
  const auto shown = [](std::vector<CameraKey> keys) {
    FakeStage stage;
    bool aborted = false;
    Path(std::move(keys)).Play(stage, aborted);
    EXPECT_LT(stage.time, 1.1);
    return stage.shown.size();
  };
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(shown({}), 0u);
  EXPECT_EQ(shown({Key(0, 0), Key(0, 1)}), 2u);
  EXPECT_EQ(shown({Key(0, 0), Key(-1, 1)}), 2u);
  EXPECT_EQ(shown({Key(0, 0), Key(infinity, 1)}), 2u);
  EXPECT_EQ(shown({Key(0, 0), Key(std::nan(""), 1)}), 2u);
  // Keys out of order, and a first key that comes late.
  EXPECT_GE(shown({Key(0, 0), Key(5, 1), Key(1, 2)}), 3u);
  EXPECT_GE(shown({Key(0.5, 0), Key(1, 1)}), 3u);
}

TEST(CameraRecorder, KeepsAKeyForEachChange) {
  CameraRecorder recorder;
  CameraRecorder::Sample sample{
      {{1, 2, 3}, Eigen::Quaternionf::Identity(), 0.5f}, 2456000, 35, 139};
  EXPECT_FALSE(recorder.IsRecording());
  recorder.Start(sample, 64);
  recorder.Add(sample, 64.5);  // nothing moved
  sample.pose.position.x() += 0.001f;
  recorder.Add(sample, 65);
  sample.pose.orientation = QuaternionFromYawPitch(0.002f, 0);
  recorder.Add(sample, 66);
  sample.pose.orientation = QuaternionFromYawPitch(0.0025f, 0);  // too little
  recorder.Add(sample, 67);
  sample.pose.fieldOfView = 0.6f;
  recorder.Add(sample, 68);
  sample.julianDate += 0.001;
  recorder.Add(sample, 69.25);
  const auto recording = recorder.Stop();
  EXPECT_FALSE(recorder.IsRecording());
  ASSERT_EQ(recording->keys.size(), 5u);
  EXPECT_EQ(recording->keys[1].time, 1);
  EXPECT_EQ(recording->keys[4].time, 5.25);
  EXPECT_EQ(recording->keys[4].sun.julianDate, 2456000.001);
  EXPECT_EQ(recording->keys[0].sun.sunTag, -1);
  EXPECT_EQ(recording->sun.latitude, 35);
  EXPECT_EQ(recording->sun.sunTag, -1);
}

TEST(CameraRecorder, CountsItsTimesFromARoundedStart) {
  CameraRecorder recorder;
  CameraRecorder::Sample sample;
  recorder.Start(sample, 10000000.4);  // a float has whole numbers here
  sample.pose.position.x() = 1;
  recorder.Add(sample, 10000001.4);
  EXPECT_NEAR(recorder.Stop()->keys[1].time, 1.4, 1e-6);
}

}  // namespace
}  // namespace qv

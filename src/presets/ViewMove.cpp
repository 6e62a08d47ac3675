#include "presets/ViewMove.h"

#include <cmath>

namespace qv {

float ViewMove::Ease(double seconds) {
  constexpr float kSixth = 0.16666667f;
  constexpr float kSpeed = 0.6666667f;
  constexpr float kRamp = 0.5f;
  const float t = static_cast<float>(seconds);
  const float end = static_cast<float>(kSeconds);
  if (t < kRamp) return (2 * t) * (2 * t) * kSixth;
  if (t >= end - kRamp) return 1 - (2 * (end - t)) * (2 * (end - t)) * kSixth;
  return (t - kRamp) * kSpeed + kSixth;
}

CameraPose ViewMove::PoseAt(double seconds) const {
  const float done = Ease(seconds);
  return {from_.position * (1 - done) + to_.position * done,
          Slerp(from_.orientation, done, to_.orientation), to_.fieldOfView};
}

void ShowPose(CameraStage& stage, const CameraPose& pose, StageFrame frame) {
  const RenderCamera camera = CameraFromPose(pose);
  if (camera.position.allFinite() && camera.forward.allFinite() && camera.up.allFinite() &&
      std::isfinite(camera.fieldOfView)) {
    stage.Show(camera, frame);
  }
}

void SetSunDate(CameraStage& stage, double julianDate) {
  if (std::isfinite(julianDate)) stage.SetSunDate(julianDate);
}

bool MoveTo(CameraStage& stage, const CameraPose& target, bool directly) {
  const ViewMove move(LevelPose(stage.Camera()), target);
  if (!directly) {
    const double start = stage.Now();
    // A camera that stands at the view already makes the move too.
    for (double t = 0; t <= ViewMove::kSeconds; t = stage.Now() - start) {
      ShowPose(stage, move.PoseAt(t), StageFrame::kMoveStep);
      while (!stage.FrameDone() && !stage.StopAsked()) stage.Wait();
      if (stage.StopAsked()) return false;
      stage.Yield();
    }
  }
  ShowPose(stage, target, StageFrame::kMoveEnd);
  return true;
}

}  // namespace qv

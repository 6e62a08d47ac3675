#include "presets/PathPlayback.h"

#include <cmath>

#include "presets/ViewMove.h"

namespace qv {
namespace {

double DateBetween(double date0, double date1, double u) {
  const double day0 = std::trunc(date0), day1 = std::trunc(date1);
  return (date1 - day1) * u + (date0 - day0) * (1 - u) +
         std::trunc(day1 * u + (1 - u) * day0 + 0.5);
}

Eigen::Quaternionf WithoutRoll(const Eigen::Quaternionf& q) {
  const auto [yaw, pitch] = YawPitchFromDirection(DirectionFromQuaternion(q));
  return QuaternionFromYawPitch(yaw, pitch);
}

PathFrame FrameOf(const CameraKey& key) {
  return {key.pose, key.sun.julianDate};
}

void ShowFrame(CameraStage& stage, const PathFrame& shown, bool withSun, StageFrame frame) {
  if (withSun) SetSunDate(stage, shown.julianDate);
  ShowPose(stage, shown.pose, frame);
}

}  // namespace

PathFrame FrameBetween(const CameraKey& k0, const CameraKey& k1, double u) {
  const float along = static_cast<float>(u);
  const CameraPose &p0 = k0.pose, &p1 = k1.pose;
  PathFrame frame;
  frame.pose.position = (p1.position - p0.position) * along + p0.position;
  frame.pose.orientation = WithoutRoll(Slerp(p0.orientation, u, p1.orientation));
  frame.pose.fieldOfView = p0.fieldOfView + (p1.fieldOfView - p0.fieldOfView) * along;
  frame.julianDate = DateBetween(k0.sun.julianDate, k1.sun.julianDate, u);
  return frame;
}

std::optional<PathFrame> PathPlayback::At(double seconds) {
  while (next_ < keys_.size() && keys_[next_].time <= seconds) ++next_;
  if (next_ == keys_.size()) return std::nullopt;
  if (next_ == 0) return FrameOf(keys_.front());
  const CameraKey &k0 = keys_[next_ - 1], &k1 = keys_[next_];
  return FrameBetween(k0, k1, (seconds - k0.time) / (k1.time - k0.time));
}

int PlayKeys(CameraStage& stage, std::span<const CameraKey> keys, bool withSun, bool& aborted) {
  if (keys.empty()) return 0;
  const double start = stage.Now();
  ShowFrame(stage, FrameOf(keys.front()), withSun, StageFrame::kPlayed);

  int frames = 0;
  PathPlayback playback(keys);
  // An end that is no number would never come.
  const double last = std::isfinite(keys.back().time) ? keys.back().time : -1;
  for (double t = 0; t <= last; t = stage.Now() - start) {
    const std::optional<PathFrame> frame = playback.At(t);
    if (!frame) break;
    ShowFrame(stage, *frame, withSun, StageFrame::kPlayed);
    if (stage.StopAsked()) {
      aborted = true;
      break;
    }
    ++frames;
    stage.Yield();
  }
  ShowFrame(stage, FrameOf(keys.back()), withSun, StageFrame::kPlayEnd);
  return frames;
}

}  // namespace qv

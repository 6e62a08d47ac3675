#include "presets/CameraRecorder.h"

#include <cmath>
#include <utility>

namespace qv {
namespace {

constexpr std::int32_t kRecordedSunTag = -1;

SunRecord SunOf(const CameraRecorder::Sample& sample) {
  return {sample.julianDate, sample.latitude, sample.longitude, 0, kRecordedSunTag};
}

bool IsUnchanged(const CameraKey& key, const CameraRecorder::Sample& sample) {
  constexpr float kDistance = 0.00001f, kAngle = 0.001f, kFieldOfView = 0.00001f;
  constexpr double kDays = 0.0000001;
  return (key.pose.position - sample.pose.position).norm() < kDistance &&
         std::abs(QuaternionAngle(key.pose.orientation, sample.pose.orientation)) < kAngle &&
         std::abs(key.pose.fieldOfView - sample.pose.fieldOfView) < kFieldOfView &&
         std::abs(key.sun.julianDate - sample.julianDate) < kDays;
}

}  // namespace

void CameraRecorder::Start(const Sample& sample, double now) {
  recording_ = std::make_shared<CameraAnimationPreset>(wxString(), SunOf(sample));
  recording_->keys.push_back({0, sample.pose, SunOf(sample)});
  start_ = static_cast<float>(now);
}

void CameraRecorder::Add(const Sample& sample, double now) {
  if (!recording_ || IsUnchanged(recording_->keys.back(), sample)) return;
  recording_->keys.push_back({now - static_cast<double>(start_), sample.pose, SunOf(sample)});
}

std::shared_ptr<CameraAnimationPreset> CameraRecorder::Stop() {
  return std::exchange(recording_, nullptr);
}

}  // namespace qv

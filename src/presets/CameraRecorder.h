#pragma once

#include <memory>

#include "presets/AnimationPresets.h"

namespace qv {

// Records the movement of the camera as keys.
class CameraRecorder {
 public:
  // What there is to record at a moment.
  struct Sample {
    CameraPose pose;
    double julianDate = 0;
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees
  };

  // Begins a recording with a first key; `now` in seconds of a steady clock.
  void Start(const Sample& sample, double now);
  // Appends a key if camera or date have changed since the last one. Only while recording.
  void Add(const Sample& sample, double now);
  // Ends the recording and gives it away, without a name.
  std::shared_ptr<CameraAnimationPreset> Stop();

  bool IsRecording() const { return recording_ != nullptr; }

 private:
  std::shared_ptr<CameraAnimationPreset> recording_;
  // In single precision: on a machine that has long been up the times of the keys are shifted by
  // its rounding, all alike.
  float start_ = 0;
};

}  // namespace qv

#pragma once

#include <optional>
#include <span>

#include "presets/CameraKey.h"
#include "presets/CameraStage.h"

namespace qv {

// What the camera and the sun do at a moment of an animation.
struct PathFrame {
  CameraPose pose;
  double julianDate = 0;
};

// Between two keys: position, field of view and date in a straight line, the orientation on the
// shortest arc and without roll; `u` runs from 0 to 1. Whole days and times of day of the date are
// mixed apart, so that the sun does not race where the keys lie days apart.
PathFrame FrameBetween(const CameraKey& k0, const CameraKey& k1, double u);

// Walks along the keys of an animation. The keys must outlive it.
class PathPlayback {
 public:
  explicit PathPlayback(std::span<const CameraKey> keys) : keys_(keys) {}

  // The frame of a moment, in seconds from the start. Moments that go back find the keys that were
  // left behind no more. Nothing behind the last key; before the first, the first.
  std::optional<PathFrame> At(double seconds);

 private:
  std::span<const CameraKey> keys_;
  std::size_t next_ = 0;  // the first key after the last moment asked for
};

// Shows the keys in their time, and the date of each moment if `withSun` is set. A slow renderer
// shows fewer frames. Returns the number of frames between the first key and the last; `aborted` is
// set if it was ended on the way. The last key is shown in any case.
int PlayKeys(CameraStage& stage, std::span<const CameraKey> keys, bool withSun, bool& aborted);

}  // namespace qv

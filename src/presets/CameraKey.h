#pragma once

#include <cstdint>

#include "core/Orientation.h"

namespace qv {

// The sun of a view or a key. What the viewer does not use itself is kept for the host.
struct SunRecord {
  double julianDate = 0;  // as core/Calendar.h makes it
  double latitude = 0;    // degrees
  double longitude = 0;   // degrees
  float sunParam = 0;
  std::int32_t sunTag = 0;
};

// One key of an animation.
struct CameraKey {
  double time = 0;  // seconds from the start of the animation
  CameraPose pose;
  SunRecord sun;
};

}  // namespace qv

#pragma once

#include <optional>
#include <string>

#include "Scenes.h"

namespace qv::bench {

// Ratios of a step's seconds to bare ones, over all steps.
struct WalkRatios {
  double median = 0;
  double p99 = 0;
};

// How soon the real viewer shows what a moving camera sees: seconds from the camera's command to
// the painted picture, as ratios to the seconds of bare rtcIntersect8 on rays of the same frames.
struct WalkFigures {
  int width = 0, height = 0;  // of the pictures
  WalkRatios toAllRays;       // of the preview: those that go on behind glass, too
  WalkRatios toPrimaryRays;   // only those that leave the eye
  double medianSeconds = 0;
};

// Starts the viewer program at `path` on the display of the environment, gives its picture about
// the wanted size and leads the camera through the scene in 200 steps, each taken as soon as the
// picture before it is on the screen. Nothing if the viewer does not come up.
std::optional<WalkFigures> MeasureWalk(const BenchScene& scene, const std::string& path, int width,
                                       int height);

}  // namespace qv::bench

#pragma once

#include <optional>
#include <string>

#include "Scenes.h"

namespace qv::bench {

// What the real viewer needs for a scene that comes over the link.
struct ViewerFigures {
  // From the last byte of the scene sent to the first picture painted.
  double firstPreviewSeconds = 0;
  // Resident memory of the whole process with the scene loaded and a picture shown.
  double bytesPerTriangle = 0;
  // Of the time of one processor, once the antialiased picture is on the screen.
  double idleProcessorShare = 0;
};

// Starts the viewer program at `path` on the display of the environment and sends it the scene.
// Nothing if it does not come up or shows no picture within five minutes.
std::optional<ViewerFigures> MeasureViewer(const BenchScene& scene, const std::string& path);

}  // namespace qv::bench

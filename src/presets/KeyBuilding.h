#pragma once

#include <span>
#include <vector>

#include "presets/Preset.h"

namespace qv {

// The keys of a flight through views on one curve, at `speed` model units a second, above 0, but
// turning no faster than pi / 4 a second. Two views are joined by a straight line; with more, each
// span has ten keys on a spline, and its turns take the short way. All keys have the first view's
// field of view. The pauses, in seconds, are spent at the first and last view.
std::vector<CameraKey> BuildKeyframePath(std::span<const ViewPreset> views, float speed,
                                         const SunRecord& sun, double startPause, double endPause);

// The keys of a tour: two for each view, which is stayed at for `dwell` seconds, the first and the
// last for their own times; `travel` seconds lie between two views.
std::vector<CameraKey> BuildTour(std::span<const ViewPreset> views, double firstDwell,
                                 double lastDwell, double travel, double dwell);

}  // namespace qv

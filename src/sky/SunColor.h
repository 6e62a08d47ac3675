#pragma once

#include "core/Vec.h"

namespace qv::sky {

// The colour of the direct sunlight on the ground under a clear sky, each channel 0 to 1, from the
// sine of the sun's seen elevation. Nearly white at noon, orange by evening, black when the upper
// limb has set (0.27 degrees under the seen horizon, 0.83 degrees under the true one).
Vec3 SunColor(double sineOfElevation);

}  // namespace qv::sky

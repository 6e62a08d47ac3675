#pragma once

#include "core/Vec.h"

namespace qv::sky {

// The colour of the direct sunlight on the ground under a clear sky, each channel 0 to 1, from the
// sine of the sun's seen elevation. Nearly white at noon, orange by evening, black once the upper
// limb has set: 0.27 degrees under the horizon as seen, some 0.75 under the true one.
Vec3 SunColor(double sineOfElevation);

}  // namespace qv::sky

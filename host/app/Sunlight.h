#pragma once

#include "core/Vec.h"
#include "link/IQuorvane.h"

namespace qv::host {

// The way in which the sun's light travels at a place and time, of unit length, in the model's
// axes: the same that the viewer will compute.
Vec3 SunlightAt(const LocationAndTime& when);

}  // namespace qv::host

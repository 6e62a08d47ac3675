#pragma once

#include "render/trace/RayPacket.h"
#include "sky/CubeFaces.h"

namespace qv {

// The background in the directions of the lanes with a mask that is not negative, and black for the
// others: red, green, blue in 0 to 1. The same pixels as CubeFaces::Sample gives, found for many
// lanes at a time.
void SampleCube(const sky::CubeFaces& faces, const LaneFloats (&direction)[3], const LaneInts& mask,
                LaneFloats (&out)[3]);

}  // namespace qv

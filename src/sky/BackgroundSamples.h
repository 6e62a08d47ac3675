#pragma once

#include <vector>

#include "core/Vec.h"
#include "sky/CubeFaces.h"

namespace qv::sky {

// The colour of the background in a direction of any length, each channel 0 to 1: red, green, blue,
// or blue, green, red with `swapRedBlue`.
Vec3 SampleBackground(const CubeFaces& faces, const Vec3& direction, bool swapRedBlue);

// Appends 181 rows of 361 colours, blue, green and red each, for the rows i from 90 down to -90 and
// the columns j from 0 to 360: those in the directions (-sin j cos i, cos j cos i, sin i). Light
// maps rest on it that i and j count as radians, so that the directions lie scattered over the
// sphere.
void CollectBackgroundSamples(const CubeFaces& faces, std::vector<float>& target);

}  // namespace qv::sky

#pragma once

#include "core/Vec.h"
#include "sky/CubeFaces.h"

namespace qv::sky {

// The colour of a plain clear sky over even ground in a direction of unit length (z up), each
// channel 0 to 1: the same all around, pale at the horizon and blue overhead.
Vec3 GradientColor(float sineOfElevation);

// Draws that sky on all six faces.
void FillGradientCube(CubeFaces& faces);

}  // namespace qv::sky

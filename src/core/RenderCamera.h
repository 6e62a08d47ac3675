#pragma once

#include "core/Vec.h"

namespace qv {

// A view of the model: 13 floats, in model units, z up.
struct RenderCamera {
  Vec3 position{0, 0, 0};
  Vec3 forward{0, 1, 0};       // unit length
  Vec3 up{0, 0, 1};            // unit length
  float fieldOfView = 0.785f;  // vertical, radians
  // What the host's camera looks at: kept with the view, not used for tracing.
  Vec3 target{0, 0, 0};
};

static_assert(sizeof(RenderCamera) == 13 * sizeof(float));

}  // namespace qv

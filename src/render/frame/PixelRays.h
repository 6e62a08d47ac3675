#pragma once

#include "core/RenderCamera.h"

namespace qv {

// The primary rays of a picture: pixel (x, y), row 0 at the bottom, looks from `eye` along corner +
// x columnStep + y rowStep, unnormalised, through the pixel's lower left corner.
struct PixelRays {
  float corner[3];
  float columnStep[3];
  float rowStep[3];
  float eye[3];

  Vec3 Direction(float x, float y) const;
};

PixelRays ComputePixelRays(const RenderCamera& camera, int width, int height);

}  // namespace qv

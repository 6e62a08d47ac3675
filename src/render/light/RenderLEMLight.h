#pragma once

#include <span>
#include <vector>

#include "core/Vec.h"

namespace qv {

// Triangles that emit light of one colour.
struct RenderLEMLight {
  Vec3 emission{0, 0, 0};
  std::vector<Vec3> vertices;  // three a triangle
  std::vector<Vec3>
      faceNormals;  // one a triangle, unit length, or zero for a triangle without area

  // `corners` are nine floats a triangle.
  RenderLEMLight(const Vec3& emission, std::span<const float> corners);
};

}  // namespace qv

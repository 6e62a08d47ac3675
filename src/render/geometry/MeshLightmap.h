#pragma once

#include <cstdint>
#include <vector>

#include "core/Vec.h"

namespace qv {

// Where the corners of a mesh's triangles lie on the lightmap pages.
struct MeshLightmap {
  std::vector<Vec2> coords;         // three a triangle, 0 to 1 over its page
  std::vector<Vec3> colors;         // three a triangle: linear light that adds to the page's
  std::vector<std::int32_t> pages;  // one a triangle: the position of its page in the scene's list
};

}  // namespace qv

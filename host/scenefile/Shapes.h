#pragma once

#include <cstdint>

#include "host/model/Scene.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

// A box, a horizontal rectangle, an upright cylinder or a ball of the shape's size about the
// origin of x and y, standing on z = 0. Texture coordinates count `textureLength`; a plane is seen
// from both sides.
SceneMesh ShapeMesh(const SceneFileShape& shape, std::uint32_t material);

}  // namespace qv::host

#pragma once

#include <assimp/scene.h>

#include <Eigen/Geometry>
#include <vector>

#include "host/model/ModelFormat.h"
#include "host/model/Placement.h"
#include "host/model/Scene.h"

namespace qv::host {

// Vertical, radians; what a view has where the file has no usable one.
inline constexpr float kDefaultFieldOfView = 0.7f;

// The cameras of a file as views. Their targets lie as far ahead as the middle of `bounds` does.
std::vector<SceneCamera> CamerasOf(const aiScene& scene, const ModelFormat& format,
                                   const PlaceOfName& places, const Eigen::Affine3d& worldFromScene,
                                   const Bounds& bounds);

}  // namespace qv::host

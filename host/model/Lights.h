#pragma once

#include <assimp/scene.h>

#include <Eigen/Geometry>
#include <vector>

#include "host/model/ModelFormat.h"
#include "host/model/Placement.h"
#include "host/model/Scene.h"

namespace qv::host {

// The lights of a file, with strengths of our own choice: files state them in watts, candela,
// lumens or mere factors, so only their ratios within a file are kept.
//
// The viewer's lamps (point and spot) fall off with the distance and not with its square, so that a
// lamp of colour c gives a white surface that faces it c / distance. The strongest lamp of a file
// gives kLampLevel at the distance that it is likely to be meant for: a lamp inside the model's
// bounds at kRoomDistance, or half the model's diagonal if that is less, as a lamp in a room; lamps
// outside at the distance of the model's centre, sharing the level among them. Directional lights
// share kDirectionalLevel, since the sun shines as well.
inline constexpr float kLampLevel = 0.6f;
inline constexpr float kDirectionalLevel = 0.3f;
inline constexpr float kRoomDistance = 100;  // inches

// `worldFromScene` leads to the model's inches, in which `bounds` is.
std::vector<SceneLight> LightsOf(const aiScene& scene, const ModelFormat& format,
                                 const PlaceOfName& places, const Eigen::Affine3d& worldFromScene,
                                 const Bounds& bounds);

}  // namespace qv::host

#pragma once

#include <Eigen/Geometry>

#include "host/model/Scene.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

// The factors along x, y and z that bring a box of those sizes to the wanted one. With lengths
// given, those are met; axes without one keep the mean (geometric) of the others' factors. A box
// that is flat along an axis is left alone there.
Vec3 ScaleFor(const WantedSize& wanted, const Vec3& sizes);

// From something's own coordinates, where it fills `bounds`, to the scene's: scaled, turned about
// x, then y, then z, and moved, so that the middle of the foot of the box around it, or its origin,
// comes to `at`.
Eigen::Affine3f PlacementOf(const Bounds& bounds, const Vec3& scale, const Vec3& turn,
                            const Vec3& at, bool byOrigin);

// A mesh at that place; its shape is turned, moved, and scaled, not mirrored.
SceneMesh Placed(const SceneMesh& mesh, const Eigen::Affine3f& place);
SceneLight Placed(const SceneLight& light, const Eigen::Affine3f& place);

}  // namespace qv::host

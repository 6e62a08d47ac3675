#pragma once

#include <Eigen/Geometry>
#include <cstdint>
#include <span>

#include "host/model/MeshReader.h"
#include "host/model/Scene.h"

namespace qv::host {

// A mesh at its place in the world: positions by `worldFromMesh`, normals by its cofactors, so that
// they stay upright under any scale; a mirroring place turns the triangles around. Triangles that
// have no finite place or no area there are left out.
SceneMesh PlaceMesh(const LocalMesh& mesh, std::span<const std::uint32_t> materials,
                    const Eigen::Affine3d& worldFromMesh, LeftOut& leftOut);

}  // namespace qv::host

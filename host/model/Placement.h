#pragma once

#include <assimp/scene.h>

#include <Eigen/Core>
#include <Eigen/Geometry>
#include <string>
#include <unordered_map>
#include <vector>

#include "core/Vec.h"

namespace qv::host {

struct PlacedNode {
  const aiNode* node;
  Eigen::Affine3d sceneFromNode;
};

// All nodes of the scene with their places in it, parents before children.
std::vector<PlacedNode> PlacedNodes(const aiScene& scene);

// The places of nodes by name, for lights and cameras, which are tied to their nodes by it. The
// first of several nodes of one name counts.
using PlaceOfName = std::unordered_map<std::string, Eigen::Affine3d>;
PlaceOfName PlacesByName(const std::vector<PlacedNode>& nodes);

// The box around all corners of faces, in the scene's coordinates.
Eigen::AlignedBox3d BoundsOf(const aiScene& scene, const std::vector<PlacedNode>& nodes);

inline Eigen::Vector3d ToVector3d(const aiVector3D& v) {
  return {v.x, v.y, v.z};
}

// At unit length; `otherwise` where there is no length.
Vec3 UnitOr(const Eigen::Vector3d& v, const Vec3& otherwise);

}  // namespace qv::host

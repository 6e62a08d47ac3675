#include "host/model/Placement.h"

#include <cmath>
#include <span>
#include <utility>

namespace qv::host {
namespace {

using Eigen::Affine3d;

Affine3d ToAffine(const aiMatrix4x4& m) {
  Affine3d affine;
  affine.matrix() << m.a1, m.a2, m.a3, m.a4, m.b1, m.b2, m.b3, m.b4, m.c1, m.c2, m.c3, m.c4, 0, 0,
      0, 1;
  return affine;
}

void ExtendBy(const aiMesh& mesh, const Affine3d& place, Eigen::AlignedBox3d& bounds) {
  for (const aiFace& face : std::span(mesh.mFaces, mesh.mNumFaces)) {
    for (const unsigned index : std::span(face.mIndices, face.mNumIndices)) {
      const Eigen::Vector3d point = place * ToVector3d(mesh.mVertices[index]);
      if (point.allFinite()) bounds.extend(point);
    }
  }
}

}  // namespace

std::vector<PlacedNode> PlacedNodes(const aiScene& scene) {
  std::vector<PlacedNode> placed;
  std::vector<PlacedNode> open = {{scene.mRootNode, ToAffine(scene.mRootNode->mTransformation)}};
  while (!open.empty()) {
    const PlacedNode next = open.back();
    open.pop_back();
    placed.push_back(next);
    const std::span children(next.node->mChildren, next.node->mNumChildren);
    for (auto child = children.rbegin(); child != children.rend(); ++child) {
      open.push_back({*child, next.sceneFromNode * ToAffine((*child)->mTransformation)});
    }
  }
  return placed;
}

PlaceOfName PlacesByName(const std::vector<PlacedNode>& nodes) {
  PlaceOfName places;
  for (const PlacedNode& node : nodes) {
    places.try_emplace(node.node->mName.C_Str(), node.sceneFromNode);
  }
  return places;
}

Eigen::AlignedBox3d BoundsOf(const aiScene& scene, const std::vector<PlacedNode>& nodes) {
  Eigen::AlignedBox3d bounds;
  for (const PlacedNode& placed : nodes) {
    for (const unsigned index : std::span(placed.node->mMeshes, placed.node->mNumMeshes)) {
      if (index < scene.mNumMeshes) ExtendBy(*scene.mMeshes[index], placed.sceneFromNode, bounds);
    }
  }
  return bounds;
}

Vec3 UnitOr(const Eigen::Vector3d& v, const Vec3& otherwise) {
  const double length = v.norm();
  if (!std::isfinite(length) || length <= 0) return otherwise;
  return (v / length).cast<float>();
}

}  // namespace qv::host

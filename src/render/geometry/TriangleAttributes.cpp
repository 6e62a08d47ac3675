#include "render/geometry/TriangleAttributes.h"

#include <Eigen/Geometry>
#include <cmath>

#include "render/material/RenderMaterial.h"

namespace qv {
namespace {

Vec3 AsVec3(const PaddedVec3& p) {
  return {p.x, p.y, p.z};
}

float SideScale(const RenderMaterial& material, const float* uv0, const float* uv1, float edge) {
  if (!material.hasTexture) return 1.0f;
  const TextureMip& top = material.texture.mips.front();
  return std::hypot((uv1[0] - uv0[0]) * static_cast<float>(top.width),
                    (uv1[1] - uv0[1]) * static_cast<float>(top.height)) /
         edge;
}

void StoreNormalised(Vec3 v, float* out) {
  const float squared = v.squaredNorm();
  if (squared > 0) v /= std::sqrt(squared);
  for (int axis = 0; axis < 3; ++axis) out[axis] = v[axis];
}

TangentFrame::Side SideFrame(const PaddedVec3* positions, const UvPair* uvs,
                             const std::uint32_t* corner, int side) {
  constexpr float kDegenerate = 1e-10f;
  Vec3 perU;
  Vec3 perV;
  for (int axis = 0; axis < 3; ++axis) {
    Vec3 point[3];
    for (int k = 0; k < 3; ++k) {
      const float* uv = uvs[corner[k]].side[side];
      point[k] = Vec3(AsVec3(positions[corner[k]])[axis], uv[0], uv[1]);
    }
    const Vec3 normal = (point[1] - point[0]).cross(point[2] - point[1]);
    if (!(std::abs(normal.x()) >= kDegenerate)) return {};
    perU[axis] = -normal.y() / normal.x();
    perV[axis] = -normal.z() / normal.x();
  }
  TangentFrame::Side frame;
  StoreNormalised(perU, frame.tangent);
  StoreNormalised(perV, frame.bitangent);
  return frame;
}

}  // namespace

TexelScale ComputeTexelScale(const PaddedVec3* positions, const UvPair* uvs,
                             const std::uint32_t* corner, std::uint32_t materialWord,
                             std::span<const RenderMaterial> materials) {
  const float edge = (AsVec3(positions[corner[1]]) - AsVec3(positions[corner[0]])).norm();
  const auto& uv0 = uvs[corner[0]].side;
  const auto& uv1 = uvs[corner[1]].side;
  const auto back = static_cast<std::size_t>(BackMaterial(materialWord));
  return {{SideScale(materials[FrontMaterial(materialWord)], uv0[0], uv1[0], edge),
           SideScale(materials[back], uv0[1], uv1[1], edge)}};
}

TangentFrame ComputeTangentFrame(const PaddedVec3* positions, const UvPair* uvs,
                                 const std::uint32_t* corner) {
  return {{SideFrame(positions, uvs, corner, 0), SideFrame(positions, uvs, corner, 1)}};
}

}  // namespace qv

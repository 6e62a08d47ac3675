#include "render/geometry/Mesh.h"

#include <algorithm>
#include <cmath>

#include "render/geometry/TriangleAttributes.h"
#include "render/material/RenderMaterial.h"
#include "render/trace/InverseSqrt.h"

namespace qv {
namespace {

constexpr float kNegligiblePosition = 1e-10f;

float Cleaned(float component) {
  return std::abs(component) > kNegligiblePosition ? component : 0.0f;
}

PaddedVec3 NormalOf(const MeshVertex& vertex) {
  const float* n = vertex.normal;
  const float factor = RefinedInverseSqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
  return {n[0] * factor, n[1] * factor, n[2] * factor, 0};
}

// A growing vector that holds nothing any more, its memory given back.
template <typename T>
void Release(std::vector<T>& values) {
  std::vector<T>().swap(values);
}

}  // namespace

void Mesh::Append(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles) {
  const auto base = static_cast<std::uint32_t>(stagingVertices_.size());
  for (MeshVertex vertex : vertices) {
    for (float& component : vertex.position) component = Cleaned(component);
    stagingVertices_.push_back(vertex);
  }
  for (const MeshTriangle& triangle : triangles) {
    for (const std::int32_t index : triangle.vertex) {
      stagingIndices_.push_back(base + static_cast<std::uint32_t>(index));
    }
    stagingMaterials_.push_back(triangle.materialWord);
  }
}

std::size_t Mesh::RepairMaterials(std::size_t materialCount, std::uint16_t fallback) {
  std::size_t repaired = 0;
  for (std::uint32_t& word : stagingMaterials_) {
    std::uint32_t front = FrontMaterial(word);
    const std::int32_t back = BackMaterial(word);
    if (front >= materialCount) {
      front = fallback;
      ++repaired;
    }
    auto backBits = static_cast<std::uint16_t>(back);
    if (back < 0 || static_cast<std::size_t>(back) >= materialCount) {
      backBits = fallback;
      ++repaired;
    }
    word = front | static_cast<std::uint32_t>(backBits) << 16;
  }
  return repaired;
}

void Mesh::Reset() {
  if (geometryId_ != kNoGeometry) {
    rtcDetachGeometry(embreeScene_, geometryId_);
    geometryId_ = kNoGeometry;
  }
  Release(stagingVertices_);
  Release(stagingIndices_);
  Release(stagingMaterials_);
  positions_ = {};
  normals_ = {};
  uvs_ = {};
  indices_ = {};
  triangleMaterials_ = {};
  tangentFrames_ = {};
  texelScales_ = {};
}

void Mesh::Build(RTCDevice device, RTCScene scene, std::span<const RenderMaterial> materials,
                 void* userData) {
  FillArrays(materials);
  AttachGeometry(device, scene, Positions(), userData);
}

void Mesh::Update(RTCScene, const Vec3&) {}

bool Mesh::SetLightmap(const MeshLightmap& lightmap) {
  lightmapUvs_ = {};
  lightmapColors_ = {};
  lightmapPageOfTriangle_ = {};
  if (lightmap.pages.empty() && lightmap.coords.empty() && lightmap.colors.empty()) return true;
  const std::size_t corners = triangleCount_ * 3;
  if (lightmap.pages.size() != triangleCount_ || lightmap.coords.size() != corners ||
      lightmap.colors.size() != corners) {
    return false;
  }
  lightmapUvs_ = AlignedArray<UvCoord>(corners);
  lightmapColors_ = AlignedArray<PaddedVec3>(corners);
  for (std::size_t i = 0; i < corners; ++i) {
    lightmapUvs_[i] = {lightmap.coords[i].x(), lightmap.coords[i].y()};
    const Vec3& color = lightmap.colors[i];
    lightmapColors_[i] = {color.x(), color.y(), color.z(), 0};
  }
  lightmapPageOfTriangle_ = AlignedArray<std::int32_t>(triangleCount_);
  std::copy(lightmap.pages.begin(), lightmap.pages.end(), lightmapPageOfTriangle_.data());
  return true;
}

void Mesh::FillArrays(std::span<const RenderMaterial> materials) {
  vertexCount_ = stagingVertices_.size();
  triangleCount_ = stagingMaterials_.size();

  positions_ = AlignedArray<PaddedVec3>(vertexCount_ + 1);
  normals_ = AlignedArray<PaddedVec3>(vertexCount_);
  uvs_ = AlignedArray<UvPair>(vertexCount_);
  for (std::size_t i = 0; i < vertexCount_; ++i) {
    const MeshVertex& v = stagingVertices_[i];
    positions_[i] = {v.position[0], v.position[1], v.position[2], 0};
    normals_[i] = NormalOf(v);
    uvs_[i] = {{{v.frontUv[0], v.frontUv[1]}, {v.backUv[0], v.backUv[1]}}};
  }
  positions_[vertexCount_] = {};
  Release(stagingVertices_);

  indices_ = AlignedArray<std::uint32_t>(stagingIndices_.size());
  std::copy(stagingIndices_.begin(), stagingIndices_.end(), indices_.data());
  Release(stagingIndices_);
  triangleMaterials_ = AlignedArray<std::uint32_t>(triangleCount_);
  std::copy(stagingMaterials_.begin(), stagingMaterials_.end(), triangleMaterials_.data());
  Release(stagingMaterials_);

  texelScales_ = AlignedArray<TexelScale>(triangleCount_);
  tangentFrames_ = AlignedArray<TangentFrame>(triangleCount_);
  for (std::size_t t = 0; t < triangleCount_; ++t) {
    const std::uint32_t* corner = &indices_[t * 3];
    texelScales_[t] =
        ComputeTexelScale(positions_.data(), uvs_.data(), corner, triangleMaterials_[t], materials);
    tangentFrames_[t] = ComputeTangentFrame(positions_.data(), uvs_.data(), corner);
  }
}

void Mesh::AttachGeometry(RTCDevice device, RTCScene scene, const PaddedVec3* vertices,
                          void* userData) {
  embreeScene_ = scene;
  RTCGeometry geometry = rtcNewGeometry(device, RTC_GEOMETRY_TYPE_TRIANGLE);
  rtcSetGeometryBuildQuality(geometry, RTC_BUILD_QUALITY_REFIT);
  rtcSetGeometryTimeStepCount(geometry, 1);
  geometryId_ = rtcAttachGeometry(scene, geometry);
  rtcReleaseGeometry(geometry);
  rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3, vertices, 0,
                             sizeof(PaddedVec3), vertexCount_);
  rtcSetSharedGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, indices_.data(),
                             0, 3 * sizeof(std::uint32_t), triangleCount_);
  rtcSetGeometryUserData(geometry, userData);
  rtcCommitGeometry(geometry);
}

}  // namespace qv

#pragma once

#include <embree3/rtcore.h>

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "core/SceneRecords.h"
#include "core/Vec.h"
#include "render/geometry/AlignedArray.h"
#include "render/geometry/MeshLightmap.h"

namespace qv {

struct RenderMaterial;

// A point or vector with a fourth float that has no meaning: the layout that the ray library reads.
struct alignas(16) PaddedVec3 {
  float x, y, z, unused;
};

struct UvCoord {
  float u, v;
};

// Texture coordinates of both sides of a vertex.
struct UvPair {
  float side[2][2];  // [0 front, 1 back][u, v]
};

// For each side of a triangle its unit tangent (dP/du) and bitangent (dP/dv); zero where the
// mapping is degenerate.
struct TangentFrame {
  struct Side {
    float tangent[3];
    float bitangent[3];
  };
  Side side[2];
};

// Texels per model unit for the front and the back material; 1 without a texture, infinite for a
// zero first edge.
struct TexelScale {
  float side[2];
};

// Front and back material of a triangle.
inline std::uint32_t FrontMaterial(std::uint32_t materialWord) {
  return materialWord & 0xffffu;
}
inline std::int32_t BackMaterial(std::uint32_t materialWord) {
  return static_cast<std::int16_t>(materialWord >> 16);
}

// One object of the model: triangles with their attributes, and one triangle geometry of the ray
// library. Filled by Append while the scene arrives, turned into flat arrays by Build, read-only
// while a pass runs.
class Mesh {
 public:
  static constexpr unsigned kNoGeometry = std::numeric_limits<unsigned>::max();

  virtual ~Mesh() = default;
  Mesh() = default;
  Mesh(const Mesh&) = delete;
  Mesh& operator=(const Mesh&) = delete;

  // Adds vertices and triangles; vertex numbers count from this call's first vertex. A position
  // component with an absolute value not above 1e-10 becomes exactly 0.
  void Append(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles);

  // Replaces material numbers that no material stands behind by `fallback`; returns how many sides
  // took it.
  std::size_t RepairMaterials(std::size_t materialCount, std::uint16_t fallback);

  // Releases the geometry and frees the arrays.
  virtual void Reset();
  // Fills the arrays from what was appended, and attaches a geometry to the scene. `userData` goes
  // to the geometry.
  virtual void Build(RTCDevice device, RTCScene scene, std::span<const RenderMaterial> materials,
                     void* userData);
  // Prepares the geometry for a frame seen along `viewDirection`. Before the scene's commit.
  virtual void Update(RTCScene scene, const Vec3& viewDirection);
  virtual bool IsStatic() const = 0;

  // Replaces the lightmap of a built mesh; an empty one takes it away. False, and no lightmap, if
  // the numbers of corners or triangles are not those of the mesh.
  bool SetLightmap(const MeshLightmap& lightmap);

  // The vertices as they are traced and shaded.
  virtual const PaddedVec3* Positions() const { return positions_.data(); }
  virtual const PaddedVec3* Normals() const { return normals_.data(); }

  bool HasLightmap() const { return !lightmapPageOfTriangle_.empty(); }
  const UvPair* TextureCoords() const { return uvs_.data(); }
  const std::uint32_t* Indices() const { return indices_.data(); }
  const std::uint32_t* TriangleMaterials() const { return triangleMaterials_.data(); }
  const TangentFrame* TangentFrames() const { return tangentFrames_.data(); }
  const TexelScale* TexelScales() const { return texelScales_.data(); }
  // Three pairs and three colours (red, green, blue, unused) a triangle; null without a lightmap.
  const UvCoord* LightmapCoords() const { return lightmapUvs_.data(); }
  const PaddedVec3* LightmapColors() const { return lightmapColors_.data(); }
  const std::int32_t* LightmapPages() const { return lightmapPageOfTriangle_.data(); }

  std::size_t VertexCount() const { return vertexCount_; }
  std::size_t TriangleCount() const { return triangleCount_; }
  unsigned GeometryId() const { return geometryId_; }

  // Until Build: what has arrived.
  std::span<const MeshVertex> StagingVertices() const { return stagingVertices_; }

 protected:
  void FillArrays(std::span<const RenderMaterial> materials);
  // Makes and attaches the triangle geometry over `vertices`, which stay owned here.
  void AttachGeometry(RTCDevice device, RTCScene scene, const PaddedVec3* vertices, void* userData);

  AlignedArray<PaddedVec3>
      positions_;  // one more than vertices: the ray library may read past the last
  AlignedArray<PaddedVec3> normals_;  // unit length
  std::size_t vertexCount_ = 0;
  std::size_t triangleCount_ = 0;
  RTCScene embreeScene_ = nullptr;
  unsigned geometryId_ = kNoGeometry;

 private:
  AlignedArray<UvPair> uvs_;
  AlignedArray<std::uint32_t> indices_;            // three a triangle
  AlignedArray<std::uint32_t> triangleMaterials_;  // material words
  AlignedArray<TangentFrame> tangentFrames_;
  AlignedArray<TexelScale> texelScales_;
  AlignedArray<UvCoord> lightmapUvs_;
  AlignedArray<PaddedVec3> lightmapColors_;
  AlignedArray<std::int32_t> lightmapPageOfTriangle_;

  std::vector<MeshVertex> stagingVertices_;
  std::vector<std::uint32_t> stagingIndices_;
  std::vector<std::uint32_t> stagingMaterials_;
};

}  // namespace qv

#pragma once

#include <assimp/scene.h>

#include <Eigen/Geometry>
#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/Vec.h"

namespace qv::host {

// What was left out of a model because it can't be shown.
struct LeftOut {
  std::size_t notFinite = 0;    // faces with a corner that is no finite point
  std::size_t outOfRange = 0;   // faces with vertex numbers that do not exist
  std::size_t withoutArea = 0;  // faces and triangles that are lines or points

  LeftOut& operator+=(const LeftOut& other);
};

struct LocalVertex {
  Vec3 position;
  Vec3 normal;
  Vec2 uv;
};

struct LocalTriangle {
  std::array<std::uint32_t, 3> vertex;
  std::uint16_t color;  // of the file's vertices, 5 bits each for red, green, blue
};

// A mesh in its own coordinates: triangles, with a unit normal at each vertex; vertices that are
// the same in all respects are there once.
struct LocalMesh {
  std::vector<LocalVertex> vertices;
  std::vector<LocalTriangle> triangles;
  bool colored = false;  // the triangles' colours mean something
};

// The colour of a LocalTriangle, each channel 0 to 1.
Vec3 ColorOfTriangle(std::uint16_t color);

// Takes all indices off the faces that can't be read safely, so that no later step of the import
// library touches them. To be called before any post-processing.
LeftOut RemoveBrokenFaces(aiMesh& mesh);

// What is wanted of a mesh.
struct MeshWishes {
  unsigned uvChannel = 0;
  Eigen::Affine2f uvPlacement = Eigen::Affine2f::Identity();
  bool fileNormals = true;
};

// The faces of a mesh as triangles; points and lines are passed over. Normals are the file's where
// they are wanted, finite, and have a length, and made with the crease angle elsewhere.
LocalMesh ReadMesh(const aiMesh& mesh, const MeshWishes& wishes, LeftOut& leftOut);

}  // namespace qv::host

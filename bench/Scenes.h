#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/RenderCamera.h"
#include "core/SceneRecords.h"

namespace qv::bench {

// One object of a scene that a benchmark traces.
struct BenchMesh {
  std::vector<MeshVertex> vertices;
  std::vector<MeshTriangle> triangles;
};

// A scene in the viewer's coordinates (inches, z up), with the view to trace.
struct BenchScene {
  std::string name;
  std::vector<MaterialParameters> materials;
  std::vector<BenchMesh> meshes;
  RenderCamera camera;
  std::shared_ptr<const void> files;  // the materials name textures that lie there as long as this

  std::size_t TriangleCount() const;
};

// One million triangles: rolling ground with spheres of three sizes on it. The same on every
// machine.
BenchScene MillionTriangles();

}  // namespace qv::bench

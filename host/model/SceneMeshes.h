#pragma once

#include <assimp/scene.h>

#include <Eigen/Geometry>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/model/MeshReader.h"
#include "host/model/ModelFormat.h"
#include "host/model/Placement.h"
#include "host/model/Scene.h"
#include "host/model/SceneMaterials.h"

namespace qv::host {

// Puts the meshes of a model file into a scene, once for each node that shows them. One thread.
class SceneMeshes {
 public:
  SceneMeshes(const aiScene& source, const ModelFormat& format, SceneMaterials& materials)
      : source_(source), format_(format), materials_(materials), read_(source.mNumMeshes) {}

  void AddTo(Scene& scene, const PlacedNode& placed, const Eigen::Affine3d& worldFromScene);

  const LeftOut& leftOut() const { return leftOut_; }

 private:
  struct Entry {
    LocalMesh mesh;
    std::vector<std::uint32_t> materials;  // of its triangles
  };

  const Entry& Read(unsigned index);

  const aiScene& source_;
  const ModelFormat& format_;
  SceneMaterials& materials_;
  std::vector<std::optional<Entry>> read_;  // by the file's numbers
  LeftOut leftOut_;
};

}  // namespace qv::host

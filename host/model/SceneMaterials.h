#pragma once

#include <assimp/scene.h>

#include <cstdint>
#include <string>
#include <vector>

#include "host/model/MaterialReader.h"
#include "host/model/MaterialTable.h"
#include "host/model/MeshReader.h"
#include "host/model/ModelFormat.h"
#include "host/model/TextureFiles.h"

namespace qv::host {

// The materials of a model file, made when a mesh asks for them. One thread.
class SceneMaterials {
 public:
  SceneMaterials(const aiScene& scene, const ModelFormat& format, TextureFiles& textures);

  // Takes over which texture coordinates a mesh's material asks for; the first where it has no
  // such.
  void WishCoordinates(const aiMesh& mesh, MeshWishes& wishes) const;

  // The material numbers of a mesh's triangles. Where the file colours vertices and the material
  // has no texture, triangles get materials of their mean colours. A material with a texture but
  // without texture coordinates shows its colour.
  std::vector<std::uint32_t> IndicesFor(const aiMesh& mesh, const LocalMesh& local);

  // All materials; changes those of a model of which nothing could be seen. To be called last.
  std::vector<SceneMaterial> Take(std::vector<std::string>& warnings);

 private:
  const ReadMaterial& Read(const aiMesh& mesh) const;
  SceneMaterial Colored(const SceneMaterial& plain, const Vec3& color) const;

  std::vector<ReadMaterial> read_;  // the file's, then the plain one
  bool linearColors_;
  TextureFiles& textures_;
  MaterialTable table_;
};

}  // namespace qv::host

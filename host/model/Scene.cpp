#include "host/model/Scene.h"

#include <set>
#include <string_view>

namespace qv::host {

std::size_t Scene::TriangleCount() const {
  std::size_t count = 0;
  for (const SceneMesh& mesh : meshes) count += mesh.triangles.size();
  return count;
}

std::size_t Scene::TextureCount() const {
  std::set<std::string_view> paths;
  for (const MaterialParameters& material : materials) {
    if (material.hasTexture) paths.insert(material.texturePath);
  }
  return paths.size();
}

}  // namespace qv::host

#include "host/model/SceneMeshes.h"

#include <span>
#include <utility>

#include "host/model/MeshPlacer.h"

namespace qv::host {

void SceneMeshes::AddTo(Scene& scene, const PlacedNode& placed,
                        const Eigen::Affine3d& worldFromScene) {
  for (const unsigned index : std::span(placed.node->mMeshes, placed.node->mNumMeshes)) {
    if (index >= source_.mNumMeshes) continue;
    const Entry& entry = Read(index);
    SceneMesh mesh =
        PlaceMesh(entry.mesh, entry.materials, worldFromScene * placed.sceneFromNode, leftOut_);
    if (mesh.triangles.empty()) continue;
    const aiString& name = source_.mMeshes[index]->mName;
    mesh.name = name.length > 0 ? name.C_Str() : placed.node->mName.C_Str();
    for (const MeshVertex& vertex : mesh.vertices) {
      scene.bounds.extend(Vec3(vertex.position[0], vertex.position[1], vertex.position[2]));
    }
    scene.meshes.push_back(std::move(mesh));
  }
}

const SceneMeshes::Entry& SceneMeshes::Read(unsigned index) {
  std::optional<Entry>& entry = read_[index];
  if (!entry) {
    const aiMesh& mesh = *source_.mMeshes[index];
    MeshWishes wishes;
    wishes.fileNormals = !format_.losesHardEdges;
    materials_.WishCoordinates(mesh, wishes);
    entry.emplace();
    entry->mesh = ReadMesh(mesh, wishes, leftOut_);
    entry->materials = materials_.IndicesFor(mesh, entry->mesh);
  }
  return *entry;
}

}  // namespace qv::host

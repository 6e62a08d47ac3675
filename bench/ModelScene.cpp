#include "ModelScene.h"

#include <cstdio>

#include "host/model/StartView.h"
#include "host/scenefile/LoadScene.h"

namespace qv::bench {

std::optional<BenchScene> ModelScene(const std::string& name, const std::string& path) {
  // Where the light comes from decides only which sides of the model the start view shows.
  const Vec3 sunlight(0.45f, 0.55f, -0.7f);
  const host::LoadedScene loaded = host::LoadScene(path);
  if (!loaded.scene) {
    std::fprintf(stderr, "quorvane-bench: %s: %s\n", path.c_str(), loaded.error.c_str());
    return std::nullopt;
  }
  BenchScene scene;
  scene.name = name;
  scene.materials.assign(loaded.scene->materials.begin(), loaded.scene->materials.end());
  for (const host::SceneMesh& mesh : loaded.scene->meshes) {
    scene.meshes.push_back({mesh.vertices, mesh.triangles});
  }
  scene.camera = host::StartView(*loaded.scene, sunlight, {});
  scene.files = loaded.scene->temporaryFiles;
  return scene;
}

}  // namespace qv::bench

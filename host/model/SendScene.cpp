#include "host/model/SendScene.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "platform/PathText.h"

namespace qv::host {
namespace {

// Tells the viewer how far the transfer is, in steps of a hundredth.
class Progress {
 public:
  Progress(HostLink& link, std::size_t total) : link_(link), total_(total) {}

  bool Advance(std::size_t amount) {
    done_ += amount;
    const auto percent =
        static_cast<int>(100.0 * static_cast<double>(done_) / static_cast<double>(total_));
    if (percent == told_) return true;
    told_ = percent;
    return link_.SetProgress(static_cast<float>(percent) / 100);
  }

 private:
  HostLink& link_;
  std::size_t total_;
  std::size_t done_ = 0;
  int told_ = -1;
};

bool SendMaterials(HostLink& link, const Scene& scene) {
  for (std::size_t i = 0; i < scene.materials.size(); ++i) {
    const auto index = link.AddMaterial(scene.materials[i]);
    // The triangles name the materials by their order.
    if (index != static_cast<std::int32_t>(i)) return false;
  }
  return true;
}

bool SendLight(HostLink& link, const SceneLight& light) {
  switch (light.kind) {
    case SceneLight::Kind::kPoint:
      return link.AddPointLight(light.color, light.position);
    case SceneLight::Kind::kSpot:
      return link.AddSpotLight(light.color, light.position, light.direction, light.innerAngle,
                               light.outerAngle);
    case SceneLight::Kind::kDirectional:
      return link.AddDirectionalLight(light.color, light.direction);
  }
  return false;
}

bool SendLights(HostLink& link, const Scene& scene) {
  for (const SceneLight& light : scene.lights) {
    if (!SendLight(link, light)) return false;
  }
  return true;
}

bool SendAreaLights(HostLink& link, const Scene& scene) {
  for (const SceneAreaLight& light : scene.areaLights) {
    std::vector<float> vertices;
    vertices.reserve(3 * light.corners.size());
    for (const Vec3& corner : light.corners) {
      vertices.insert(vertices.end(), {corner.x(), corner.y(), corner.z()});
    }
    if (!link.AddLEMLight(light.emission, vertices)) return false;
  }
  return true;
}

bool SendMeshes(HostLink& link, const Scene& scene) {
  Progress progress(link, scene.TriangleCount());
  for (const SceneMesh& mesh : scene.meshes) {
    if (!link.BeginStaticMesh() || !link.AddMeshData(mesh.vertices, mesh.triangles) ||
        !link.EndMesh() || !progress.Advance(mesh.triangles.size())) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::optional<SentCounts> SendScene(HostLink& link, const Scene& scene,
                                    const SendOptions& options) {
  const bool sent = link.SetModelDirectory(platform::Utf8FromPath(scene.directory)) &&
                    link.SetStatusMessage("Loading materials...") && SendMaterials(link, scene) &&
                    (!options.lights || SendLights(link, scene)) &&
                    (!options.areaLights || SendAreaLights(link, scene)) &&
                    link.SetLocationAndTime(options.when) &&
                    link.SetStatusMessage("Loading objects...") && SendMeshes(link, scene) &&
                    link.SceneComplete() && link.SetProgress(0) &&
                    link.SetCamera(options.camera, true);
  if (!sent) return std::nullopt;
  return SentCounts{scene.meshes.size(),
                    scene.TriangleCount(),
                    scene.materials.size(),
                    scene.TextureCount(),
                    options.lights ? scene.lights.size() : 0,
                    options.areaLights ? scene.areaLights.size() : 0};
}

}  // namespace qv::host

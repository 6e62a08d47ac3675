#include "pictures/PictureScenes.h"

#include <cstdint>
#include <iostream>
#include <memory>

#include "host/model/LoadModel.h"
#include "host/model/StartView.h"
#include "support/ImageFile.h"
#include "support/SceneBuilder.h"

namespace qv::test {
namespace {

// A summer afternoon in the middle of Europe: Julian date of 2024-06-15, 13:30 UT.
void SetSummerAfternoon(RaytraceImpl& renderer) {
  renderer.SetLocationAndTime(0, 48.1f, 11.6f, 2460477.0625, 1);
}

bool SendBodies(RaytraceImpl& renderer) {
  SmallScene().SendTo(renderer);
  return true;
}

// A picture of squares with a hole of alpha in the middle.
std::string WriteTexture() {
  constexpr int kSide = 64;
  std::vector<std::uint8_t> rgba;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      const bool light = (x / 8 + y / 8) % 2 == 0;
      const bool hole = x >= 24 && x < 40 && y >= 24 && y < 40;
      rgba.push_back(light ? 230 : 90);
      rgba.push_back(static_cast<std::uint8_t>(4 * x));
      rgba.push_back(static_cast<std::uint8_t>(4 * y));
      rgba.push_back(hole ? 40 : 255);
    }
  }
  return WritePng("squares.png", kSide, kSide, rgba);
}

bool SendMaterials(RaytraceImpl& renderer) {
  SceneBuilder builder;
  MaterialParameters textured = Matte(Vec3(0.9f, 0.9f, 0.9f));
  textured.hasTexture = true;
  textured.texturePath = WriteTexture();
  MaterialParameters bumpy = textured;
  bumpy.bumpFactor = 0.5f;
  MaterialParameters glass = Matte(Vec3(0.3f, 0.5f, 0.4f));
  glass.opacity = 0.35f;
  glass.refractiveIndex = 1.3f;
  MaterialParameters brushed = Matte(Vec3(0.4f, 0.35f, 0.3f));
  brushed.reflectance = 0.5f;
  brushed.glossy = 1;
  const int ground = builder.Material(bumpy);
  const int squares = builder.Material(textured);
  const int pane = builder.Material(glass);
  const int metal = builder.Material(brushed);
  builder.Floor(0, 120, ground);
  builder.Sphere({-30, 20, 20}, 20, 24, metal);
  builder.Box({15, 10, 0}, {50, 40, 40}, squares);
  builder.Quad({-40, -25, 0}, {60, 0, 0}, {0, 0, 45}, pane);
  const int tree = builder.Quad({-6, 45, 0}, {12, 0, 0}, {0, 0, 60}, squares);
  builder.meshes[static_cast<std::size_t>(tree)].billboard = Anchor{{0, 45, 0}, {0, -1}};
  builder.lights.push_back(
      SceneLight::Spot(Vec3(40, 38, 30), {60, -60, 90}, Vec3(-0.5f, 0.6f, -0.7f), 0.3f, 0.6f));
  builder.lights.push_back(SceneLight::Directional(Vec3(0.4f, 0.4f, 0.5f), Vec3(0.2f, 0.3f, -1)));
  builder.SendTo(renderer);
  const float lamp[] = {-20, 0, 80, 20, 0, 80, 20, 20, 80, -20, 0, 80, 20, 20, 80, -20, 20, 80};
  renderer.AddLEMLight(Vec3(3, 3, 2.5f), lamp);
  renderer.SetUseLEM(true);
  renderer.SetUseAmbientOcclusion(true);
  return true;
}

bool SendHouse(RaytraceImpl& renderer, const host::Scene& house) {
  for (const MaterialParameters& material : house.materials) renderer.AddMaterial(material);
  for (const host::SceneMesh& mesh : house.meshes) {
    renderer.BeginStaticMesh();
    renderer.AddMeshData(mesh.vertices, mesh.triangles);
    renderer.EndMesh();
  }
  return true;
}

PictureScene House(const std::string& model) {
  // Where the light comes from decides only which sides of the house are seen.
  const Vec3 sunlight(0.45f, 0.55f, -0.7f);
  auto loaded = std::make_shared<host::LoadResult>(host::LoadModel(model));
  PictureScene scene{"house", {}, {}};
  if (loaded->scene) scene.camera = host::StartView(*loaded->scene, sunlight, {});
  scene.send = [loaded, model](RaytraceImpl& renderer) {
    if (loaded->scene) return SendHouse(renderer, *loaded->scene);
    std::cerr << model << ": " << loaded->error << '\n';
    return false;
  };
  return scene;
}

}  // namespace

std::vector<PictureScene> PictureScenes(const std::string& model) {
  std::vector<PictureScene> scenes{
      {"bodies", LookingAt({70, -110, 50}, {0, 0, 15}, 0.7f), SendBodies},
      {"materials", LookingAt({20, -130, 55}, {0, 10, 20}, 0.8f), SendMaterials}};
  scenes.push_back(House(model));
  for (PictureScene& scene : scenes) {
    scene.send = [send = scene.send](RaytraceImpl& renderer) {
      SetSummerAfternoon(renderer);
      return send(renderer);
    };
  }
  return scenes;
}

}  // namespace qv::test

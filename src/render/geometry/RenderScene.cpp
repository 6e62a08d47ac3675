#include "render/geometry/RenderScene.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <string>

#include "core/Log.h"
#include "render/geometry/Billboard.h"
#include "render/geometry/StaticMesh.h"

namespace qv {
namespace {

// What stands in for a material that a triangle names and no one sent: a mid grey.
RenderMaterial FallbackMaterial() {
  RenderMaterial material;
  material.diffuseColor = Vec3(0.5f, 0.5f, 0.5f);
  return material;
}

// The sun before the sky has told where it stands.
RenderLight DefaultSun() {
  return RenderLight::Directional(Vec3(10000, 10000, 10000), Vec3(10000, 10000, 10000));
}

}  // namespace

RenderScene::RenderScene(RTCDevice device) : device_(device) {
  Clear();
  lights_.push_back(DefaultSun());
}

RenderScene::~RenderScene() {
  Clear();
}

std::int32_t RenderScene::AddMaterial(const MaterialParameters& parameters) {
  RenderMaterial material;
  material.ambientColor = parameters.ambientColor;
  material.diffuseColor = parameters.diffuseColor;
  material.specularColor = parameters.specularColor;
  material.diffuseFactor = parameters.diffuseFactor;
  material.specularExponent = parameters.specularExponent;
  material.reflectance = parameters.reflectance;
  material.glossy = parameters.glossy;
  material.refractiveIndex = parameters.refractiveIndex;
  material.shadingFlag = parameters.shadingFlag;
  material.opacity = parameters.opacity;
  material.bumpFactor = parameters.bumpFactor;
  if (parameters.hasTexture) {
    if (auto texture = LoadTexture(parameters.texturePath)) {
      material.hasTexture = true;
      material.texture = std::move(*texture);
    }
  }
  materials_.push_back(std::move(material));
  return static_cast<std::int32_t>(materials_.size()) - 1;
}

void RenderScene::AddLight(const RenderLight& light) {
  lights_.push_back(light);
}

void RenderScene::AddLEMLight(const Vec3& emission, std::span<const float> corners) {
  lemLights_.emplace_back(emission, corners);
}

void RenderScene::BeginStaticMesh() {
  currentMesh_ = std::make_shared<StaticMesh>();
  meshes_.push_back(currentMesh_);
}

void RenderScene::BeginBillboard() {
  currentMesh_ = std::make_shared<Billboard>();
  meshes_.push_back(currentMesh_);
}

void RenderScene::AddMeshData(std::span<const MeshVertex> vertices,
                              std::span<const MeshTriangle> triangles) {
  if (currentMesh_) currentMesh_->Append(vertices, triangles);
}

void RenderScene::EndBillboard(const Vec3& pivot, const Vec2& frontAxis) {
  if (auto* billboard = dynamic_cast<Billboard*>(currentMesh_.get())) {
    billboard->SetAnchor(pivot, frontAxis);
  }
  currentMesh_.reset();
}

void RenderScene::EndMesh() {
  currentMesh_.reset();
}

void RenderScene::Build(void* userData) {
  const std::unique_lock lock(updateMutex_);
  MeasureBounds();
  currentMesh_.reset();
  RepairMaterials();

  if (embreeScene_ == nullptr) {
    embreeScene_ = rtcNewScene(device_);
    rtcSetSceneFlags(embreeScene_, RTC_SCENE_FLAG_DYNAMIC | RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
    rtcSetSceneBuildQuality(embreeScene_, RTC_BUILD_QUALITY_MEDIUM);
  }
  std::int32_t triangles = 0;
  for (const auto& mesh : meshes_) {
    if (mesh->GeometryId() == Mesh::kNoGeometry) {
      mesh->Build(device_, embreeScene_, materials_, userData);
    }
    triangles += static_cast<std::int32_t>(mesh->TriangleCount());
  }
  triangleCount_ = triangles;
  materialCount_ = static_cast<std::int32_t>(materials_.size());
  SampleLEMLights(lemLights_);
  sceneBusy_ = false;
}

void RenderScene::CommitForFrame(const Vec3& viewDirection) {
  sceneBusy_ = true;
  {
    const std::unique_lock lock(updateMutex_);
    if (embreeScene_ != nullptr) {
      for (const auto& mesh : meshes_) {
        // What came after the last Build waits for the next.
        if (mesh->GeometryId() != Mesh::kNoGeometry) mesh->Update(embreeScene_, viewDirection);
      }
      rtcCommitScene(embreeScene_);
    }
  }
  sceneBusy_ = false;
}

void RenderScene::Clear() {
  const std::unique_lock lock(updateMutex_);
  sceneBusy_ = true;
  currentMesh_.reset();
  meshes_.clear();
  if (embreeScene_ != nullptr) {
    rtcReleaseScene(embreeScene_);
    embreeScene_ = nullptr;
  }
  lights_.clear();
  lemLights_.clear();
  materials_.clear();
  lightmapPages_.clear();
  triangleCount_ = 0;
  materialCount_ = 0;
  bounds_ = {Vec3::Constant(std::numeric_limits<float>::max()),
             Vec3::Constant(std::numeric_limits<float>::min())};
}

bool RenderScene::SetMeshLightmap(std::size_t mesh, const MeshLightmap& lightmap) {
  return mesh < meshes_.size() && meshes_[mesh]->GeometryId() != Mesh::kNoGeometry &&
         meshes_[mesh]->SetLightmap(lightmap);
}

void RenderScene::ClearLightmaps() {
  lightmapPages_.clear();
  for (const auto& mesh : meshes_) mesh->SetLightmap({});
}

void RenderScene::MeasureBounds() {
  for (const auto& mesh : meshes_) {
    for (const MeshVertex& vertex : mesh->StagingVertices()) {
      const Eigen::Map<const Vec3> position(vertex.position);
      bounds_.minimum = bounds_.minimum.cwiseMin(position);
      bounds_.maximum = bounds_.maximum.cwiseMax(position);
    }
  }
}

// A material may arrive after the triangles that name it, so this is known only now.
void RenderScene::RepairMaterials() {
  constexpr std::size_t kMostMaterials = 32767;
  const auto fallback = static_cast<std::uint16_t>(std::min(materials_.size(), kMostMaterials));
  std::size_t repaired = 0;
  for (const auto& mesh : meshes_) repaired += mesh->RepairMaterials(materials_.size(), fallback);
  if (repaired == 0) return;
  if (materials_.size() <= kMostMaterials) materials_.push_back(FallbackMaterial());
  Log(LogLevel::kWarning,
      std::to_string(repaired) +
          " sides of triangles name a material that was not sent; shown in grey");
}

}  // namespace qv

#pragma once

#include <embree3/rtcore.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <shared_mutex>
#include <span>
#include <utility>
#include <vector>

#include "core/SceneRecords.h"
#include "core/Vec.h"
#include "render/geometry/Mesh.h"
#include "render/geometry/ViewBounds.h"
#include "render/light/RenderLEMLight.h"
#include "render/light/RenderLight.h"
#include "render/material/LightmapPage.h"
#include "render/material/RenderMaterial.h"

namespace qv {

// The model as the renderer holds it. Filled on the link's thread while no job runs; during a pass
// everything is read-only.
class RenderScene {
 public:
  explicit RenderScene(RTCDevice device);
  ~RenderScene();
  RenderScene(const RenderScene&) = delete;
  RenderScene& operator=(const RenderScene&) = delete;

  std::int32_t AddMaterial(const MaterialParameters& parameters);
  void AddLight(const RenderLight& light);
  void AddLEMLight(const Vec3& emission, std::span<const float> corners);
  void BeginStaticMesh();
  void BeginBillboard();
  // Both do nothing without a mesh (or billboard) in hand.
  void AddMeshData(std::span<const MeshVertex> vertices, std::span<const MeshTriangle> triangles);
  void EndBillboard(const Vec3& pivot, const Vec2& frontAxis);
  void EndMesh();

  // Turns what has arrived into geometry. The ray library's scene itself is committed with the
  // first frame.
  void Build(void* userData);
  // Turns billboards to the camera and commits; ray casts of other threads wait meanwhile.
  void CommitForFrame(const Vec3& viewDirection);
  void Clear();

  // Baked light, while no job runs. A page whose texels are not as many as its size says, and a
  // page that is not there, give no light.
  void SetLightmapPages(std::vector<LightmapPage> pages) { lightmapPages_ = std::move(pages); }
  // False if there is no such built mesh, or the lightmap does not fit it.
  bool SetMeshLightmap(std::size_t mesh, const MeshLightmap& lightmap);
  // Takes away the pages and the lightmaps of all meshes.
  void ClearLightmaps();

  // Light 0: the sun. Render thread, between passes.
  void SetSun(const RenderLight& sun) {
    if (!lights_.empty()) lights_.front() = sun;
  }

  const std::vector<RenderLight>& Lights() const { return lights_; }
  const std::vector<RenderLEMLight>& LEMLights() const { return lemLights_; }
  const std::vector<RenderMaterial>& Materials() const { return materials_; }
  const std::vector<LightmapPage>& LightmapPages() const { return lightmapPages_; }
  // The position in this list is the geometry identifier of a hit.
  const std::vector<std::shared_ptr<Mesh>>& Meshes() const { return meshes_; }
  const ViewBounds& Bounds() const { return bounds_; }
  // Of the scene as it was built last. Any thread.
  std::int32_t TriangleCount() const { return triangleCount_; }
  std::int32_t MaterialCount() const { return materialCount_; }
  RTCScene EmbreeScene() const { return embreeScene_; }

  // True from construction until the first scene is built, and while the scene is updated for a
  // frame. Any thread.
  bool IsBusy() const { return sceneBusy_; }
  // Held shared by ray casts from outside the engine, exclusively by an update.
  std::shared_mutex& UpdateMutex() const { return updateMutex_; }

 private:
  void MeasureBounds();
  void RepairMaterials();

  std::atomic<bool> sceneBusy_{true};
  RTCDevice device_;
  std::vector<RenderLight> lights_;
  std::vector<RenderLEMLight> lemLights_;
  std::vector<RenderMaterial> materials_;
  std::vector<LightmapPage> lightmapPages_;
  ViewBounds bounds_;
  std::atomic<std::int32_t> triangleCount_{0};
  std::atomic<std::int32_t> materialCount_{0};
  RTCScene embreeScene_ = nullptr;
  std::vector<std::shared_ptr<Mesh>> meshes_;
  std::shared_ptr<Mesh> currentMesh_;
  mutable std::shared_mutex updateMutex_;
};

}  // namespace qv

#pragma once

#include <limits>
#include <string>
#include <vector>

#include "host/link/HostLink.h"

namespace qv::host {

// Notes the commands; the viewer is gone from a given one on.
class FakeHostLink final : public HostLink {
 public:
  explicit FakeHostLink(std::size_t lives = std::numeric_limits<std::size_t>::max())
      : lives_(lives) {}

  const std::vector<std::string>& commands() const { return commands_; }
  const std::vector<float>& progress() const { return progress_; }
  std::size_t triangles() const { return triangles_; }
  std::size_t highestMaterial() const { return highestMaterial_; }

  bool StartViewer(const std::string&, const std::vector<std::string>&) override { return true; }
  bool ViewerRunning() override { return true; }
  std::uint32_t ViewerProcessId() const override { return 0; }
  std::optional<int> WaitForViewer(std::optional<std::chrono::milliseconds>) override { return 0; }
  void KillViewer() override {}
  void Interrupt() override {}
  std::uint32_t window() const override { return 0; }
  std::uint32_t processId() const override { return 0; }

  bool SceneComplete() override { return Note("SceneComplete"); }
  bool SetCamera(const RenderCamera&, bool) override { return Note("SetCamera"); }
  std::optional<std::int32_t> AddMaterial(const MaterialParameters&) override {
    if (!Note("AddMaterial")) return std::nullopt;
    return materials_++;
  }
  bool AddPointLight(const Vec3&, const Vec3&) override { return Note("AddPointLight"); }
  bool AddSpotLight(const Vec3&, const Vec3&, const Vec3&, float, float) override {
    return Note("AddSpotLight");
  }
  bool AddDirectionalLight(const Vec3&, const Vec3&) override {
    return Note("AddDirectionalLight");
  }
  bool AddLEMLight(const Vec3&, std::span<const float>) override { return Note("AddLEMLight"); }
  bool BeginStaticMesh() override { return Note("BeginStaticMesh"); }
  bool BeginBillboard() override { return Note("BeginBillboard"); }
  bool AddMeshData(std::span<const MeshVertex>, std::span<const MeshTriangle> data) override {
    triangles_ += data.size();
    for (const MeshTriangle& triangle : data) {
      highestMaterial_ = std::max<std::size_t>(highestMaterial_, triangle.materialWord & 0xffff);
    }
    return Note("AddMeshData");
  }
  bool EndBillboard(const Vec3&, const Vec2&) override { return Note("EndBillboard"); }
  bool EndMesh() override { return Note("EndMesh"); }
  bool SetModelDirectory(const std::string&) override { return Note("SetModelDirectory"); }
  bool SetLocationAndTime(const LocationAndTime&) override { return Note("SetLocationAndTime"); }
  bool SetStatusMessage(const std::string&) override { return Note("SetStatusMessage"); }
  bool SetProgress(float value) override {
    progress_.push_back(value);
    return Note("SetProgress");
  }
  std::optional<bool> IsCameraLinked() override { return false; }
  std::optional<std::vector<std::byte>> SendRecord(
      std::span<const std::byte>, std::size_t, std::optional<std::chrono::milliseconds>) override {
    return std::nullopt;
  }
  bool ResizeArea(std::size_t) override { return false; }

 private:
  bool Note(const std::string& command) {
    if (lives_ == 0) return false;
    --lives_;
    commands_.push_back(command);
    return true;
  }

  std::size_t lives_;
  std::int32_t materials_ = 0;
  std::size_t triangles_ = 0;
  std::size_t highestMaterial_ = 0;
  std::vector<std::string> commands_;
  std::vector<float> progress_;
};

}  // namespace qv::host

#pragma once

#include <functional>
#include <string>

#include "link/IQuorvane.h"

namespace qv {

// "1 2.5 -3": the shortest texts that give the same floats.
std::string NumbersText(std::span<const float> numbers);
std::string VectorText(const Vec3& vector);

// A frame that tells each call as one line of text.
class RecordingFrame : public IQuorvane {
 public:
  using Note = std::function<void(const std::string&)>;

  explicit RecordingFrame(Note note) : note_(std::move(note)) {}

  void SceneComplete() override;
  void SetCamera(const Vec3& eye, const Vec3& direction, const Vec3& up, float fieldOfView,
                 const Vec3& target, bool showProgress) override;
  std::int32_t AddMaterial(const MaterialParameters& parameters) override;
  void AddPointLight(const Vec3& color, const Vec3& position) override;
  void AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                    float innerAngle, float outerAngle) override;
  void AddDirectionalLight(const Vec3& color, const Vec3& direction) override;
  void AddLEMLight(const Vec3& emission, std::span<const float> vertices) override;
  void AddMeshData(std::span<const MeshVertex> vertices,
                   std::span<const MeshTriangle> triangles) override;
  void SetModelDirectory(const std::string& text) override;
  void BeginBillboard() override;
  void EndBillboard(const Vec3& position, const Vec2& direction) override;
  void BeginStaticMesh() override;
  void EndMesh() override;
  void SetLocationAndTime(const LocationAndTime& when) override;
  void SetStatusMessage(const std::string& text) override;
  void SetProgress(float value) override;
  bool IsCameraLinked() override;

 protected:
  void Tell(const std::string& line) { note_(line); }

 private:
  Note note_;
  std::int32_t materials_ = 0;
  bool cameraLinked_ = true;  // changes with each question
};

}  // namespace qv

#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "core/SceneRecords.h"
#include "core/Vec.h"

namespace qv {

// A moment and a place, as the host sends them.
struct LocationAndTime {
  float sunRotation = 0;  // radians between model north and the sky's north
  float latitude = 0;     // degrees
  float longitude = 0;    // degrees
  std::int32_t year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  std::int32_t timeZone = 0;  // hours

  bool operator==(const LocationAndTime&) const = default;
};

// What the host's commands reach: implemented by the main frame. All operations run on the link's
// listener thread, one at a time; SetStatusMessage, SetProgress and IsCameraLinked also on others.
// Arguments were checked by the link: numbers are finite, vertex numbers lie within the vertices of
// their call, a mesh is begun before data comes. Material numbers are not checked here, since a
// material may follow its triangles.
class IQuorvane {
 public:
  virtual void SceneComplete() = 0;
  virtual void SetCamera(const Vec3& eye, const Vec3& direction, const Vec3& up, float fieldOfView,
                         const Vec3& target, bool showProgress) = 0;
  // Returns the index of the new material.
  virtual std::int32_t AddMaterial(const MaterialParameters& parameters) = 0;
  virtual void AddPointLight(const Vec3& color, const Vec3& position) = 0;
  virtual void AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                            float innerAngle, float outerAngle) = 0;
  virtual void AddDirectionalLight(const Vec3& color, const Vec3& direction) = 0;
  // Nine floats for each triangle, its three corners in order.
  virtual void AddLEMLight(const Vec3& emission, std::span<const float> vertices) = 0;
  virtual void AddMeshData(std::span<const MeshVertex> vertices,
                           std::span<const MeshTriangle> triangles) = 0;
  // Texts are UTF-8.
  virtual void SetModelDirectory(const std::string& text) = 0;
  virtual void BeginBillboard() = 0;
  virtual void EndBillboard(const Vec3& position, const Vec2& direction) = 0;
  virtual void BeginStaticMesh() = 0;
  virtual void EndMesh() = 0;
  virtual void SetLocationAndTime(const LocationAndTime& when) = 0;
  virtual void SetStatusMessage(const std::string& text) = 0;
  virtual void SetProgress(float value) = 0;
  virtual bool IsCameraLinked() = 0;
  virtual ~IQuorvane() = default;
};

}  // namespace qv

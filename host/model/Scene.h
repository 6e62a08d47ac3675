#pragma once

#include <Eigen/Core>
#include <Eigen/Geometry>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "core/RenderCamera.h"
#include "core/SceneRecords.h"
#include "core/Vec.h"
#include "host/model/TemporaryFolder.h"

namespace qv::host {

using Bounds = Eigen::AlignedBox3f;

// A material as the viewer takes it, and what only the host knows of it.
struct SceneMaterial : MaterialParameters {
  std::string name;        // the file's; empty for none
  Vec3 emission{0, 0, 0};  // the light of its own that the surface shows, on the screen's scale
};

// One mesh of the file at one place in the world. The triangles' material words name the scene's
// materials, the same one on both sides.
struct SceneMesh {
  std::string name;
  std::vector<MeshVertex> vertices;
  std::vector<MeshTriangle> triangles;
};

struct SceneLight {
  enum class Kind { kPoint, kSpot, kDirectional };

  Kind kind = Kind::kPoint;
  std::string name;
  Vec3 color{0, 0, 0};       // as the viewer wants it, see Lights.h
  Vec3 position{0, 0, 0};    // point and spot
  Vec3 direction{0, 0, -1};  // spot and directional: the way that the light travels, unit length
  float innerAngle = 0;      // spot: from the axis to the edge of the full light, radians
  float outerAngle = 0;      // spot: from the axis to where the light ends, radians
};

// A lamp with a surface: the viewer's LEM light.
struct SceneAreaLight {
  std::string name;
  // A small part of area A at a distance r, seen straight on, gives a white surface that faces it
  // emission * A / r^2.
  Vec3 emission{0, 0, 0};
  // Three for each triangle, counterclockwise as seen from the side that it shines to.
  std::vector<Vec3> corners;
};

struct SceneCamera {
  std::string name;
  RenderCamera view;
};

// A model as the viewer gets it: flat, in inches, z up.
struct Scene {
  std::vector<SceneMaterial> materials;  // at most kMaximumMaterials
  std::vector<SceneMesh> meshes;
  std::vector<SceneLight> lights;
  std::vector<SceneAreaLight> areaLights;
  std::vector<SceneCamera> cameras;
  Bounds bounds;                      // of all meshes
  std::filesystem::path directory;    // the model file's
  std::string description;            // format, unit and axis that were found, for people
  std::vector<std::string> warnings;  // what was left out or changed, one sentence each
  // What was taken off all coordinates of a model that lies too far from its origin for floats.
  Eigen::Vector3d origin{0, 0, 0};
  // Holds the texture files that the materials name and that were not beside the model.
  std::shared_ptr<TemporaryFolder> temporaryFiles;

  std::size_t TriangleCount() const;
  std::size_t TextureCount() const;  // different files
};

// The back material's number is read as a signed 16-bit number.
inline constexpr std::size_t kMaximumMaterials = 32767;

}  // namespace qv::host

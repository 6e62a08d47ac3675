#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/LightFactors.h"
#include "host/model/LoadModel.h"
#include "host/model/Scene.h"
#include "link/IQuorvane.h"

// What a scene file says, as values: lengths in inches, angles in radians.
namespace qv::host {

// A file by its path, or one in an archive.
struct FileReference {
  std::string archive;  // a name of SceneFile::archives; empty for none
  std::string path;     // from the scene file's folder, or the entry's name in the archive
  std::string place;    // in the scene file, for messages
};

// What becomes of a material; what is not given stays.
struct MaterialChange {
  std::string name;   // of the materials that it is for; "*" for all
  std::string place;  // in the scene file, for messages
  std::optional<Vec3> color;
  std::optional<float> opacity;     // 0 to 1
  std::optional<float> mirror;      // 0 to 1: the part of the light that is reflected
  std::optional<bool> blurred;      // the reflection
  std::optional<float> refraction;  // index, 1 to 4
  std::optional<float> shininess;   // exponent of the highlight, 0 for none
  std::optional<Vec3> highlight;    // its colour
  std::optional<float> bump;        // relief of the texture
  std::optional<Vec3> glow;         // the light of its own
  bool plain = false;               // takes the texture away
  std::optional<FileReference> texture;
};

// How large something is to be. Lengths in the model's own axes once it stands: x, y, z.
struct WantedSize {
  Vec3 scale{1, 1, 1};
  std::array<std::optional<float>, 3> lengths;
};

struct SceneFileModel {
  std::string name;
  std::string place;
  FileReference file;
  LoadOptions load;
  WantedSize size;
  Vec3 turn{0, 0, 0};  // about x, then y, then z, counterclockwise
  Vec3 at{0, 0, 0};
  bool byOrigin = false;  // `at` is where the model's origin goes, not the middle of its foot
  bool lights = true;
  std::vector<MaterialChange> materials;
  struct Without {
    Bounds box;
    std::string place;
  };
  std::vector<Without> without;  // meshes that lie wholly in one of them, once placed, are left out
};

struct SceneFileShape {
  enum class Kind { kBox, kPlane, kCylinder, kSphere };

  Kind kind = Kind::kBox;
  std::string name;
  Vec3 size{1, 1, 1};
  Vec3 turn{0, 0, 0};
  Vec3 at{0, 0, 0};         // of the middle of its foot
  float textureLength = 0;  // that one repetition of the texture covers
  MaterialChange material;
};

// What a file may say of place and time; what is not given is the host's to choose.
struct PlaceAndTime {
  std::optional<float> latitude;     // degrees
  std::optional<float> longitude;    // degrees
  std::optional<float> sunRotation;  // as in LocationAndTime
  std::optional<int> timeZone;
  std::optional<LocationAndTime> time;  // only its date and time of day
};

// The viewer's settings that a scene is first shown with.
struct SceneLook {
  std::optional<std::string> background;  // the name of a cube map or a weather
  std::optional<float> brightness;
  std::optional<float> contrast;
  std::optional<float> gamma;
  std::optional<float> eyeHeight;  // inches
  std::optional<LightFactors> lightFactors;
};

struct SceneFile {
  std::map<std::string, FileReference> archives;
  std::vector<SceneFileModel> models;
  std::vector<SceneFileShape> shapes;
  std::vector<SceneLight> lights;
  std::vector<SceneAreaLight> areaLights;
  std::vector<SceneCamera> views;  // the first is the start view
  PlaceAndTime when;
  SceneLook look;
};

}  // namespace qv::host

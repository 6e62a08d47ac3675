#pragma once

#include <assimp/scene.h>

#include <Eigen/Core>
#include <assimp/Importer.hpp>
#include <string>

#include "host/model/LoadModel.h"

namespace qv::host {

// What the import library has made of a file's coordinates and values, which differs from format to
// format and is stated by none of its own fields.
struct ModelFormat {
  enum class Family { kOther, kCollada, kGltf, kIfc, k3ds, kObj, kFbx };

  Family family = Family::kOther;
  std::string name;  // for people

  // The axis that is up in the file, and the turn that brings the file's axes to the loaded
  // scene's.
  UpAxis fileUp = UpAxis::kY;
  Eigen::Matrix3d sceneFromFile = Eigen::Matrix3d::Identity();

  // Metres that one unit of the file stands for; 0 where neither file nor format tells.
  double metresPerFileUnit = 0;
  // Units of the loaded scene that one unit of the file has become.
  double sceneUnitsPerFileUnit = 1;
  // What a file without a unit is likely to be in.
  LengthUnit habit = LengthUnit::kMetre;

  // Whether the angles of a spot light are from edge to edge, not from the axis.
  bool wholeSpotAngles = false;
  // Whether normals of the file are to be passed over: those of Blender's own files are smoothed
  // over all edges, whatever the faces' flags say, which the import library drops.
  bool losesHardEdges = false;
  // Whether colour factors are linear light. Textures are not in any format.
  bool linearColors = false;
};

// The facts about a scene that `importer` has just read without post-processing.
ModelFormat FormatOf(const Assimp::Importer& importer, const aiScene& scene);

// The turn and scale from the loaded scene to inches with z up, and what was decided, for people.
// `diagonal` is the size of the scene in its own units. A file that states no unit is taken in what
// its format is mostly used with: inches (but not for things under 30 cm), millimetres (not under
// 1 cm), else metres; or in metres, centimetres or millimetres, in this order, where the first
// would make it larger than 100 m or too small.
struct SceneUnits {
  Eigen::Matrix3d inchesFromScene;
  std::string description;
};
SceneUnits UnitsOf(const ModelFormat& format, const LoadOptions& options, double diagonal);

}  // namespace qv::host

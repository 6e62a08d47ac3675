#include "host/model/LoadModel.h"

#include <assimp/config.h>
#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <assimp/Importer.hpp>
#include <cmath>
#include <exception>
#include <span>
#include <utility>

#include "host/model/AreaLights.h"
#include "host/model/Cameras.h"
#include "host/model/FileCheck.h"
#include "host/model/Lights.h"
#include "host/model/MeshReader.h"
#include "host/model/ModelFormat.h"
#include "host/model/Placement.h"
#include "host/model/SceneMaterials.h"
#include "host/model/SceneMeshes.h"
#include "host/model/TextureFiles.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// Floats have steps of 1/64 inch at this distance from the origin, beyond which a model is moved
// there if it is small beside its distance.
constexpr double kFarFromOrigin = 2e5;

aiScene* ReadFile(Assimp::Importer& importer, const fs::path& path) {
  importer.SetPropertyBool(AI_CONFIG_IMPORT_FBX_PRESERVE_PIVOTS, false);
  if (importer.ReadFile(platform::Utf8FromPath(path), 0) == nullptr) return nullptr;
  // The importer owns the scene and hands it out as read-only; it is ours to change all the same,
  // and its later steps take it as it is then.
  return const_cast<aiScene*>(importer.GetScene());
}

LeftOut RemoveAllBrokenFaces(aiScene& scene) {
  LeftOut leftOut;
  for (aiMesh* mesh : std::span(scene.mMeshes, scene.mNumMeshes)) {
    leftOut += RemoveBrokenFaces(*mesh);
  }
  return leftOut;
}

Eigen::Vector3d OriginFor(const Eigen::AlignedBox3d& inches) {
  const Eigen::Vector3d center = inches.center();
  const bool far = center.cwiseAbs().maxCoeff() > kFarFromOrigin;
  const bool small = inches.diagonal().norm() < center.norm() / 4;
  if (!far || !small) return Eigen::Vector3d::Zero();
  return {std::round(center.x()), std::round(center.y()), std::round(inches.min().z())};
}

Eigen::AlignedBox3d Turned(const Eigen::AlignedBox3d& box, const Eigen::Matrix3d& turn) {
  Eigen::AlignedBox3d turned;
  turned.extend(turn * box.min());
  turned.extend(turn * box.max());
  return turned;
}

std::vector<std::string> Sentences(const LeftOut& leftOut) {
  std::vector<std::string> sentences;
  const auto tell = [&](std::size_t count, const char* what) {
    if (count > 0) sentences.push_back(std::to_string(count) + ' ' + what + " were left out.");
  };
  tell(leftOut.notFinite, "faces with a corner that is no finite point");
  tell(leftOut.outOfRange, "faces with vertex numbers that do not exist");
  tell(leftOut.withoutArea, "faces without area");
  return sentences;
}

void TellOrigin(Scene& scene) {
  if (scene.origin.isZero(0)) return;
  scene.warnings.push_back("The model lies far from its origin; it was moved by " +
                           std::to_string(-scene.origin.x()) + ", " +
                           std::to_string(-scene.origin.y()) + ", " +
                           std::to_string(-scene.origin.z()) + " inches.");
}

std::string NothingToShow(const LeftOut& leftOut) {
  std::string why = "it holds no surfaces that can be shown";
  for (const std::string& sentence : Sentences(leftOut)) why += "; " + sentence;
  return why;
}

LoadResult Converted(const aiScene& source, const ModelFormat& format, const fs::path& path,
                     const LoadOptions& options, LeftOut leftOut) {
  auto scene = std::make_unique<Scene>();
  scene->directory = path.parent_path();
  scene->temporaryFiles =
      options.temporaryFiles ? options.temporaryFiles : std::make_shared<TemporaryFolder>();
  const std::vector<PlacedNode> nodes = PlacedNodes(source);
  const Eigen::AlignedBox3d box = BoundsOf(source, nodes);
  if (box.isEmpty()) return {nullptr, NothingToShow(leftOut)};
  const SceneUnits units = UnitsOf(format, options, box.diagonal().norm());
  scene->description = units.description;
  scene->origin = OriginFor(Turned(box, units.inchesFromScene));
  Eigen::Affine3d worldFromScene = Eigen::Affine3d::Identity();
  worldFromScene.linear() = units.inchesFromScene;
  worldFromScene.translation() = -scene->origin;

  TextureFiles textures(source, scene->directory, scene->temporaryFiles, scene->warnings);
  SceneMaterials materials(source, format, textures);
  SceneMeshes meshes(source, format, materials);
  for (const PlacedNode& node : nodes) meshes.AddTo(*scene, node, worldFromScene);
  leftOut += meshes.leftOut();
  if (scene->meshes.empty()) return {nullptr, NothingToShow(leftOut)};
  scene->materials = materials.Take(scene->warnings);
  const PlaceOfName places = PlacesByName(nodes);
  scene->lights = LightsOf(source, format, places, worldFromScene, scene->bounds);
  scene->areaLights = AreaLightsOf(*scene);
  scene->cameras = CamerasOf(source, format, places, worldFromScene, scene->bounds);
  for (const std::string& sentence : Sentences(leftOut)) scene->warnings.push_back(sentence);
  TellOrigin(*scene);
  return {std::move(scene), ""};
}

LoadResult Load(const fs::path& path, const LoadOptions& options) {
  Assimp::Importer importer;
  aiScene* source = ReadFile(importer, path);
  if (source == nullptr) return {nullptr, importer.GetErrorString()};
  if (source->mRootNode == nullptr) return {nullptr, "it holds no scene"};
  const ModelFormat format = FormatOf(importer, *source);
  const LeftOut leftOut = RemoveAllBrokenFaces(*source);
  if (source->mNumMeshes == 0) return {nullptr, NothingToShow(leftOut)};
  unsigned steps = aiProcess_GenUVCoords;
  // glTF's are applied with the material's texture.
  if (format.family != ModelFormat::Family::kGltf) steps |= aiProcess_TransformUVCoords;
  if (importer.ApplyPostProcessing(steps) == nullptr) return {nullptr, importer.GetErrorString()};
  return Converted(*source, format, path, options, leftOut);
}

}  // namespace

LoadResult LoadModel(const fs::path& path, const LoadOptions& options) {
  const auto failure = [&](const std::string& why) {
    return LoadResult{nullptr,
                      "The model " + platform::Utf8FromPath(path) + " can't be read: " + why};
  };
  try {
    const fs::path absolute = fs::absolute(path).lexically_normal();
    if (const auto wrong = WhyNotReadable(absolute)) return failure(*wrong);
    LoadResult result = Load(absolute, options);
    return result.scene ? std::move(result) : failure(result.error);
  } catch (const std::bad_alloc&) {
    return failure("there is not enough memory");
  } catch (const std::exception& exception) {
    return failure(exception.what());
  }
}

}  // namespace qv::host

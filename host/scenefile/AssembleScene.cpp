#include "host/scenefile/AssembleScene.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <utility>

#include "host/model/AreaLights.h"
#include "host/model/ImagePixels.h"
#include "host/model/LinkPath.h"
#include "host/model/MaterialTable.h"
#include "host/scenefile/Archive.h"
#include "host/scenefile/MaterialChange.h"
#include "host/scenefile/ModelPlacement.h"
#include "host/scenefile/SceneFileError.h"
#include "host/scenefile/Shapes.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// Of the names that a message lists.
constexpr std::size_t kMostNames = 30;

Bounds BoundsOf(const SceneMesh& mesh) {
  Bounds bounds;
  for (const MeshVertex& vertex : mesh.vertices) bounds.extend(Vec3(vertex.position));
  return bounds;
}

bool IsFor(const MaterialChange& change, const std::string& name) {
  return change.name == "*" || change.name == name;
}

// The files that a scene file names; archives are unpacked when they are asked for, each folder
// once.
class Files {
 public:
  Files(const SceneFile& file, fs::path directory, std::shared_ptr<TemporaryFolder> temporaryFiles)
      : file_(file), directory_(std::move(directory)), temporaryFiles_(std::move(temporaryFiles)) {}

  fs::path Find(const FileReference& reference) {
    fs::path path =
        reference.archive.empty() ? BesideSceneFile(reference.path) : Unpacked(reference);
    std::error_code error;
    if (!fs::is_regular_file(path, error)) {
      throw SceneFileError(
          reference.place + ": there is no file " +
          (reference.archive.empty() ? platform::Utf8FromPath(path) : reference.path));
    }
    return path;
  }

  std::string FindImage(const FileReference& reference) {
    const fs::path path = Find(reference);
    if (!IsReadableImage(path)) {
      throw SceneFileError(reference.place + ": " + platform::Utf8FromPath(path) +
                           " is no image that can be read");
    }
    auto text = LinkPath(path, *temporaryFiles_);
    if (!text) {
      throw SceneFileError(reference.place + ": the path " + platform::Utf8FromPath(path) +
                           " is too long");
    }
    return *text;
  }

 private:
  fs::path BesideSceneFile(const std::string& path) const {
    return (directory_ / platform::PathFromUtf8(path)).lexically_normal();
  }

  fs::path Unpacked(const FileReference& reference) {
    const auto archive = file_.archives.find(reference.archive);
    if (archive == file_.archives.end()) {
      throw SceneFileError(reference.place + ": there is no archive \"" + reference.archive +
                           "\" among the archives");
    }
    const std::string folder = reference.path.substr(0, reference.path.rfind('/') + 1);
    const auto [place, isNew] = folders_.try_emplace({reference.archive, folder});
    if (!isNew) return place->second / platform::PathFromUtf8(reference.path);
    const auto target = temporaryFiles_->NewPath("");
    if (!target) throw SceneFileError("there is no folder for temporary files");
    place->second = *target;
    try {
      return UnpackFolderOf(BesideSceneFile(archive->second.path), reference.path, *target);
    } catch (const SceneFileError& error) {
      throw SceneFileError(reference.place + ": " + error.what());
    }
  }

  const SceneFile& file_;
  fs::path directory_;
  std::shared_ptr<TemporaryFolder> temporaryFiles_;
  std::map<std::pair<std::string, std::string>, fs::path> folders_;
};

class Assembler {
 public:
  Assembler(const SceneFile& file, const fs::path& directory,
            const std::shared_ptr<TemporaryFolder>& temporaryFiles)
      : file_(file), files_(file, directory, temporaryFiles), table_(kMaximumMaterials) {
    scene_->directory = directory;
    scene_->temporaryFiles = temporaryFiles;
  }

  std::unique_ptr<Scene> Assemble() {
    for (const SceneFileModel& model : file_.models) AddModel(model);
    for (const SceneFileShape& shape : file_.shapes) AddShape(shape);
    if (scene_->meshes.empty()) throw SceneFileError("it names no models and no shapes");
    scene_->materials = table_.Take(scene_->warnings);
    scene_->lights.insert(scene_->lights.end(), file_.lights.begin(), file_.lights.end());
    scene_->areaLights = file_.areaLights;
    for (SceneAreaLight& light : AreaLightsOf(*scene_)) {
      if (scene_->areaLights.size() >= kMaximumAreaLights) break;
      scene_->areaLights.push_back(std::move(light));
    }
    scene_->cameras = file_.views;
    scene_->description = "a scene of " + std::to_string(file_.models.size()) + " models and " +
                          std::to_string(file_.shapes.size()) + " shapes";
    return std::move(scene_);
  }

 private:
  using ModelKey = std::tuple<fs::path, std::optional<LengthUnit>, std::optional<UpAxis>>;

  const Scene& Load(const SceneFileModel& model) {
    const fs::path path = files_.Find(model.file);
    std::unique_ptr<Scene>& loaded = models_[{path, model.load.unit, model.load.up}];
    if (loaded) return *loaded;
    LoadOptions options = model.load;
    options.temporaryFiles = scene_->temporaryFiles;
    LoadResult result = LoadModel(path, options);
    if (!result.scene) throw SceneFileError(model.file.place + ": " + result.error);
    loaded = std::move(result.scene);
    for (const std::string& warning : loaded->warnings) {
      scene_->warnings.push_back(model.name + ": " + warning);
    }
    return *loaded;
  }

  // The scene's numbers of a model's materials, as changed.
  std::vector<std::uint32_t> Materials(const SceneFileModel& model, const Scene& loaded) {
    std::vector<SceneMaterial> materials = loaded.materials;
    for (const MaterialChange& change : model.materials) {
      const std::string texture = change.texture ? files_.FindImage(*change.texture) : "";
      bool used = false;
      for (SceneMaterial& material : materials) {
        if (!IsFor(change, material.name)) continue;
        ChangeMaterial(change, texture, material);
        used = true;
      }
      if (!used) FailAtName(change, materials);
    }
    std::vector<std::uint32_t> numbers;
    numbers.reserve(materials.size());
    for (const SceneMaterial& material : materials) numbers.push_back(table_.IndexOf(material));
    return numbers;
  }

  [[noreturn]] static void FailAtName(const MaterialChange& change,
                                      const std::vector<SceneMaterial>& materials) {
    std::set<std::string> names;
    for (const SceneMaterial& material : materials) names.insert(material.name);
    std::string list;
    std::size_t listed = 0;
    for (const std::string& name : names) {
      if (++listed > kMostNames) break;
      list += (list.empty() ? "\"" : ", \"") + name + '"';
    }
    if (listed > kMostNames) list += " and more";
    throw SceneFileError(change.place + ".name: the model has no material \"" + change.name +
                         "\"; it has " + list);
  }

  void AddModel(const SceneFileModel& model) {
    const Scene& loaded = Load(model);
    const std::vector<std::uint32_t> materials = Materials(model, loaded);
    const Eigen::Affine3f place =
        PlacementOf(loaded.bounds, ScaleFor(model.size, loaded.bounds.sizes()), model.turn,
                    model.at, model.byOrigin);
    std::vector<std::size_t> leftOut(model.without.size());
    for (const SceneMesh& mesh : loaded.meshes) {
      SceneMesh placed = Placed(mesh, place);
      if (IsLeftOut(placed, model, leftOut)) continue;
      placed.name = model.name + '/' + mesh.name;
      for (MeshTriangle& triangle : placed.triangles) {
        const std::uint32_t number = materials[triangle.materialWord & 0xffff];
        triangle.materialWord = number | number << 16;
      }
      Add(std::move(placed));
    }
    for (std::size_t i = 0; i < leftOut.size(); ++i) {
      if (leftOut[i] == 0) {
        throw SceneFileError(model.without[i].place + ": no part of the model lies in this box");
      }
    }
    if (!model.lights) return;
    for (const SceneLight& light : loaded.lights) scene_->lights.push_back(Placed(light, place));
  }

  // Counts for each box the meshes that lie in it.
  static bool IsLeftOut(const SceneMesh& mesh, const SceneFileModel& model,
                        std::vector<std::size_t>& counts) {
    const Bounds bounds = BoundsOf(mesh);
    bool inside = false;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      if (!model.without[i].box.contains(bounds)) continue;
      ++counts[i];
      inside = true;
    }
    return inside;
  }

  void AddShape(const SceneFileShape& shape) {
    SceneMaterial material;
    material.diffuseColor = Vec3(0.8f, 0.8f, 0.8f);
    material.name = shape.name;
    const MaterialChange& change = shape.material;
    ChangeMaterial(change, change.texture ? files_.FindImage(*change.texture) : "", material);
    const SceneMesh mesh = ShapeMesh(shape, table_.IndexOf(material));
    Add(Placed(mesh, PlacementOf(BoundsOf(mesh), Vec3(1, 1, 1), shape.turn, shape.at, false)));
  }

  void Add(SceneMesh mesh) {
    scene_->bounds.extend(BoundsOf(mesh));
    scene_->meshes.push_back(std::move(mesh));
  }

  const SceneFile& file_;
  Files files_;
  MaterialTable table_;
  std::map<ModelKey, std::unique_ptr<Scene>> models_;
  std::unique_ptr<Scene> scene_ = std::make_unique<Scene>();
};

}  // namespace

std::unique_ptr<Scene> AssembleScene(const SceneFile& file, const fs::path& directory,
                                     const std::shared_ptr<TemporaryFolder>& temporaryFiles) {
  return Assembler(file, directory, temporaryFiles).Assemble();
}

}  // namespace qv::host

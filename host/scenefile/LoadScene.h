#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/model/LoadModel.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

struct LoadedScene {
  std::unique_ptr<Scene> scene;  // null if it can't be read
  std::string error;             // why: one sentence for the user
  PlaceAndTime when;
  SceneLook look;
};

// Whether the path is that of a scene file rather than a model: by its ending.
bool IsSceneFile(const std::filesystem::path& path);

// Reads a scene file with all that it names, or a model file. Throws nothing. Any thread; may take
// minutes. The options' unit and axis are for model files only.
LoadedScene LoadScene(const std::filesystem::path& path, const LoadOptions& options = {});

}  // namespace qv::host

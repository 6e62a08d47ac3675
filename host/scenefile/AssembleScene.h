#pragma once

#include <filesystem>
#include <memory>

#include "host/model/Scene.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

// The scene that a scene file in the folder `directory` describes: reads the models and textures
// that it names. What has to be unpacked or changed goes to `temporaryFiles`. Throws a
// SceneFileError for a file that is missing or can't be read, and for a material that does not
// exist.
std::unique_ptr<Scene> AssembleScene(const SceneFile& file, const std::filesystem::path& directory,
                                     const std::shared_ptr<TemporaryFolder>& temporaryFiles);

}  // namespace qv::host

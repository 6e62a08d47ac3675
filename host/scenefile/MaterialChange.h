#pragma once

#include <string>

#include "host/model/Scene.h"
#include "host/scenefile/SceneFile.h"

namespace qv::host {

// Changes a material. `texturePath` is that of the change's texture, where it has one.
void ChangeMaterial(const MaterialChange& change, const std::string& texturePath,
                    SceneMaterial& material);

}  // namespace qv::host

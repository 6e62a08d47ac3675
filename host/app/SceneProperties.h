#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/scenefile/SceneFile.h"

namespace qv::host {

using PropertyValues = std::map<std::string, std::vector<std::byte>>;

// What a scene's file wants, as the viewer's properties.
struct SceneProperties {
  PropertyValues values;
  std::vector<std::string> warnings;  // what cannot be had, one sentence each
};

// The properties that make a viewer in `viewerFolder` show a scene as its file wants.
SceneProperties PropertiesOf(const SceneLook& look, const std::filesystem::path& viewerFolder);

}  // namespace qv::host

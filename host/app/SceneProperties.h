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

// The viewer's properties, as bytes, that make it show a scene as its file wants. Cube maps are
// those of the folder `cubeMaps`, which the viewer knows by their numbers in the listing of that
// folder; one that is not there is left out.
PropertyValues PropertiesOf(const SceneLook& look, const std::filesystem::path& cubeMaps);

}  // namespace qv::host

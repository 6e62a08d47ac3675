#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace qv::host {

// The value of the property "background" that shows the cube map or the weather of that name, as a
// viewer in `viewerFolder` counts the cube maps. Throws std::runtime_error with a text for the
// user, which tells the names that there are, if there is none of that name.
std::vector<std::byte> BackgroundProperty(const std::string& name,
                                          const std::filesystem::path& viewerFolder);

}  // namespace qv::host

#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace qv::platform {

// The names of the folders right inside a folder, in the order of the system: where its file
// systems keep names sorted as they do, elsewhere by name. Names that are no text are left out.
// Empty if the folder cannot be read.
std::vector<std::wstring> SubfolderNames(const std::filesystem::path& folder);

}  // namespace qv::platform

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "sky/CubeFaces.h"

namespace qv::sky {

// Where the cube maps that come with a program lie: "CubeMaps" in the program's folder.
std::filesystem::path CubeMapFolder(const std::filesystem::path& programFolder);

// Whether a text can be the name of a cube map, which is that of a folder right inside the folder
// of cube maps: without separators, colons and control characters, and neither "." nor "..".
bool IsCubeMapName(const std::wstring& name);

// The cube maps in a folder, in the order in which the system lists them. Empty if there is no such
// folder.
std::vector<std::wstring> ListCubeMaps(const std::filesystem::path& folder);

// The one that is shown where none was chosen: "asphalt_morning", or the first where it is missing.
std::int32_t DefaultCubeMap(const std::vector<std::wstring>& names);

// "FR.jpg", "LF.jpg", "BK.jpg", "RT.jpg", "UP.jpg", "DN.jpg" for the faces in their order.
std::string FaceFileName(int face);

// Reads the six images of a cube map, 1024 by 1024 pixels each. A face whose image is missing,
// damaged or of another size stays empty, which the log tells.
CubeFaces LoadCubeMap(const std::filesystem::path& folder, const std::wstring& name);

}  // namespace qv::sky

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace qv::host {

// What is taken out of an archive at most.
struct ArchiveLimits {
  std::uint64_t bytesOfFile = std::uint64_t{256} << 20;
  std::uint64_t bytesOfAll = std::uint64_t{1} << 30;
  std::size_t entries = 100000;  // of the whole archive
};

// Unpacks the folder of a zip archive that `entry` lies in, with all below it, into the folder
// `target`, and gives the path of the entry there. Throws a SceneFileError: no such archive or
// entry, more than the limits (whatever sizes the archive states), damage, or any name in it that
// would lead out of the folder: one that is absolute, names a drive, or holds "..".
std::filesystem::path UnpackFolderOf(const std::filesystem::path& archive, const std::string& entry,
                                     const std::filesystem::path& target,
                                     const ArchiveLimits& limits = {});

}  // namespace qv::host

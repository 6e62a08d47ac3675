#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace qv::host {

// Tells whether a model may read differently from before: its size and time, and those of the files
// beside it, where materials, buffers and textures are. The host's own files do not count.
struct FolderStamp {
  std::uintmax_t size = 0;
  std::size_t files = 0;
  std::filesystem::file_time_type newest = std::filesystem::file_time_type::min();

  bool operator==(const FolderStamp& other) const = default;
};

FolderStamp StampOf(const std::filesystem::path& model);

}  // namespace qv::host

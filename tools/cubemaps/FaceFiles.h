#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <vector>

namespace qv::cubemaps {

// Writes six faces, size by size pixels each, as JPEG files into a folder: with the best quality at
// which all six together take no more than `budget` bytes. Throws std::runtime_error.
void WriteFaces(const std::array<std::vector<std::uint8_t>, 6>& faces, int size,
                const std::filesystem::path& folder, std::uintmax_t budget);

}  // namespace qv::cubemaps

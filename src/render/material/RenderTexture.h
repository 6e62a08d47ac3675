#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace qv {

// One level of a mip chain: blue, green, red, alpha bytes, top row first.
struct TextureMip {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t pitch = 0;  // bytes
  float invWidth = 0;
  float invHeight = 0;
  std::vector<std::uint8_t> pixels;
};

struct RenderTexture {
  std::string path;
  bool hasAlpha = false;
  std::vector<TextureMip> mips;  // each half of the one before, the last with one side of 1
};

// Reads an image file of any kind that FreeImage knows and makes its mip chain, each level with the
// box filter from the full image, or from a smaller level where the image is huge. Nothing if it
// cannot be read, or if its header speaks of more pixels than its file can hold. `path` is UTF-8 on
// Windows, and the bytes of a name on Linux.
std::optional<RenderTexture> LoadTexture(const std::string& path);

}  // namespace qv

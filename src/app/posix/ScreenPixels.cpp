#include "ScreenPixels.h"

#include <bit>
#include <cstring>

namespace qv {
namespace {

static_assert(std::endian::native == std::endian::little);

constexpr std::uint32_t kOpaque = 0xFF000000u;

void ExpandRow(const std::uint8_t* in, std::uint32_t* out, int width) {
  // A whole word a pixel, its last byte the next pixel's; only behind the row's last pixel there
  // may be none.
  for (int x = 0; x < width - 1; ++x) {
    std::uint32_t word;
    std::memcpy(&word, in + std::size_t{3} * x, sizeof(word));
    out[x] = word | kOpaque;
  }
  const std::uint8_t* last = in + std::size_t{3} * (width - 1);
  out[width - 1] = last[0] | last[1] << 8 | last[2] << 16 | kOpaque;
}

}  // namespace

void ExpandPicture(const ScreenView& picture, std::uint8_t* out, std::size_t stride) {
  if (picture.width <= 0) return;
  for (int row = 0; row < picture.height; ++row) {
    const std::uint8_t* in = picture.pixels + picture.pitch * (picture.height - 1 - row);
    ExpandRow(in, reinterpret_cast<std::uint32_t*>(out + stride * row), picture.width);
  }
}

}  // namespace qv

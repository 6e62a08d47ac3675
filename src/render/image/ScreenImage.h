#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "render/image/PassTimes.h"

namespace qv {

// The picture as shown: blue, green, red bytes in the layout of a bottom-up device-independent
// bitmap.
struct ScreenImage {
  int width = 0;
  int height = 0;
  std::size_t pitch = 0;  // bytes from row to row
  std::vector<std::uint8_t> pixels;
  PassTimes times;

  void Resize(int newWidth, int newHeight) {
    width = newWidth;
    height = newHeight;
    pitch = (static_cast<std::size_t>(newWidth) + 1) * 3 & ~std::size_t{3};
    times = {};
    pixels.assign(pitch * static_cast<std::size_t>(newHeight), 0);
  }
  std::uint8_t* Row(int y) { return pixels.data() + static_cast<std::size_t>(y) * pitch; }
  const std::uint8_t* Row(int y) const {
    return pixels.data() + static_cast<std::size_t>(y) * pitch;
  }
};

}  // namespace qv

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv {

// A page of baked light: blue, green, red, alpha floats, linear and not limited to 1, row by row
// from v = 0.
struct LightmapPage {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<float> texels;

  bool IsWhole() const {
    return width > 0 && height > 0 &&
           texels.size() == static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4;
  }
};

// A texel and the next along one axis of a page; the last one is its own neighbour.
struct LightmapTap {
  std::size_t first, second;
  float fraction;
};

// Coordinates outside of 0 to 1, or that are no numbers, count as the nearest end.
inline LightmapTap LightmapTapOf(float coordinate, std::int32_t size) {
  const auto last = static_cast<float>(size - 1);
  const float x = std::min(std::max(0.0f, coordinate * static_cast<float>(size)), last);
  const auto first = static_cast<std::size_t>(x);
  return {first, std::min(first + 1, static_cast<std::size_t>(size - 1)),
          x - static_cast<float>(first)};
}

struct LightmapColor {
  float c[3];  // red, green, blue
};

// The bilinear mean of the four texels around a point of a whole page. Edges do not wrap.
inline LightmapColor SampleLightmap(const LightmapPage& page, float u, float v) {
  const LightmapTap x = LightmapTapOf(u, page.width);
  const LightmapTap y = LightmapTapOf(v, page.height);
  const auto width = static_cast<std::size_t>(page.width);
  const float* texel[4] = {&page.texels[(y.first * width + x.first) * 4],
                           &page.texels[(y.first * width + x.second) * 4],
                           &page.texels[(y.second * width + x.first) * 4],
                           &page.texels[(y.second * width + x.second) * 4]};
  const float weight[4] = {(1 - x.fraction) * (1 - y.fraction), x.fraction * (1 - y.fraction),
                           (1 - x.fraction) * y.fraction, x.fraction * y.fraction};
  LightmapColor sum{};
  for (int k = 0; k < 4; ++k) {
    for (int c = 0; c < 3; ++c) sum.c[c] += weight[k] * texel[k][2 - c];
  }
  return sum;
}

}  // namespace qv

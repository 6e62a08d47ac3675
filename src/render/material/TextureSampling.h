#pragma once

#include <cmath>
#include <cstdint>

#include "render/material/Log2Table.h"
#include "render/material/RenderTexture.h"

namespace qv {

// Red, green, blue, alpha in 0 to 1.
struct TexelColor {
  float c[4];
};

// Where in a mip chain a footprint (in texels of the top level) lies: level i alone if it is the
// last, else i and i + 1 blended by `fraction`.
struct MipSelection {
  int level;
  bool lastOnly;
  float fraction;
};

inline MipSelection SelectMip(const RenderTexture& texture, float footprint) {
  const float lod = std::fmax(0.0f, Log2Table::Instance()(footprint) - 0.5f);
  const int level = static_cast<int>(lod);
  const int last = static_cast<int>(texture.mips.size()) - 1;
  if (level > last - 1) return {last, true, 0};
  return {level, false, lod - static_cast<float>(level)};
}

// The four texels around a point, with their weights; coordinates repeat.
struct BilinearTap {
  std::int32_t offset[4];  // bytes
  float weight[4];
};

inline BilinearTap BilinearTapOf(const TextureMip& mip, float s, float t) {
  // The largest fraction stays below 1, so that the last column and row are never passed.
  constexpr float kBelowOne = 0.999999f;
  float fs = s - std::floor(s);
  float ft = t - std::floor(t);
  // Coordinates that are no numbers, or too large to have a fraction, count as 0.
  if (!(fs >= 0 && fs <= 1)) fs = 0;
  if (!(ft >= 0 && ft <= 1)) ft = 0;
  const float x = fs * kBelowOne * static_cast<float>(mip.width);
  const float y = ft * kBelowOne * static_cast<float>(mip.height);
  const int column = static_cast<int>(x);
  const int row = static_cast<int>(y);
  const float fx = x - static_cast<float>(column);
  const float fy = y - static_cast<float>(row);
  const int nextColumn = column + 1 < mip.width ? column + 1 : 0;
  const int nextRow = row + 1 < mip.height ? row + 1 : 0;
  const int rowStart = row * mip.pitch;
  const int nextRowStart = nextRow * mip.pitch;
  return {{rowStart + column * 4, rowStart + nextColumn * 4, nextRowStart + column * 4,
           nextRowStart + nextColumn * 4},
          {(1 - fx) * (1 - fy), fx * (1 - fy), (1 - fx) * fy, fx * fy}};
}

inline TexelColor SampleBilinear(const TextureMip& mip, float s, float t) {
  constexpr float kPerByte = 1.0f / 255.0f;
  const BilinearTap tap = BilinearTapOf(mip, s, t);
  const std::uint8_t* pixels = mip.pixels.data();
  TexelColor sum{};
  for (int k = 0; k < 4; ++k) {
    const std::uint8_t* texel = pixels + tap.offset[k];
    sum.c[0] += tap.weight[k] * static_cast<float>(texel[2]);
    sum.c[1] += tap.weight[k] * static_cast<float>(texel[1]);
    sum.c[2] += tap.weight[k] * static_cast<float>(texel[0]);
    sum.c[3] += tap.weight[k] * static_cast<float>(texel[3]);
  }
  for (float& channel : sum.c) channel *= kPerByte;
  return sum;
}

inline float SampleAlphaBilinear(const TextureMip& mip, float s, float t) {
  const BilinearTap tap = BilinearTapOf(mip, s, t);
  float sum = 0;
  for (int k = 0; k < 4; ++k)
    sum += tap.weight[k] * static_cast<float>(mip.pixels[tap.offset[k] + 3]);
  return sum / 255.0f;
}

inline TexelColor SampleMips(const RenderTexture& texture, const MipSelection& selection, float s,
                             float t) {
  const TexelColor fine = SampleBilinear(texture.mips[selection.level], s, t);
  if (selection.lastOnly) return fine;
  const TexelColor coarse = SampleBilinear(texture.mips[selection.level + 1], s, t);
  TexelColor blend;
  for (int i = 0; i < 4; ++i) {
    blend.c[i] = fine.c[i] * (1 - selection.fraction) + coarse.c[i] * selection.fraction;
  }
  return blend;
}

inline float SampleAlphaMips(const RenderTexture& texture, float footprint, float s, float t) {
  const MipSelection selection = SelectMip(texture, footprint);
  const float fine = SampleAlphaBilinear(texture.mips[selection.level], s, t);
  if (selection.lastOnly) return fine;
  const float coarse = SampleAlphaBilinear(texture.mips[selection.level + 1], s, t);
  return fine * (1 - selection.fraction) + coarse * selection.fraction;
}

}  // namespace qv

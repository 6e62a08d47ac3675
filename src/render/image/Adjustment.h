#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "render/image/PixelOps.h"

namespace qv {

// Brightness, contrast and gamma of one picture: contrast pivots about 0.5, brightness is added
// after it, gamma comes last.
class Adjustment {
 public:
  Adjustment(float brightness, float contrast, float gamma);

  // A linear value as a float in 0 to 255; NaN where the power has none.
  float Adjust(float c) const;
  // The floats of many values, the same ones but for the last bit. `out` may be `in`.
  void AdjustValues(const float* in, std::size_t count, float* out) const;
  // The byte that is stored for it: truncated, NaN as 0.
  std::uint8_t AdjustToByte(float c) const;
  // The bytes of many values, the same ones.
  void AdjustRow(const float* in, std::size_t count, std::uint8_t* out) const;

 private:
  bool Grows() const;
  bool IsLinear() const { return exponent_ == 1.0f; }
  void FillTable();
  std::array<std::uint32_t, 256> LeastOfEachByte() const;

  float scale_;      // 2^(2 contrast)
  float offset_;     // brightness
  float exponent_;   // 1 / gamma
  ByteTable table_;  // of the power; without cells where there is none
};

// The byte of a value from 0 to 255, truncated; NaN gives 0.
std::uint8_t ToByte(float v);

}  // namespace qv

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv {

// Brightness, contrast and gamma of one picture: contrast pivots about 0.5, brightness is added
// after it, gamma comes last.
class Adjustment {
 public:
  Adjustment(float brightness, float contrast, float gamma);

  // A linear value as a float in 0 to 255; NaN where the power has none.
  float Adjust(float c) const;
  // The byte that is stored for it: truncated, NaN as 0.
  std::uint8_t AdjustToByte(float c) const;
  // The bytes of many values, the same ones.
  void AdjustRow(const float* in, std::size_t count, std::uint8_t* out) const;

 private:
  bool IsLinear() const { return exponent_ == 1.0f; }
  void FillTable();
  std::uint8_t LookUp(float c) const;

  float scale_;     // 2^(2 contrast)
  float offset_;    // brightness
  float exponent_;  // 1 / gamma

  // A power for each channel of each pixel would cost more than the rays. The byte only grows with
  // the value, so the least value that gives each byte says it all; `first_` tells for even steps
  // between the first and the last of them where to begin.
  static constexpr int kSteps = 4096;
  std::array<float, 257> least_{};
  std::vector<std::uint8_t> first_;
  float perStep_ = 0;
};

// The byte of a value from 0 to 255, truncated; NaN gives 0.
std::uint8_t ToByte(float v);

}  // namespace qv

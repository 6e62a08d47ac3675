#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace qv {

// Rows of linear colour values to bytes, for many values at a time. `out` needs no more room than
// `count` bytes.

// Limited to 0 to 255 and truncated, after v = (c - 0.5) scale + 0.5 + offset and a factor of 255;
// NaN gives 0.
void AdjustLinear(const float* in, std::size_t count, float scale, float offset, std::uint8_t* out);

// The bytes of a function that only grows, for values from `low`, the least that gives 1, to
// `high`, the least that gives 255: a power for each channel of each pixel would cost more than the
// rays. Cells are as wide as the upper bits of the floats tell, which makes them fine where the
// values are small and gamma is steep, and the function takes at most one step in each.
struct ByteTable {
  float low = 0;
  float high = 0;
  int shift = 0;                // lower bits of a value: where in its cell it lies
  std::uint32_t firstCell = 0;  // upper bits of `low`
  std::vector<std::uint32_t> cells;

  // The byte at the start of the cell and where in the cell the next one begins, from 1 to 2^shift:
  // once the place of a value in the cell is added, the upper 8 bits are the byte of the value.
  static std::uint32_t Cell(std::size_t byte, std::uint32_t step) {
    return (static_cast<std::uint32_t>(byte) << 24) + ((1u << 24) - step);
  }
};

// The bytes of v = (c - 0.5) scale + 0.5 + offset; NaN gives 0.
void AdjustByTable(const float* in, std::size_t count, float scale, float offset,
                   const ByteTable& table, std::uint8_t* out);

// 255 v^exponent, at most 255, of v = (c - 0.5) scale + 0.5 + offset; NaN where v is below zero or
// no number. The exponent is finite and above zero. Worked out in double precision, so that the
// values are those of a power in single precision but for the last bit, on every system the same.
void AdjustByPower(const float* in, std::size_t count, float scale, float offset, float exponent,
                   float* out);

// Red, green, blue bytes to blue, green, red, in place.
void SwapRedAndBlue(std::uint8_t* row, std::size_t pixels);

// The low 8 bits of 255 c, truncated; 0 for what is no 32-bit integer.
void TakeLowBytes(const float* in, std::size_t count, std::uint8_t* out);

}  // namespace qv

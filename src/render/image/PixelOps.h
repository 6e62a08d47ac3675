#pragma once

#include <cstddef>
#include <cstdint>

namespace qv {

// Rows of linear colour values to bytes, for many values at a time. `out` needs no more room than
// `count` bytes.

// Limited to 0 to 255 and truncated, after v = (c - 0.5) scale + 0.5 + offset and a factor of 255;
// NaN gives 0.
void AdjustLinear(const float* in, std::size_t count, float scale, float offset, std::uint8_t* out);

// The low 8 bits of 255 c, truncated; 0 for what is no 32-bit integer.
void TakeLowBytes(const float* in, std::size_t count, std::uint8_t* out);

}  // namespace qv

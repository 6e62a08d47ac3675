#include "render/image/Adjustment.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "render/image/PixelOps.h"

namespace qv {
namespace {

constexpr float kFull = 255.0f;
constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Finite floats and infinities in their order as integers, and back.
std::int64_t OrdinalOf(float v) {
  const auto bits = std::bit_cast<std::uint32_t>(v);
  const auto magnitude = static_cast<std::int64_t>(bits & 0x7fffffffu);
  return bits >> 31 ? -magnitude : magnitude;
}

float FloatOf(std::int64_t ordinal) {
  const auto magnitude = static_cast<std::uint32_t>(ordinal < 0 ? -ordinal : ordinal);
  return std::bit_cast<float>(ordinal < 0 ? magnitude | 0x80000000u : magnitude);
}

}  // namespace

Adjustment::Adjustment(float brightness, float contrast, float gamma)
    : scale_(std::exp2(2 * contrast)), offset_(brightness), exponent_(1 / gamma) {
  if (!IsLinear()) FillTable();
}

float Adjustment::Adjust(float c) const {
  const float v = (c - 0.5f) * scale_ + 0.5f + offset_;
  // A power of 1 is the value itself, below zero too; the limit then stores the same 0 as it does
  // for the NaN of another power. An even power would lift what is below zero above it again.
  if (v < 0 && !IsLinear()) return std::numeric_limits<float>::quiet_NaN();
  const float w = (IsLinear() ? v : std::pow(v, exponent_)) * kFull;
  return std::isnan(w) ? w : std::min(kFull, std::max(0.0f, w));
}

std::uint8_t Adjustment::AdjustToByte(float c) const {
  return ToByte(Adjust(c));
}

void Adjustment::AdjustRow(const float* in, std::size_t count, std::uint8_t* out) const {
  if (IsLinear()) {
    AdjustLinear(in, count, scale_, offset_, out);
  } else if (first_.empty()) {
    std::transform(in, in + count, out, [this](float c) { return AdjustToByte(c); });
  } else {
    std::transform(in, in + count, out, [this](float c) { return LookUp(c); });
  }
}

// Without a table where the byte does not grow with the value: a gamma that is negative or no
// number, or a range too narrow or too wide.
void Adjustment::FillTable() {
  if (!(exponent_ > 0) || !std::isfinite(exponent_)) return;
  least_.front() = -kInfinity;
  least_.back() = kInfinity;
  for (int byte = 1; byte < 256; ++byte) {
    std::int64_t below = OrdinalOf(-kInfinity);
    std::int64_t reaches = OrdinalOf(kInfinity);
    while (reaches - below > 1) {
      const std::int64_t middle = below + (reaches - below) / 2;
      (AdjustToByte(FloatOf(middle)) >= byte ? reaches : below) = middle;
    }
    least_[byte] = FloatOf(reaches);
  }
  const float range = least_[255] - least_[1];
  if (!(range > 0) || !std::isfinite(range)) return;
  perStep_ = static_cast<float>(kSteps) / range;
  if (!std::isfinite(perStep_)) return;
  first_.resize(kSteps + 1);
  int byte = 1;
  for (int i = 0; i <= kSteps; ++i) {
    // One step lower than it lies, so that rounding never skips a byte.
    const float start = least_[1] + static_cast<float>(i - 1) / perStep_;
    while (byte < 255 && least_[byte + 1] <= start) ++byte;
    first_[i] = static_cast<std::uint8_t>(byte);
  }
}

std::uint8_t Adjustment::LookUp(float c) const {
  if (!(c >= least_[1])) return 0;
  if (c >= least_[255]) return 255;
  int byte = first_[static_cast<int>((c - least_[1]) * perStep_)];
  while (c >= least_[byte + 1]) ++byte;
  return static_cast<std::uint8_t>(byte);
}

std::uint8_t ToByte(float v) {
  return v >= 0 && v <= kFull ? static_cast<std::uint8_t>(v) : 0;
}

}  // namespace qv

#include "render/image/ComposeImage.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qv {
namespace {

constexpr float kFull = 255.0f;

std::uint8_t LowByte(float c) {
  constexpr float kIntegerLimit = 2147483648.0f;
  const float v = c * kFull;
  if (!(v > -kIntegerLimit && v < kIntegerLimit)) return 0;
  return static_cast<std::uint8_t>(static_cast<std::int32_t>(v));
}

void ComposeRow(const float* from, int width, const Adjustment& adjustment, std::uint8_t* to) {
  for (int x = 0; x < width; ++x) {
    to[0] = adjustment.AdjustToByte(from[2]);
    to[1] = adjustment.AdjustToByte(from[1]);
    to[2] = adjustment.AdjustToByte(from[0]);
    from += 3;
    to += 3;
  }
}

// The mean of the adjusted samples, not of the linear ones: what the eye sees at the edge of a
// bright surface.
void ComposeMean(const RenderTarget& samples, int factor, int x, int y,
                 const Adjustment& adjustment, std::uint8_t* to) {
  float sum[3] = {0, 0, 0};
  for (int j = 0; j < factor; ++j) {
    const float* row = samples.Row(factor * y + j) + 3 * static_cast<std::size_t>(factor) * x;
    for (int i = 0; i < factor; ++i) {
      for (int c = 0; c < 3; ++c) sum[c] += adjustment.Adjust(row[3 * i + c]);
    }
  }
  const float share = 1.0f / static_cast<float>(factor * factor);
  to[0] = ToByte(sum[2] * share);
  to[1] = ToByte(sum[1] * share);
  to[2] = ToByte(sum[0] * share);
}

}  // namespace

Adjustment::Adjustment(float brightness, float contrast, float gamma)
    : scale(std::exp2(2 * contrast)), offset(brightness), exponent(1 / gamma) {}

float Adjustment::Adjust(float c) const {
  const float v = (c - 0.5f) * scale + 0.5f + offset;
  // A power of 1 is the value itself, below zero too; the limit then stores the same 0 as it does
  // for the NaN of another power. An even power would lift what is below zero above it again.
  if (v < 0 && exponent != 1.0f) return std::numeric_limits<float>::quiet_NaN();
  const float w = (exponent == 1.0f ? v : std::pow(v, exponent)) * kFull;
  return std::isnan(w) ? w : std::min(kFull, std::max(0.0f, w));
}

std::uint8_t Adjustment::AdjustToByte(float c) const {
  return ToByte(Adjust(c));
}

std::uint8_t ToByte(float v) {
  return v >= 0 && v <= kFull ? static_cast<std::uint8_t>(v) : 0;
}

void ComposePreview(const RenderTarget& base, ScreenImage& screen) {
  for (int y = 0; y < base.height(); ++y) {
    const float* from = base.Row(y);
    std::uint8_t* to = screen.Row(y);
    for (int x = 0; x < base.width(); ++x, from += 3, to += 3) {
      to[0] = LowByte(from[2]);
      to[1] = LowByte(from[1]);
      to[2] = LowByte(from[0]);
    }
  }
}

void ComposeBase(const RenderTarget& base, const Adjustment& adjustment, ScreenImage& screen) {
  for (int y = 0; y < base.height(); ++y) {
    ComposeRow(base.Row(y), base.width(), adjustment, screen.Row(y));
  }
}

void ComposeAntialiased(const RenderTarget& base, const RenderTarget& samples, int factor,
                        const EdgeMask& mask, const Adjustment& adjustment, ScreenImage& screen) {
  for (int y = 0; y < base.height(); ++y) {
    const float* from = base.Row(y);
    std::uint8_t* to = screen.Row(y);
    const std::uint32_t* marks = mask.Row(y);
    for (int x = 0; x < base.width(); ++x) {
      if (marks[x] == 0) {
        ComposeRow(from + 3 * x, 1, adjustment, to + 3 * x);
      } else {
        ComposeMean(samples, factor, x, y, adjustment, to + 3 * x);
      }
    }
  }
}

}  // namespace qv

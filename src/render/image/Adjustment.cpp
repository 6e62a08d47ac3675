#include "render/image/Adjustment.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "render/image/PixelOps.h"

namespace qv {
namespace {

constexpr float kFull = 255.0f;

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

void Adjustment::AdjustValues(const float* in, std::size_t count, float* out) const {
  if (IsLinear() || !Grows()) {
    std::transform(in, in + count, out, [this](float c) { return Adjust(c); });
  } else {
    AdjustByPower(in, count, scale_, offset_, exponent_, out);
  }
}

void Adjustment::AdjustRow(const float* in, std::size_t count, std::uint8_t* out) const {
  if (IsLinear()) {
    AdjustLinear(in, count, scale_, offset_, out);
  } else if (table_.cells.empty()) {
    std::transform(in, in + count, out, [this](float c) { return AdjustToByte(c); });
  } else {
    AdjustByTable(in, count, scale_, offset_, table_, out);
  }
}

// The bits of the least value of at least 0 that gives each byte. Bits of positive floats are in
// the order of the floats.
std::array<std::uint32_t, 256> Adjustment::LeastOfEachByte() const {
  constexpr auto kInfinity = std::bit_cast<std::uint32_t>(std::numeric_limits<float>::infinity());
  std::array<std::uint32_t, 256> least{};
  for (std::size_t byte = 1; byte < least.size(); ++byte) {
    std::uint32_t below = least[byte - 1];
    std::uint32_t reaches = kInfinity;
    while (below < reaches) {
      const std::uint32_t middle = below + (reaches - below) / 2;
      const float power = std::pow(std::bit_cast<float>(middle), exponent_) * kFull;
      if (ToByte(std::min(kFull, power)) >= byte) {
        reaches = middle;
      } else {
        below = middle + 1;
      }
    }
    least[byte] = reaches;
  }
  return least;
}

// Not with a gamma that is zero, negative or no number.
bool Adjustment::Grows() const {
  return exponent_ > 0 && std::isfinite(exponent_);
}

// No table where the byte does not grow with the value, and for powers so steep or so flat that it
// would be huge.
void Adjustment::FillTable() {
  constexpr int kMantissaBits = 23;
  constexpr std::uint32_t kMostCells = 1 << 16;
  if (!Grows()) return;
  const auto least = LeastOfEachByte();
  table_.low = std::bit_cast<float>(least[1]);
  table_.high = std::bit_cast<float>(least[255]);
  if (!std::isnormal(table_.low) || !std::isnormal(table_.high)) return;

  const auto holdsOneStepACell = [&](int shift) {
    for (std::size_t byte = 3; byte < least.size(); ++byte) {
      if (least[byte] >> shift == least[byte - 1] >> shift) return false;
    }
    return true;
  };
  int shift = kMantissaBits;
  while (shift > 0 && !holdsOneStepACell(shift)) --shift;
  const std::uint32_t first = least[1] >> shift;
  const std::uint32_t count = (least[255] >> shift) - first + 1;
  if (shift == 0 || count > kMostCells) return;

  table_.shift = shift;
  table_.firstCell = first;
  table_.cells.resize(count);
  std::size_t byte = 1;
  for (std::uint32_t i = 0; i < count; ++i) {
    const std::uint32_t start = std::max((first + i) << shift, least[1]);
    while (byte < 255 && least[byte + 1] <= start) ++byte;
    const bool steps = byte < 255 && least[byte + 1] >> shift == first + i;
    const std::uint32_t within = (1u << shift) - 1;
    table_.cells[i] = ByteTable::Cell(byte, steps ? least[byte + 1] & within : within + 1);
  }
}

std::uint8_t ToByte(float v) {
  return v >= 0 && v <= kFull ? static_cast<std::uint8_t>(v) : 0;
}

}  // namespace qv

#include "app/ModelProperties.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace qv {
namespace {

template <class T, std::size_t kCount>
std::optional<std::array<T, kCount>> Read(std::span<const std::byte> value) {
  std::array<T, kCount> numbers;
  if (value.size() < sizeof(numbers)) return std::nullopt;
  std::memcpy(numbers.data(), value.data(), sizeof(numbers));
  return numbers;
}

template <std::size_t kCount>
std::optional<std::array<float, kCount>> ReadFinite(std::span<const std::byte> value) {
  auto numbers = Read<float, kCount>(value);
  if (!numbers || !std::ranges::all_of(*numbers, [](float x) { return std::isfinite(x); })) {
    return std::nullopt;
  }
  return numbers;
}

}  // namespace

std::optional<BackgroundProperty> ParseBackground(std::span<const std::byte> value) {
  const auto words = Read<std::int32_t, 2>(value);
  if (!words) return std::nullopt;
  return BackgroundProperty{(*words)[0], (*words)[1]};
}

std::optional<BrightnessProperty> ParseBrightness(std::span<const std::byte> value) {
  const auto numbers = ReadFinite<2>(value);
  if (!numbers) return std::nullopt;
  return BrightnessProperty{(*numbers)[0], (*numbers)[1]};
}

std::optional<float> ParseFloat(std::span<const std::byte> value) {
  const auto number = ReadFinite<1>(value);
  if (!number) return std::nullopt;
  return (*number)[0];
}

std::optional<LightFactors> ParseLightFactors(std::span<const std::byte> value) {
  constexpr std::size_t kFlagOffset = 4 * sizeof(float);
  const auto numbers = ReadFinite<4>(value);
  if (!numbers || value.size() <= kFlagOffset) return std::nullopt;
  const auto [sun, ambient, point, lem] = *numbers;
  return LightFactors{sun, ambient, point, lem, value[kFlagOffset] != std::byte{0}};
}

}  // namespace qv

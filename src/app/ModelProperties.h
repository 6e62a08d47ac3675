#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "core/LightFactors.h"

namespace qv {

// The values of the properties that the host keeps with the model, read from their bytes. Nothing
// if there are fewer bytes than the value takes, or if a number is not finite; further bytes are
// left alone.

struct BackgroundProperty {
  std::int32_t backgroundType = 2;
  std::int32_t cubeMapIndex = -1;
};
std::optional<BackgroundProperty> ParseBackground(std::span<const std::byte> value);

struct BrightnessProperty {
  float brightness = 0;
  float contrast = 0;
};
std::optional<BrightnessProperty> ParseBrightness(std::span<const std::byte> value);

// "gamma", "eye_height" and "lightMap_settings" are one float each.
std::optional<float> ParseFloat(std::span<const std::byte> value);

// Four floats and a byte; 17 bytes do, 20 are what hosts keep.
std::optional<LightFactors> ParseLightFactors(std::span<const std::byte> value);

}  // namespace qv

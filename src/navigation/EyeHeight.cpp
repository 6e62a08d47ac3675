#include "navigation/EyeHeight.h"

#include <algorithm>
#include <cmath>

namespace qv {
namespace {

constexpr double kStep = 4;
constexpr double kMostExtents = 10;

}  // namespace

float LimitEyeHeight(double height, const std::optional<SceneBox>& bounds) {
  if (bounds) height = std::min(height, kMostExtents * (bounds->maximum.y() - bounds->minimum.y()));
  // Also where there is no number, or where the model is flat.
  return height > kLeastEyeHeight ? static_cast<float>(height) : kLeastEyeHeight;
}

float RaisedEyeHeight(float height, const std::optional<SceneBox>& bounds) {
  return LimitEyeHeight((std::round(height / kStep) + 1) * kStep, bounds);
}

float LoweredEyeHeight(float height) {
  return LimitEyeHeight((std::round(height / kStep) - 1) * kStep, std::nullopt);
}

}  // namespace qv

#pragma once

#include <optional>

#include "navigation/SceneProbe.h"

namespace qv {

constexpr float kLeastEyeHeight = 0.5f;

// The height that is taken when `height` is asked for: at least kLeastEyeHeight, at most ten times
// the extent of the model along y, which bounds it in models of any unit.
float LimitEyeHeight(double height, const std::optional<SceneBox>& bounds);

// The next and the previous multiple of 4, counted from the nearest one.
float RaisedEyeHeight(float height, const std::optional<SceneBox>& bounds);
float LoweredEyeHeight(float height);

}  // namespace qv

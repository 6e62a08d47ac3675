#pragma once

#include <cstdint>

#include "core/Vec.h"

namespace qv {

enum class LightType : std::int32_t { kPoint = 0, kSpot = 1, kDirectional = 2 };

struct RenderLight {
  LightType type = LightType::kPoint;
  Vec3 color{0, 0, 0};      // linear, not limited to 1
  Vec3 position{0, 0, 0};   // point and spot
  Vec3 direction{0, 0, 0};  // spot and directional: the way in which the light travels
  float innerAngle = 0;     // spot, radians
  float outerAngle = 0;
  float cosInner = 1;
  float cosOuter = 1;

  static RenderLight Point(const Vec3& color, const Vec3& position);
  static RenderLight Spot(const Vec3& color, const Vec3& position, const Vec3& direction,
                          float innerAngle, float outerAngle);
  static RenderLight Directional(const Vec3& color, const Vec3& direction);
};

}  // namespace qv

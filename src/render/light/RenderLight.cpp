#include "render/light/RenderLight.h"

#include <cmath>

namespace qv {

RenderLight RenderLight::Point(const Vec3& color, const Vec3& position) {
  RenderLight light;
  light.type = LightType::kPoint;
  light.color = color;
  light.position = position;
  return light;
}

RenderLight RenderLight::Spot(const Vec3& color, const Vec3& position, const Vec3& direction,
                              float innerAngle, float outerAngle) {
  RenderLight light;
  light.type = LightType::kSpot;
  light.color = color;
  light.position = position;
  light.direction = direction;
  light.innerAngle = innerAngle;
  light.outerAngle = outerAngle;
  light.cosInner = std::cos(innerAngle);
  light.cosOuter = std::cos(outerAngle);
  return light;
}

RenderLight RenderLight::Directional(const Vec3& color, const Vec3& direction) {
  RenderLight light;
  light.type = LightType::kDirectional;
  light.color = color;
  light.direction = direction;
  return light;
}

}  // namespace qv

#include "host/model/Lights.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <span>
#include <tuple>
#include <utility>

namespace qv::host {
namespace {

using Kind = SceneLight::Kind;

// The weakest light beside the strongest.
constexpr float kLeastPart = 0.02f;
constexpr float kSmallestAngle = 0.01f;  // radians

std::optional<Kind> KindOf(const aiLight& light, const ModelFormat& format) {
  // 3DS: of a light that moves, only the animation keeps where it shines.
  const bool hasLostItsTarget =
      format.family == ModelFormat::Family::k3ds && light.mDirection == aiVector3D(0, 0, 1);
  switch (light.mType) {
    case aiLightSource_POINT:
      return Kind::kPoint;
    case aiLightSource_SPOT:
      return hasLostItsTarget ? Kind::kPoint : Kind::kSpot;
    case aiLightSource_DIRECTIONAL:
      return Kind::kDirectional;
    default:
      return std::nullopt;
  }
}

// From the axis to the edge of full light and to the end of the light.
std::pair<float, float> SpotAngles(const aiLight& light, const ModelFormat& format) {
  float inner = light.mAngleInnerCone;
  float outer = light.mAngleOuterCone;
  if (format.family == ModelFormat::Family::kCollada) {
    // The import library takes the format's falloff angle, where the light ends, for the inner one.
    outer = inner;
    inner = 0.85f * outer;
  } else if (format.family == ModelFormat::Family::k3ds) {
    // It adds the format's two angles, which are both whole ones.
    outer -= inner;
  }
  const float part = format.wholeSpotAngles ? 0.5f : 1.0f;
  const auto usable = [&](float angle, float otherwise) {
    return std::isfinite(angle) && angle > 0 ? angle * part : otherwise;
  };
  outer = std::clamp(usable(outer, std::numbers::pi_v<float> / 4), kSmallestAngle,
                     std::numbers::pi_v<float> / 2);
  return {std::min(usable(inner, outer), outer), outer};
}

std::optional<SceneLight> Placed(const aiLight& light, const ModelFormat& format,
                                 const PlaceOfName& places, const Eigen::Affine3d& worldFromScene) {
  const auto kind = KindOf(light, format);
  const Vec3 color(light.mColorDiffuse.r, light.mColorDiffuse.g, light.mColorDiffuse.b);
  if (!kind || !color.allFinite() || !(color.maxCoeff() > 0)) return std::nullopt;

  Eigen::Affine3d place = worldFromScene;
  const auto node = places.find(light.mName.C_Str());
  if (node != places.end()) place = worldFromScene * node->second;
  SceneLight placed;
  placed.kind = *kind;
  placed.name = light.mName.C_Str();
  placed.color = color.cwiseMax(0.0f);
  placed.position = (place * ToVector3d(light.mPosition)).cast<float>();
  placed.direction = UnitOr(place.linear() * ToVector3d(light.mDirection), Vec3(0, 0, -1));
  if (*kind == Kind::kSpot) {
    std::tie(placed.innerAngle, placed.outerAngle) = SpotAngles(light, format);
  }
  if (!placed.position.allFinite()) return std::nullopt;
  return placed;
}

// What all lights of one way of scaling have in common.
struct Group {
  float strongest = 0;
  int count = 0;

  void Add(const SceneLight& light) {
    strongest = std::max(strongest, light.color.maxCoeff());
    ++count;
  }
  // The light's hue times its part of the strongest.
  Vec3 Relative(const SceneLight& light) const {
    const float strength = light.color.maxCoeff();
    return light.color / strength * std::max(strength / strongest, kLeastPart);
  }
};

}  // namespace

std::vector<SceneLight> LightsOf(const aiScene& scene, const ModelFormat& format,
                                 const PlaceOfName& places, const Eigen::Affine3d& worldFromScene,
                                 const Bounds& bounds) {
  std::vector<SceneLight> lights;
  for (const aiLight* light : std::span(scene.mLights, scene.mNumLights)) {
    if (auto placed = Placed(*light, format, places, worldFromScene)) lights.push_back(*placed);
  }

  const auto isInside = [&](const SceneLight& light) { return bounds.contains(light.position); };
  Group lamps;
  Group directional;
  int outside = 0;
  for (const SceneLight& light : lights) {
    (light.kind == Kind::kDirectional ? directional : lamps).Add(light);
    if (light.kind != Kind::kDirectional && !isInside(light)) ++outside;
  }
  const float roomDistance = std::min(kRoomDistance, bounds.diagonal().norm() / 2);
  for (SceneLight& light : lights) {
    if (light.kind == Kind::kDirectional) {
      const float level = kDirectionalLevel / static_cast<float>(directional.count);
      light.color = directional.Relative(light) * level;
    } else if (isInside(light)) {
      light.color = lamps.Relative(light) * kLampLevel * roomDistance;
    } else {
      const float distance = (light.position - bounds.center()).norm();
      light.color = lamps.Relative(light) * kLampLevel * distance / static_cast<float>(outside);
    }
  }
  return lights;
}

}  // namespace qv::host

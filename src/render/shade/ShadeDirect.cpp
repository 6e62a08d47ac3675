#include <algorithm>
#include <cmath>
#include <limits>

#include "render/shade/ShadePacket.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

// A contribution below this on all channels is not worth a shadow ray.
constexpr float kLeastContribution = 0.0001f;

bool Negligible(float weight, const RayPacket& packet, int lane) {
  return weight * packet.lightColor[0][lane] < kLeastContribution &&
         weight * packet.lightColor[1][lane] < kLeastContribution &&
         weight * packet.lightColor[2][lane] < kLeastContribution;
}

void SetLightColor(const Vec3& color, float factor, RayPacket& packet) {
  for (int c = 0; c < 3; ++c) std::fill_n(packet.lightColor[c], kLanes, color[c] * factor);
}

float SquaredDistance(const RayPacket& packet, int lane) {
  const float x = packet.lightDirection[0][lane];
  const float y = packet.lightDirection[1][lane];
  const float z = packet.lightDirection[2][lane];
  return x * x + y * y + z * z;
}

// Drops the lanes that the light hardly reaches. The bound falls with the squared distance, the
// light itself does not: that is how lights of this system look.
void CullPointLight(RayPacket& packet) {
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.lightMask[lane] < 0) continue;
    const float squared = SquaredDistance(packet, lane);
    packet.inverseSquare[lane] = 1 / squared;
    const float weight = packet.lightCosine[lane] * packet.inverseSquare[lane] /
                         std::sqrt(squared) * packet.throughput[lane];
    if (Negligible(weight, packet, lane)) packet.lightMask[lane] = -1;
  }
}

// Smooth from the outer to the inner cone; hard where they nearly coincide.
float SpotFactorOf(const RenderLight& light, float c) {
  const float width = light.cosInner - light.cosOuter;
  if (c >= light.cosInner || width <= 0.01f) return 1;
  const float x = (c - light.cosOuter) / width;
  return (3 - 2 * x) * x * x;
}

void SetUpSpotLane(const RenderLight& light, RayPacket& packet, int lane) {
  Vec3 d;
  Vec3 n;
  for (int axis = 0; axis < 3; ++axis) {
    d[axis] = packet.position[axis][lane] - light.position[axis];
    n[axis] = packet.normal[axis][lane];
    packet.lightDirection[axis][lane] = d[axis];
  }
  const float cosine = -n.dot(d);
  packet.lightCosine[lane] = cosine;
  packet.lightMask[lane] = -1;
  if (!(cosine > 0)) return;
  const float squared = d.squaredNorm();
  const float distance = std::sqrt(squared);
  packet.inverseSquare[lane] = 1 / squared;
  if (Negligible(cosine * packet.inverseSquare[lane] / distance, packet, lane)) return;
  const float c = light.direction.dot(d) / distance;
  if (c < light.cosOuter) return;
  packet.spotFactor[lane] = SpotFactorOf(light, c);
  packet.lightMask[lane] = packet.geometry[lane];
}

void TraceShadowFromLight(const ShadeInputs& in, const RenderLight& light, RayPacket& packet) {
  if (!AnyActive(packet.lightMask)) return;
  const float point[3] = {light.position.x(), light.position.y(), light.position.z()};
  TraceShadowFromPoint(in.trace, point, packet.lightDirection, packet.lightMask, packet.lightColor);
  for (auto& channel : packet.lightColor) {
    Products(channel, packet.inverseSquare, packet.lightMask, channel);
  }
}

void LightFromPoint(const ShadeInputs& in, const RenderLight& light, RayPacket& packet) {
  SetLightColor(light.color, in.factors.point, packet);
  const float point[3] = {light.position.x(), light.position.y(), light.position.z()};
  LightVectors(point, packet.position, packet.normal, packet.incidence, packet.lightMask,
               packet.lightDirection, packet.lightCosine);
  CullPointLight(packet);
  TraceShadowFromLight(in, light, packet);
}

void LightFromSpot(const ShadeInputs& in, const RenderLight& light, RayPacket& packet) {
  SetLightColor(light.color, in.factors.point, packet);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] >= 0) SetUpSpotLane(light, packet, lane);
  }
  TraceShadowFromLight(in, light, packet);
}

void LightFromDirection(const ShadeInputs& in, const RenderLight& light, RayPacket& packet) {
  SetLightColor(light.color, in.factors.sun, packet);
  const float toLight[3] = {-light.direction.x(), -light.direction.y(), -light.direction.z()};
  DirectionalLightVectors(toLight, packet.normal, packet.lightMask, packet.lightDirection,
                          packet.lightCosine);
  if (!AnyActive(packet.lightMask)) return;
  TraceShadow(in.trace, packet.position, packet.lightDirection,
              std::numeric_limits<float>::infinity(), packet.lightMask, packet.lightColor);
}

void AddDiffuse(RayPacket& packet) {
  alignas(64) LaneInts lit;
  for (int lane = 0; lane < kLanes; ++lane) {
    lit[lane] = packet.lightMask[lane] | packet.hasDiffuse[lane];
  }
  if (!AnyActive(lit)) return;
  alignas(64) LaneFloats weight;
  Products(packet.lightCosine, packet.throughput, lit, weight);
  Products(weight, packet.spotFactor, lit, weight);
  Products(weight, packet.diffuseFactor, lit, weight);
  Products(weight, packet.alpha, lit, weight);
  AddProducts(packet.color, lit, weight, packet.lightColor, packet.diffuse);
}

// The highlight of Phong's model: what the light's mirror ray and the view have in common.
float HighlightOf(const RayPacket& packet, LightType type, int lane, float c) {
  if (type == LightType::kDirectional) {
    return c > 0
               ? static_cast<float>(std::pow(static_cast<double>(c), packet.specularExponent[lane]))
               : 0;
  }
  if (!(c < 0)) return 0;
  return std::sqrt(SquaredDistance(packet, lane)) *
         static_cast<float>(std::pow(static_cast<double>(-c), packet.specularExponent[lane]));
}

void AddSpecular(LightType type, RayPacket& packet) {
  for (int lane = 0; lane < kLanes; ++lane) {
    packet.specularMask[lane] = packet.lightMask[lane] | packet.hasSpecular[lane];
  }
  if (!AnyActive(packet.specularMask)) return;
  Reflect(packet.lightDirection, packet.normal, packet.specularMask, packet.reflected);
  NormaliseDirections(packet.reflected);
  NormaliseDirections(packet.direction);
  alignas(64) LaneFloats cosine;
  DotProducts(packet.direction, packet.reflected, packet.specularMask, cosine);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.specularMask[lane] < 0) continue;
    const float weight = HighlightOf(packet, type, lane, cosine[lane]) * packet.throughput[lane] *
                         packet.spotFactor[lane] * packet.alpha[lane];
    for (int c = 0; c < 3; ++c) {
      packet.color[c][lane] += weight * packet.specular[c][lane] * packet.lightColor[c][lane];
    }
  }
}

void LightFrom(const ShadeInputs& in, const RenderLight& light, RayPacket& packet) {
  switch (light.type) {
    case LightType::kPoint:
      LightFromPoint(in, light, packet);
      break;
    case LightType::kSpot:
      LightFromSpot(in, light, packet);
      break;
    case LightType::kDirectional:
      LightFromDirection(in, light, packet);
      break;
  }
}

}  // namespace

void ShadeDirect(const ShadeInputs& in, RayPacket& packet) {
  const auto& lights = in.scene->Lights();
  const std::size_t count =
      in.pass == PassSunPreview ? std::min<std::size_t>(1, lights.size()) : lights.size();
  for (std::size_t i = 0; i < count; ++i) {
    std::fill_n(packet.spotFactor, kLanes, 1.0f);
    std::copy_n(packet.geometry, kLanes, packet.lightMask);
    LightFrom(in, lights[i], packet);
    if (!AnyActive(packet.lightMask)) continue;
    AddDiffuse(packet);
    AddSpecular(lights[i].type, packet);
  }
}

}  // namespace qv

#include <algorithm>

#include "render/shade/LaneFill.h"
#include "render/shade/ShadePacket.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

constexpr std::size_t kMostSamples = 64;
constexpr float kLeastContribution = 0.0001f;

// Lanes on the bright side of the sample that get enough light stay; for them `spotFactor` becomes
// cosine times cosine over the fourth power of the distance: both cosines are unnormalised dot
// products, so this is the form factor cos cos / d^2.
void CullSample(const Vec3& sampleNormal, float least, RayPacket& packet) {
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.lightMask[lane] < 0) continue;
    const Vec3 d(packet.lightDirection[0][lane], packet.lightDirection[1][lane],
                 packet.lightDirection[2][lane]);
    const float emission = d.dot(sampleNormal);
    const float inverseSquare = 1 / d.squaredNorm();
    packet.inverseSquare[lane] = inverseSquare;
    const float formFactor = inverseSquare * inverseSquare * packet.lightCosine[lane] * emission;
    packet.spotFactor[lane] = formFactor;
    const float weight = formFactor * packet.throughput[lane];
    const bool reaches = weight * packet.lightColor[0][lane] >= least ||
                         weight * packet.lightColor[1][lane] >= least ||
                         weight * packet.lightColor[2][lane] >= least;
    if (!(emission > 0) || !reaches) packet.lightMask[lane] = -1;
  }
}

void AddSample(RayPacket& packet) {
  alignas(64) LaneInts lit;
  for (int lane = 0; lane < kLanes; ++lane) {
    lit[lane] = packet.lightMask[lane] | packet.hasDiffuse[lane];
  }
  if (!AnyActive(lit)) return;
  alignas(64) LaneFloats weight;
  Products(packet.spotFactor, packet.throughput, lit, weight);
  Products(weight, packet.diffuseFactor, lit, weight);
  Products(weight, packet.alpha, lit, weight);
  AddProducts(packet.color, lit, weight, packet.lightColor, packet.diffuse);
}

void LightFromSamples(const ShadeInputs& in, const RenderLEMLight& light, RayPacket& packet) {
  const std::size_t count = std::min(light.samplePositions.size(), kMostSamples);
  if (count == 0) return;
  const Vec3 color = light.power / static_cast<float>(count) * in.factors.lem;
  for (std::size_t i = 0; i < count; ++i) {
    for (int c = 0; c < 3; ++c) Fill(packet.lightColor[c], color[c]);
    Copy(packet.geometry, packet.lightMask);
    const Vec3& p = light.samplePositions[i];
    const float point[3] = {p.x(), p.y(), p.z()};
    LightVectors(point, packet.position, packet.normal, packet.incidence, packet.lightMask,
                 packet.lightDirection, packet.lightCosine);
    CullSample(light.sampleNormals[i], kLeastContribution / static_cast<float>(count), packet);
    if (!AnyActive(packet.lightMask)) continue;
    TraceShadowFromPoint(in.trace, point, packet.lightDirection, packet.lightMask,
                         packet.lightColor);
    AddSample(packet);
  }
}

}  // namespace

void ShadeLEM(const ShadeInputs& in, RayPacket& packet) {
  if (!in.switches.useLEM) return;
  const auto& lights = in.scene->LEMLights();
  const std::size_t count =
      in.pass == PassSunPreview ? std::min<std::size_t>(1, lights.size()) : lights.size();
  for (std::size_t i = 0; i < count; ++i) LightFromSamples(in, lights[i], packet);
}

}  // namespace qv

#include "render/shade/SampleDirections.h"

#include <cmath>

#include "core/Random.h"
#include "render/trace/RayPacket.h"

namespace qv {
namespace {

// A point of the upper half of the cube around the origin: three successive values, in the order x,
// y, z.
Vec3 DrawUpward(Random& random) {
  const double x = random.NextUniform() * 2 - 1;
  const double y = random.NextUniform() * 2 - 1;
  const double z = random.NextUniform();
  return Vec3(static_cast<float>(x), static_cast<float>(y), static_cast<float>(z));
}

// Only points within the unit sphere count, so that directions are spread evenly.
std::vector<Vec3> DrawOcclusion() {
  Random random;
  std::vector<Vec3> directions;
  while (directions.size() < SampleDirections::kOcclusion) {
    const Vec3 v = DrawUpward(random);
    const float length = v.norm();
    if (length < 1) directions.push_back(v / length);
  }
  return directions;
}

std::vector<Vec3> DrawGlossy() {
  constexpr float kConeAngle = 0.20943947f;  // 12 degrees
  const float leastCosine = std::cos(kConeAngle);
  const float clearlyOutside = 0.99f * leastCosine * leastCosine;
  Random random;
  std::vector<Vec3> directions;
  directions.reserve(SampleDirections::kGlossy);
  while (directions.size() < SampleDirections::kGlossy) {
    Vec3 v = DrawUpward(random);
    // Most lie so far outside of the cone that rounding cannot matter, which is told without a
    // root.
    if (v.z() * v.z() < clearlyOutside * v.squaredNorm()) continue;
    const float length = v.norm();
    if (length > 0) v /= length;
    if (v.z() > leastCosine) directions.push_back(v);
  }
  return directions;
}

// Prime, so that tiles whose numbers differ by a power of two do not walk in step.
constexpr std::size_t kStarts = 8191;

std::vector<std::uint32_t> DrawStarts() {
  constexpr double kLastStart = SampleDirections::kGlossy - kLanes;
  Random random;
  std::vector<std::uint32_t> starts(kStarts);
  for (std::uint32_t& start : starts) {
    start = static_cast<std::uint32_t>(random.NextUniform() * kLastStart);
  }
  return starts;
}

}  // namespace

const SampleDirections& SampleDirections::Shared() {
  static const SampleDirections directions;
  return directions;
}

SampleDirections::SampleDirections()
    : occlusion(DrawOcclusion()), glossy(DrawGlossy()), glossyStarts(DrawStarts()) {}

}  // namespace qv

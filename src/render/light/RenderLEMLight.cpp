#include "render/light/RenderLEMLight.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>

namespace qv {
namespace {

constexpr float kMostSamples = 64;
// Keeps shadow rays that start at a sample from meeting the emitter.
constexpr float kLift = 0.0001f;

Vec3 UnitOrAsIs(Vec3 v) {
  const float squared = v.squaredNorm();
  if (squared > 0) v /= std::sqrt(squared);
  return v;
}

// A triangle in the coordinates of its own plane.
struct PlaneFrame {
  Vec3 origin, x, y, z;

  PlaneFrame(const Vec3* corner, const Vec3& normal)
      : origin(corner[0]),
        x(UnitOrAsIs(corner[1] - corner[0])),
        y(UnitOrAsIs(normal.cross(x))),
        z(normal) {}

  Vec2 Project(const Vec3& p) const { return {(p - origin).dot(x), (p - origin).dot(y)}; }
  Vec3 Lift(const Vec2& p) const { return origin + p.x() * x + p.y() * y; }
};

float Cross(const Vec2& a, const Vec2& b) {
  return a.x() * b.y() - a.y() * b.x();
}

bool Inside(const Vec2 (&corner)[3], const Vec2& p) {
  for (int k = 0; k < 3; ++k) {
    const Vec2& a = corner[k];
    if (!(Cross(corner[(k + 1) % 3] - a, p - a) > 0)) return false;
  }
  return true;
}

// The integer part, and one more with the probability of the fraction.
long CandidatesOf(double expected, Random& random) {
  constexpr double kMostCandidates = 1e6;
  const double bounded = std::min(expected, kMostCandidates);
  const double whole = std::floor(bounded);
  return static_cast<long>(whole) + (bounded - whole > random.NextUniform() ? 1 : 0);
}

}  // namespace

RenderLEMLight::RenderLEMLight(const Vec3& emissionColor, std::span<const float> corners)
    : emission(emissionColor) {
  for (std::size_t i = 0; i + 9 <= corners.size(); i += 9) {
    Vec3 corner[3];
    for (std::size_t k = 0; k < 3; ++k) corner[k] = Eigen::Map<const Vec3>(&corners[i + 3 * k]);
    vertices.insert(vertices.end(), std::begin(corner), std::end(corner));
    faceNormals.push_back(UnitOrAsIs((corner[1] - corner[0]).cross(corner[2] - corner[0])));
  }
}

void RenderLEMLight::Sample(Random& random) {
  samplePositions.clear();
  sampleNormals.clear();
  float area = 0;
  for (std::size_t t = 0; t < faceNormals.size(); ++t) {
    const Vec3* corner = &vertices[3 * t];
    area += 0.5f * (corner[1] - corner[0]).cross(corner[2] - corner[0]).norm();
  }
  power = emission * area;
  if (!(area > 0) || !std::isfinite(area)) return;
  const float perSample = area / std::min(kMostSamples, area);

  for (std::size_t t = 0; t < faceNormals.size(); ++t) {
    const Vec3& normal = faceNormals[t];
    Vec3* corner = &vertices[3 * t];
    for (int k = 0; k < 3; ++k) corner[k] += kLift * normal;
    const PlaneFrame frame(corner, normal);
    const Vec2 flat[3] = {frame.Project(corner[0]), frame.Project(corner[1]),
                          frame.Project(corner[2])};
    const Vec2 low = flat[0].cwiseMin(flat[1]).cwiseMin(flat[2]);
    const Vec2 high = flat[0].cwiseMax(flat[1]).cwiseMax(flat[2]);
    const float side = (high - low).maxCoeff();
    const long candidates = CandidatesOf(double{side} * side / perSample, random);
    for (long i = 0; i < candidates; ++i) {
      const float x = static_cast<float>(random.NextUniform()) * side + low.x();
      const float y = static_cast<float>(random.NextUniform()) * side + low.y();
      const Vec2 point(x, y);
      if (!Inside(flat, point)) continue;
      samplePositions.push_back(frame.Lift(point));
      sampleNormals.push_back(normal);
    }
  }
}

void SampleLEMLights(std::span<RenderLEMLight> lights) {
  Random random;
  for (RenderLEMLight& light : lights) light.Sample(random);
}

}  // namespace qv

#include "presets/CameraSpline.h"

#include <utility>

namespace qv {
namespace {

std::vector<Vec3> TangentsOf(const std::vector<Vec3>& points) {
  const std::size_t count = points.size();
  std::vector<Vec3> tangents(count, Vec3::Zero());
  if (count < 2) return tangents;
  for (std::size_t i = 1; i + 1 < count; ++i) tangents[i] = 0.5f * (points[i + 1] - points[i - 1]);
  if (points.front() == points.back()) {
    tangents.front() = tangents.back() = 0.5f * (points[1] - points[count - 2]);
  } else {
    tangents.front() = 0.5f * (points[1] - points[0]);
    tangents.back() = 0.5f * (points[count - 1] - points[count - 2]);
  }
  return tangents;
}

}  // namespace

CameraSpline::CameraSpline(std::vector<Vec3> points)
    : points_(std::move(points)), tangents_(TangentsOf(points_)) {}

Vec3 CameraSpline::Evaluate(std::size_t segment, float s) const {
  if (s == 0 || segment + 1 == points_.size()) return points_[segment];
  if (s == 1) return points_[segment + 1];
  const float s2 = s * s, s3 = s2 * s;
  return (2 * s3 - 3 * s2 + 1) * points_[segment] + (3 * s2 - 2 * s3) * points_[segment + 1] +
         (s3 - 2 * s2 + s) * tangents_[segment] + (s3 - s2) * tangents_[segment + 1];
}

}  // namespace qv

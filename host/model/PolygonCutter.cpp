#include "host/model/PolygonCutter.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <cmath>
#include <optional>

namespace qv::host {
namespace {

using Vec3d = Eigen::Vector3d;
using Triangle = std::array<std::uint32_t, 3>;

// Comparisons of corners after which a polygon is cut without looking for what lies in an ear; only
// outlines of many thousand corners need as many.
constexpr std::size_t kMaximumComparisons = 300'000'000;
// Of areas, relative to the square of the polygon's size.
constexpr double kRoundOff = 1e-12;

struct Point {
  double x, y;
  bool operator==(const Point& other) const = default;
};

// Twice the area of a triangle, positive if it is counterclockwise.
double Cross(const Point& a, const Point& b, const Point& c) {
  return (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
}

// Twice the area, in the direction of the normal (M. E. Newell).
Vec3d AreaVector(std::span<const Vec3> polygon) {
  const Vec3d origin = polygon[0].cast<double>();
  Vec3d sum = Vec3d::Zero();
  for (std::size_t i = 1; i + 1 < polygon.size(); ++i) {
    const Vec3d a = polygon[i].cast<double>() - origin;
    const Vec3d b = polygon[i + 1].cast<double>() - origin;
    sum += a.cross(b);
  }
  return sum;
}

// The polygon in its plane, counterclockwise.
std::vector<Point> Flattened(std::span<const Vec3> polygon, const Vec3d& normal) {
  const Vec3d right = normal.unitOrthogonal();
  const Vec3d up = normal.cross(right);
  const Vec3d origin = polygon[0].cast<double>();
  std::vector<Point> points;
  points.reserve(polygon.size());
  for (const Vec3& corner : polygon) {
    const Vec3d offset = corner.cast<double>() - origin;
    points.push_back({offset.dot(right), offset.dot(up)});
  }
  return points;
}

// What may lie in an ear that is cut off.
enum class Tolerance { kNothing, kOnItsEdge, kAnything };

class Ring {
 public:
  explicit Ring(std::vector<Point> points) : points_(std::move(points)) {
    const auto count = static_cast<std::uint32_t>(points_.size());
    for (std::uint32_t i = 0; i < count; ++i) {
      next_.push_back((i + 1) % count);
      previous_.push_back((i + count - 1) % count);
    }
    left_ = count;
    double size = 0;
    for (const Point& point : points_) size = std::max(size, std::hypot(point.x, point.y));
    roundOff_ = kRoundOff * size * size;
  }

  std::vector<Triangle> Cut() {
    std::vector<Triangle> triangles;
    while (left_ > 3) {
      if (const auto ear = FindEar(Tolerance::kNothing)) {
        triangles.push_back(CutOff(*ear));
      } else if (const auto straight = FindStraight()) {
        CutOff(*straight);
      } else if (const auto touched = FindEar(Tolerance::kOnItsEdge)) {
        triangles.push_back(CutOff(*touched));
      } else if (const auto any = FindEar(Tolerance::kAnything)) {
        triangles.push_back(CutOff(*any));
      } else {
        CutOff(start_);
      }
    }
    triangles.push_back({previous_[start_], start_, next_[start_]});
    return triangles;
  }

 private:
  double AreaAt(std::uint32_t corner) const {
    return Cross(points_[previous_[corner]], points_[corner], points_[next_[corner]]);
  }

  std::optional<std::uint32_t> FindEar(Tolerance tolerance) {
    std::uint32_t corner = start_;
    for (std::uint32_t i = 0; i < left_; ++i, corner = next_[corner]) {
      if (AreaAt(corner) > roundOff_ && IsFree(corner, tolerance)) return corner;
    }
    return std::nullopt;
  }

  // A corner on a straight edge, or at the tip of a spike.
  std::optional<std::uint32_t> FindStraight() const {
    std::uint32_t corner = start_;
    for (std::uint32_t i = 0; i < left_; ++i, corner = next_[corner]) {
      if (std::abs(AreaAt(corner)) <= roundOff_) return corner;
    }
    return std::nullopt;
  }

  bool IsFree(std::uint32_t corner, Tolerance tolerance) {
    if (tolerance == Tolerance::kAnything || comparisons_ > kMaximumComparisons) return true;
    const double least = tolerance == Tolerance::kNothing ? -roundOff_ : roundOff_;
    const Point& a = points_[previous_[corner]];
    const Point& b = points_[corner];
    const Point& c = points_[next_[corner]];
    for (std::uint32_t other = next_[next_[corner]]; other != previous_[corner];
         other = next_[other]) {
      const Point& p = points_[other];
      ++comparisons_;
      const bool within =
          Cross(a, b, p) >= least && Cross(b, c, p) >= least && Cross(c, a, p) >= least;
      if (within && p != a && p != b && p != c) return false;
    }
    return true;
  }

  Triangle CutOff(std::uint32_t corner) {
    const Triangle triangle = {previous_[corner], corner, next_[corner]};
    next_[triangle[0]] = triangle[2];
    previous_[triangle[2]] = triangle[0];
    start_ = triangle[2];
    --left_;
    return triangle;
  }

  std::vector<Point> points_;
  std::vector<std::uint32_t> next_;
  std::vector<std::uint32_t> previous_;
  std::uint32_t start_ = 0;
  std::uint32_t left_ = 0;
  double roundOff_ = 0;
  std::size_t comparisons_ = 0;
};

}  // namespace

std::vector<Triangle> CutPolygon(std::span<const Vec3> polygon) {
  if (polygon.size() < 3) return {};
  if (polygon.size() == 3) return {{0, 1, 2}};
  const Vec3d area = AreaVector(polygon);
  const double length = area.norm();
  if (!(length > 0)) return {};
  return Ring(Flattened(polygon, area / length)).Cut();
}

}  // namespace qv::host

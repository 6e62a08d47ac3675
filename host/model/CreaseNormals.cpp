#include "host/model/CreaseNormals.h"

#include <Eigen/Geometry>
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <unordered_map>

namespace qv::host {
namespace {

using Vec3d = Eigen::Vector3d;

// The work at a place grows with the square of the corners there; beyond this many they go by their
// own triangles' normals.
constexpr std::size_t kMaximumCornersAtPlace = 1024;
constexpr double kSamePlace = 1e-5;

using Cell = std::array<std::int64_t, 3>;

struct CellHash {
  std::size_t operator()(const Cell& cell) const {
    std::uint64_t hash = 0;
    for (const std::int64_t part : cell) {
      // The multiplier of a 64-bit linear congruential generator (P. L'Ecuyer, 1999).
      hash = (hash ^ static_cast<std::uint64_t>(part)) * 3935559000370003845ULL;
      hash ^= hash >> 29;
    }
    return static_cast<std::size_t>(hash);
  }
};

// Numbers the places at which the vertices lie.
std::vector<std::uint32_t> PlacesOf(std::span<const Vec3> positions) {
  Eigen::AlignedBox3f bounds;
  for (const Vec3& position : positions) bounds.extend(position);
  const double step = std::max(bounds.diagonal().cast<double>().norm() * kSamePlace,
                               static_cast<double>(std::numeric_limits<float>::min()));
  std::unordered_map<Cell, std::uint32_t, CellHash> placeOfCell;
  placeOfCell.reserve(positions.size());
  std::vector<std::uint32_t> places;
  places.reserve(positions.size());
  for (const Vec3& position : positions) {
    Cell cell;
    for (int axis = 0; axis < 3; ++axis) {
      cell[static_cast<std::size_t>(axis)] = std::llround(
          (static_cast<double>(position[axis]) - static_cast<double>(bounds.min()[axis])) / step);
    }
    const auto next = static_cast<std::uint32_t>(placeOfCell.size());
    places.push_back(placeOfCell.try_emplace(cell, next).first->second);
  }
  return places;
}

struct Corner {
  std::uint32_t index;  // in the list of corners
  Vec3d face;           // the triangle's unit normal, or zero
  double angle;         // of the triangle at this corner, radians
};

Corner CornerOf(std::span<const Vec3> positions, std::span<const std::uint32_t> corners,
                std::size_t index) {
  const std::size_t first = index - index % 3;
  const auto at = [&](std::size_t corner) -> Vec3d {
    return positions[corners[first + corner % 3]].cast<double>();
  };
  const std::size_t own = index % 3;
  const Vec3d a = at(own + 1) - at(own);
  const Vec3d b = at(own + 2) - at(own);
  const Vec3d cross = a.cross(b);
  const double area = cross.norm();
  if (!(area > 0)) return {static_cast<std::uint32_t>(index), Vec3d::Zero(), 0};
  return {static_cast<std::uint32_t>(index), cross / area, std::atan2(area, a.dot(b))};
}

Vec3 Unit(const Vec3d& sum, const Vec3d& otherwise) {
  const double length = sum.norm();
  if (length > 1e-6) return (sum / length).cast<float>();
  return otherwise.squaredNorm() > 0 ? Vec3(otherwise.cast<float>()) : Vec3(0, 0, 1);
}

void SmoothPlace(std::span<const Corner> place, double leastCosine, std::vector<Vec3>& normals) {
  const bool crowded = place.size() > kMaximumCornersAtPlace;
  for (const Corner& corner : place) {
    Vec3d sum = Vec3d::Zero();
    if (!crowded) {
      const bool flat = corner.face.isZero(0);
      for (const Corner& other : place) {
        if (flat || corner.face.dot(other.face) >= leastCosine) sum += other.angle * other.face;
      }
    }
    normals[corner.index] = Unit(sum, corner.face);
  }
}

}  // namespace

std::vector<Vec3> CreaseNormals(std::span<const Vec3> positions,
                                std::span<const std::uint32_t> corners, float creaseDegrees) {
  const std::vector<std::uint32_t> places = PlacesOf(positions);
  std::vector<Corner> sorted;
  sorted.reserve(corners.size());
  for (std::size_t i = 0; i < corners.size(); ++i) {
    sorted.push_back(CornerOf(positions, corners, i));
  }
  const auto placeOf = [&](const Corner& corner) { return places[corners[corner.index]]; };
  std::sort(sorted.begin(), sorted.end(), [&](const Corner& a, const Corner& b) {
    return placeOf(a) != placeOf(b) ? placeOf(a) < placeOf(b) : a.index < b.index;
  });

  // A little more than the angle, so that an angle of just that size is not left to rounding.
  const double radians = static_cast<double>(creaseDegrees) * std::numbers::pi / 180 + 1e-4;
  std::vector<Vec3> normals(corners.size());
  for (std::size_t first = 0; first < sorted.size();) {
    std::size_t end = first + 1;
    while (end < sorted.size() && placeOf(sorted[end]) == placeOf(sorted[first])) ++end;
    SmoothPlace(std::span(sorted).subspan(first, end - first), std::cos(radians), normals);
    first = end;
  }
  return normals;
}

}  // namespace qv::host

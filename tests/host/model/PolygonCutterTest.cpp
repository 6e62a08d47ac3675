#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <chrono>
#include <cmath>
#include <numbers>
#include <random>

#include "host/model/PolygonCutter.h"

namespace qv::host {
namespace {

using Polygon = std::vector<Vec3>;

Polygon Flat(const std::vector<std::pair<float, float>>& points) {
  Polygon polygon;
  for (const auto& [x, y] : points) polygon.push_back(Vec3(x, y, 0));
  return polygon;
}

// Of the triangles, signed along `normal`; and the same without signs.
std::pair<float, float> Areas(const Polygon& polygon, const Vec3& normal) {
  float area = 0;
  float absolute = 0;
  for (const auto& [a, b, c] : CutPolygon(polygon)) {
    const float part = (polygon[b] - polygon[a]).cross(polygon[c] - polygon[a]).dot(normal) / 2;
    area += part;
    absolute += std::abs(part);
  }
  return {area, absolute};
}

// The inner corner lies just on the line between two others.
TEST(CutPolygon, CoversAnLOnce) {
  const Polygon l = Flat({{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}});
  const auto [area, absolute] = Areas(l, Vec3(0, 0, 1));
  EXPECT_FLOAT_EQ(area, 3);
  EXPECT_FLOAT_EQ(absolute, 3);
}

TEST(CutPolygon, TurnsTrianglesAsThePolygonIsTurned) {
  Polygon l = Flat({{0, 0}, {2, 0}, {2, 1}, {1, 1}, {1, 2}, {0, 2}});
  std::reverse(l.begin(), l.end());
  EXPECT_FLOAT_EQ(Areas(l, Vec3(0, 0, 1)).first, -3);
  // In a slanted plane.
  const Eigen::AngleAxisf turn(1.1f, Vec3(1, 2, 3).normalized());
  for (Vec3& corner : l) corner = turn * corner + Vec3(100, 200, 300);
  EXPECT_NEAR(Areas(l, turn * Vec3(0, 0, -1)).first, 3, 1e-3f);
}

// A wall with a window, the hole joined to the outline by a pair of edges.
TEST(CutPolygon, LeavesAHoleOpen) {
  const Polygon wall =
      Flat({{0, 0}, {10, 0}, {10, 5}, {0, 5}, {0, 0}, {2, 2}, {2, 4}, {8, 4}, {8, 2}, {2, 2}});
  const auto [area, absolute] = Areas(wall, Vec3(0, 0, 1));
  EXPECT_FLOAT_EQ(area, 50 - 12);
  EXPECT_FLOAT_EQ(absolute, 50 - 12);
}

// Stars with corners at random distances from the middle are simple and as concave as can be.
TEST(CutPolygon, CoversStarsOfAllShapes) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> distance(1, 10);
  for (int corners = 4; corners < 60; ++corners) {
    Polygon star;
    double expected = 0;
    for (int i = 0; i < corners; ++i) {
      const float angle =
          2 * std::numbers::pi_v<float> * static_cast<float>(i) / static_cast<float>(corners);
      star.push_back(distance(random) * Vec3(std::cos(angle), std::sin(angle), 0));
    }
    for (std::size_t i = 0; i < star.size(); ++i) {
      const Vec3& a = star[i];
      const Vec3& b = star[(i + 1) % star.size()];
      expected += static_cast<double>(a.x() * b.y() - a.y() * b.x()) / 2;
    }
    const auto [area, absolute] = Areas(star, Vec3(0, 0, 1));
    EXPECT_NEAR(area / expected, 1, 1e-4) << corners;
    EXPECT_NEAR(absolute / expected, 1, 1e-4) << corners;
  }
}

TEST(CutPolygon, KeepsCornersOnStraightEdges) {
  // A square with a corner in the middle of each side: all eight must be used.
  const Polygon square = Flat({{0, 0}, {1, 0}, {2, 0}, {2, 1}, {2, 2}, {1, 2}, {0, 2}, {0, 1}});
  const auto triangles = CutPolygon(square);
  EXPECT_EQ(triangles.size(), 6u);
  EXPECT_FLOAT_EQ(Areas(square, Vec3(0, 0, 1)).second, 4);
}

TEST(CutPolygon, EndsWithOutlinesThatAreNone) {
  EXPECT_TRUE(CutPolygon(Flat({{0, 0}, {1, 1}})).empty());
  EXPECT_TRUE(CutPolygon(Flat({{0, 0}, {1, 1}, {2, 2}, {3, 3}})).empty());
  EXPECT_TRUE(CutPolygon(Polygon(50, Vec3(1, 2, 3))).empty());
  // Crossing itself, and spikes.
  EXPECT_LE(CutPolygon(Flat({{0, 0}, {2, 2}, {2, 0}, {0, 2.5f}})).size(), 2u);
  EXPECT_LE(CutPolygon(Flat({{0, 0}, {4, 0}, {4, 9}, {4, 0}, {4, 4}, {0, 4}})).size(), 4u);
}

// A comb, of which nearly every corner is the tip of no ear.
TEST(CutPolygon, CutsManyCornersInTime) {
  Polygon comb;
  constexpr int kTeeth = 5000;
  for (int i = 0; i < kTeeth; ++i) {
    const auto x = static_cast<float>(i);
    comb.push_back(Vec3(x, 10, 0));
    comb.push_back(Vec3(x + 0.5f, 1, 0));
  }
  comb.push_back(Vec3(kTeeth, 0, 0));
  comb.push_back(Vec3(0, 0, 0));
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(CutPolygon(comb).size(), comb.size() - 2);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

}  // namespace
}  // namespace qv::host

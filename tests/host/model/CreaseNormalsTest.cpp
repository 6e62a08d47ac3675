#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>
#include <numbers>

#include "host/model/CreaseNormals.h"

namespace qv::host {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;

struct Soup {
  std::vector<Vec3> positions;
  std::vector<std::uint32_t> corners;

  // Each triangle with vertices of its own, as formats without shared vertices give them.
  void Add(const Vec3& a, const Vec3& b, const Vec3& c) {
    for (const Vec3& corner : {a, b, c}) {
      corners.push_back(static_cast<std::uint32_t>(positions.size()));
      positions.push_back(corner);
    }
  }
  void AddQuad(const Vec3& a, const Vec3& b, const Vec3& c, const Vec3& d) {
    Add(a, b, c);
    Add(a, c, d);
  }
  std::vector<Vec3> Normals() const { return CreaseNormals(positions, corners); }
};

// A prism about the z axis with its caps, around a circle of radius 10.
Soup Prism(int sides) {
  Soup soup;
  const auto rim = [&](int i, float z) {
    const float angle = 2 * kPi * static_cast<float>(i) / static_cast<float>(sides);
    return Vec3(10 * std::cos(angle), 10 * std::sin(angle), z);
  };
  for (int i = 0; i < sides; ++i) {
    soup.AddQuad(rim(i, 0), rim(i + 1, 0), rim(i + 1, 5), rim(i, 5));
    soup.Add(Vec3(0, 0, 5), rim(i, 5), rim(i + 1, 5));
    soup.Add(Vec3(0, 0, 0), rim(i + 1, 0), rim(i, 0));
  }
  return soup;
}

TEST(CreaseNormals, RoundOffAPrismOfTwelveSidesButNotItsRims) {
  const Soup soup = Prism(12);
  const std::vector<Vec3> normals = soup.Normals();
  for (std::size_t i = 0; i < normals.size(); ++i) {
    const bool cap = i % 12 >= 6;
    const Vec3 position = soup.positions[i];
    const Vec3 radial = Vec3(position.x(), position.y(), 0) / 10;
    const Vec3 expected = cap ? Vec3(0, 0, i % 12 < 9 ? 1 : -1) : radial;
    EXPECT_LT((normals[i] - expected).norm(), 1e-3f) << i;
  }
}

TEST(CreaseNormals, KeepTheEdgesOfACoarserPrism) {
  const Soup soup = Prism(8);
  const std::vector<Vec3> normals = soup.Normals();
  for (std::size_t i = 0; i < normals.size(); i += 3) {
    const Vec3 face = (soup.positions[i + 1] - soup.positions[i])
                          .cross(soup.positions[i + 2] - soup.positions[i])
                          .normalized();
    for (std::size_t corner = 0; corner < 3; ++corner) {
      EXPECT_LT((normals[i + corner] - face).norm(), 1e-4f) << i;
    }
  }
}

// Two rectangles that meet at 20 degrees; one is cut so that two of its triangles meet the ridge's
// end, the other only one. Both count the same all the same.
TEST(CreaseNormals, DoNotDependOnHowAPolygonIsCut) {
  const float slope = std::tan(10 * kPi / 180);
  Soup soup;
  soup.AddQuad(Vec3(0, 0, 0), Vec3(0, -1, -slope), Vec3(4, -1, -slope), Vec3(4, 0, 0));
  soup.AddQuad(Vec3(0, 1, -slope), Vec3(0, 0, 0), Vec3(4, 0, 0), Vec3(4, 1, -slope));
  const std::vector<Vec3> normals = soup.Normals();
  for (std::size_t i = 0; i < normals.size(); ++i) {
    if (soup.positions[i].y() == 0) {
      EXPECT_LT((normals[i] - Vec3(0, 0, 1)).norm(), 1e-4f) << i;
    } else {
      EXPECT_NEAR(normals[i].z(), std::cos(10 * kPi / 180), 1e-4f) << i;
    }
  }
}

TEST(CreaseNormals, StayFiniteWithTrianglesThatHaveNoArea) {
  Soup soup;
  soup.Add(Vec3(0, 0, 0), Vec3(0, 0, 0), Vec3(0, 0, 0));
  soup.Add(Vec3(5, 5, 5), Vec3(6, 6, 6), Vec3(7, 7, 7));
  soup.Add(Vec3(0, 0, 0), Vec3(1, 0, 0), Vec3(0, 1, 0));
  for (const Vec3& normal : soup.Normals()) EXPECT_NEAR(normal.norm(), 1, 1e-5f);
}

// As many triangles at one point as would take hours if each looked at each.
TEST(CreaseNormals, AreMadeInTimeForAFanOfManyTriangles) {
  Soup soup;
  constexpr int kTriangles = 100000;
  for (int i = 0; i < kTriangles; ++i) {
    const float a = 2 * kPi * static_cast<float>(i) / kTriangles;
    const float b = 2 * kPi * static_cast<float>(i + 1) / kTriangles;
    soup.Add(Vec3(0, 0, 0), 100 * Vec3(std::cos(a), std::sin(a), 0),
             100 * Vec3(std::cos(b), std::sin(b), 0));
  }
  EXPECT_LT((soup.Normals()[0] - Vec3(0, 0, 1)).norm(), 1e-3f);
}

}  // namespace
}  // namespace qv::host

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "host/model/AreaLights.h"
#include "host/model/Lights.h"

namespace qv::host {
namespace {

// Rectangles of one material each, in a hall of 400 by 400 by 100 inches of which they are a small
// part.
class Hall {
 public:
  Hall() {
    scene_.materials.resize(1);
    AddFace({0, 0, 0}, {400, 0, 0}, {0, 400, 0}, 0);
    scene_.bounds = Bounds(Vec3(0, 0, 0), Vec3(400, 400, 100));
  }

  std::uint32_t AddMaterial(const Vec3& emission) {
    scene_.materials.emplace_back();
    scene_.materials.back().emission = emission;
    return static_cast<std::uint32_t>(scene_.materials.size() - 1);
  }
  // Into a mesh of its own, or the last one.
  void AddFace(const Vec3& corner, const Vec3& across, const Vec3& along, std::uint32_t material,
               bool sameMesh = false) {
    if (!sameMesh) scene_.meshes.emplace_back();
    SceneMesh& mesh = scene_.meshes.back();
    const auto first = static_cast<std::int32_t>(mesh.vertices.size());
    for (const Vec3& p :
         {corner, Vec3(corner + across), Vec3(corner + across + along), Vec3(corner + along)}) {
      mesh.vertices.push_back({{p.x(), p.y(), p.z()}, {0, 0, 1}, {0, 0}, {0, 0}});
    }
    const std::uint32_t word = material | material << 16;
    mesh.triangles.push_back({{first, first + 1, first + 2}, word});
    mesh.triangles.push_back({{first, first + 2, first + 3}, word});
  }
  void AddBox(const Vec3& low, const Vec3& size, std::uint32_t material) {
    const Vec3 x(size.x(), 0, 0);
    const Vec3 y(0, size.y(), 0);
    const Vec3 z(0, 0, size.z());
    AddFace(low, y, x, material);
    AddFace(low + z, x, y, material, true);
    AddFace(low, x, z, material, true);
    AddFace(low, z, y, material, true);
    AddFace(low + x, y, z, material, true);
    AddFace(low + y, z, x, material, true);
  }
  std::vector<SceneAreaLight> Lights() const { return AreaLightsOf(scene_); }

 private:
  Scene scene_;
};

float AreaOf(const SceneAreaLight& light) {
  float area = 0;
  for (std::size_t i = 0; i + 2 < light.corners.size(); i += 3) {
    const Vec3* c = &light.corners[i];
    area += (c[1] - c[0]).cross(c[2] - c[0]).norm() / 2;
  }
  return area;
}

TEST(AreaLights, APanelBecomesTheRectangleThatItIsOnTheSideThatItShinesTo) {
  Hall hall;
  // Turned by 30 degrees in the ceiling, shining down: 30 by 10 inches.
  const Vec3 across(30 * std::cos(0.5236f), 30 * std::sin(0.5236f), 0);
  const Vec3 along(10 * std::sin(0.5236f), -10 * std::cos(0.5236f), 0);
  hall.AddFace({100, 100, 90}, across, along, hall.AddMaterial({1, 0.8f, 0.5f}));
  const auto lights = hall.Lights();
  ASSERT_EQ(lights.size(), 1u);
  ASSERT_EQ(lights[0].corners.size(), 6u);
  EXPECT_NEAR(AreaOf(lights[0]), 300, 0.1f);
  Bounds box;
  for (const Vec3& corner : lights[0].corners) {
    EXPECT_NEAR(corner.z(), 90, 0.1f);
    EXPECT_LT(corner.z(), 90);
    box.extend(corner);
  }
  EXPECT_NEAR(box.min().x(), 100, 0.1f);
  EXPECT_NEAR(box.max().x(), 100 + 30.98f, 0.1f);
  const Vec3* c = lights[0].corners.data();
  EXPECT_LT((c[1] - c[0]).cross(c[2] - c[0]).z(), 0);
  // The level at the distance of a room, and the hue.
  EXPECT_NEAR(lights[0].emission.x() * 300 / (kRoomDistance * kRoomDistance), kLampLevel, 1e-3f);
  EXPECT_NEAR(lights[0].emission.z() / lights[0].emission.x(), 0.5f, 1e-4f);
}

TEST(AreaLights, ABulbShinesToAllSides) {
  Hall hall;
  hall.AddBox({100, 100, 50}, {2, 4, 6}, hall.AddMaterial({1, 1, 1}));
  const auto lights = hall.Lights();
  ASSERT_EQ(lights.size(), 1u);
  EXPECT_EQ(lights[0].corners.size(), 36u);
  EXPECT_NEAR(AreaOf(lights[0]), 88, 0.1f);
  // Each of its rectangles faces away from the middle.
  for (std::size_t i = 0; i < lights[0].corners.size(); i += 3) {
    const Vec3* c = &lights[0].corners[i];
    const Vec3 normal = (c[1] - c[0]).cross(c[2] - c[0]).normalized();
    EXPECT_GT(normal.dot(c[0] - Vec3(101, 102, 53)), 0.99f);
  }
}

TEST(AreaLights, KeepTheEightStrongestInTheirRatios) {
  Hall hall;
  const std::uint32_t bright = hall.AddMaterial({1, 1, 1});
  const std::uint32_t dim = hall.AddMaterial({0.5f, 0.5f, 0.5f});
  // In one mesh, but apart.
  for (int i = 0; i < 10; ++i) {
    const float side = static_cast<float>(i + 1);
    hall.AddFace({20.0f * static_cast<float>(i), 0, 90}, {0, side, 0}, {side, 0, 0}, bright, i > 0);
  }
  hall.AddFace({0, 300, 90}, {0, 10, 0}, {10, 0, 0}, dim);
  const auto lights = hall.Lights();
  ASSERT_EQ(lights.size(), kMaximumAreaLights);
  const float strongest = lights[0].emission.x() * AreaOf(lights[0]);
  EXPECT_NEAR(lights[1].emission.x() * AreaOf(lights[1]) / strongest, 0.81f, 1e-3f);
  // The dim panel of 100 comes after 64 and before 49.
  EXPECT_NEAR(lights[3].emission.x() / lights[0].emission.x(), 0.5f, 1e-3f);
  EXPECT_NEAR(lights[7].emission.x() * AreaOf(lights[7]) / strongest, 0.16f, 1e-3f);
}

TEST(AreaLights, AWideSurfaceGivesNoLessLightThanItShows) {
  Hall hall;
  hall.AddFace({0, 0, 90}, {0, 350, 0}, {350, 0, 0}, hall.AddMaterial({0.5f, 0.5f, 0.5f}));
  const auto lights = hall.Lights();
  ASSERT_EQ(lights.size(), 1u);
  // Close before it: emission times pi.
  EXPECT_NEAR(lights[0].emission.x(), 0.5f / std::numbers::pi_v<float>, 1e-3f);
}

TEST(AreaLights, AFileToBeShownWithoutLightingHasNoLamps) {
  Hall hall;
  hall.AddFace({0, 0, 90}, {0, 450, 0}, {450, 0, 0}, hall.AddMaterial({1, 1, 1}));
  EXPECT_TRUE(hall.Lights().empty());
}

}  // namespace
}  // namespace qv::host

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <limits>
#include <optional>
#include <random>

#include "TracedScene.h"
#include "render/trace/TraceKernels.h"

namespace qv {
namespace {

using test::PacketOf;
using test::Ray;
using test::SceneBuilder;
using test::SceneMesh;
using test::TracedScene;

constexpr double kUnclear = 1e-3;

struct Hit {
  int geometry;
  int primitive;
  double t, u, v;
};

// Moeller and Trumbore, "Fast, Minimum Storage Ray/Triangle Intersection" (1997), in doubles, over
// all triangles. Not `clear` where single precision may decide otherwise.
struct BruteForce {
  const SceneBuilder& builder;
  std::optional<Hit> nearest;
  bool clear = true;

  BruteForce(const SceneBuilder& scene, const Ray& ray, double tfar) : builder(scene) {
    for (std::size_t g = 0; g < builder.meshes.size(); ++g) {
      const SceneMesh& mesh = builder.meshes[g];
      for (std::size_t p = 0; p < mesh.triangles.size(); ++p) {
        Try(ray, tfar, mesh, static_cast<int>(g), static_cast<int>(p));
      }
    }
  }

  void Try(const Ray& ray, double tfar, const SceneMesh& mesh, int g, int p) {
    Eigen::Vector3d corner[3];
    for (int k = 0; k < 3; ++k) {
      const auto vertex =
          static_cast<std::size_t>(mesh.triangles[static_cast<std::size_t>(p)].vertex[k]);
      corner[k] = Eigen::Map<const Vec3>(mesh.vertices[vertex].position).cast<double>();
    }
    const Eigen::Vector3d e1 = corner[1] - corner[0];
    const Eigen::Vector3d e2 = corner[2] - corner[0];
    const Eigen::Vector3d direction = ray.direction.cast<double>();
    const Eigen::Vector3d s = ray.origin.cast<double>() - corner[0];
    const Eigen::Vector3d h = direction.cross(e2);
    const double determinant = e1.dot(h);
    const double u = s.dot(h) / determinant;
    const double v = direction.dot(s.cross(e1)) / determinant;
    const double t = e2.dot(s.cross(e1)) / determinant;
    const double inside = std::min({u, v, 1 - u - v});
    if (t < -kUnclear || t > tfar + kUnclear || inside < -kUnclear) return;
    if (inside < kUnclear || t < kUnclear || t > tfar - kUnclear) clear = false;
    if (nearest && std::abs(t - nearest->t) < kUnclear) clear = false;
    if (!nearest || t < nearest->t) nearest = Hit{g, p, t, u, v};
  }
};

// Triangles of all shapes in five meshes.
SceneBuilder TriangleSoup(const MaterialParameters& material) {
  std::mt19937 random(11);
  std::uniform_real_distribution<float> place(-50, 50);
  std::uniform_real_distribution<float> reach(-12, 12);
  SceneBuilder builder;
  builder.Material(material);
  for (int g = 0; g < 5; ++g) {
    SceneMesh mesh;
    for (int i = 0; i < 40; ++i) {
      const Vec3 centre(place(random), place(random), place(random));
      for (int k = 0; k < 3; ++k) {
        const Vec3 p = centre + Vec3(reach(random), reach(random), reach(random));
        mesh.vertices.push_back({{p.x(), p.y(), p.z()}, {0, 0, 1}, {0, 0}, {0, 0}});
      }
      mesh.triangles.push_back({{3 * i, 3 * i + 1, 3 * i + 2}, 0});
    }
    builder.Mesh(std::move(mesh));
  }
  return builder;
}

std::vector<Ray> RandomRays(unsigned seed, int count) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> place(-60, 60);
  std::vector<Ray> rays;
  for (int i = 0; i < count; ++i) {
    const Vec3 from(place(random), place(random), place(random));
    const Vec3 to(place(random), place(random), place(random));
    rays.push_back({from, (to - from).normalized()});
  }
  return rays;
}

// With ray by ray calls and with packets of eight.
class TraceKernels : public testing::TestWithParam<int> {};

TEST_P(TraceKernels, FindTheNearestHitOfActiveLanes) {
  const SceneBuilder builder = TriangleSoup({});
  const TracedScene traced(builder, GetParam());
  int hits = 0;
  int misses = 0;
  for (unsigned seed = 0; seed < 12; ++seed) {
    const std::vector<Ray> rays = RandomRays(seed, kLanes);
    const auto before = PacketOf(rays);
    // A third of the lanes off, a whole block among them.
    for (int lane = 0; lane < kLanes; ++lane) {
      const bool inLastBlock = lane % 8 >= 4 && lane / 8 >= 6;
      if ((static_cast<unsigned>(lane) + seed) % 3 == 0 || inLastBlock) before->geometry[lane] = -7;
    }
    const auto after = std::make_unique<RayPacket>(*before);
    TraceClosest(traced.in.trace, *after);
    for (int lane = 0; lane < kLanes; ++lane) {
      const Ray& ray = rays[static_cast<std::size_t>(lane)];
      const BruteForce truth(builder, ray, std::numeric_limits<double>::max());
      const bool off = before->geometry[lane] < 0;
      if (off || (truth.clear && !truth.nearest)) {
        EXPECT_EQ(after->geometry[lane], off ? -7 : -1) << lane;
        EXPECT_EQ(after->t[lane], kUnlimited);
        for (int axis = 0; axis < 3; ++axis) {
          EXPECT_EQ(after->position[axis][lane], ray.origin[axis]);
        }
        misses += off ? 0 : 1;
      } else if (truth.clear) {
        const Hit& hit = *truth.nearest;
        EXPECT_EQ(after->geometry[lane], hit.geometry);
        EXPECT_EQ(after->primitive[lane], hit.primitive);
        EXPECT_NEAR(after->t[lane], hit.t, 1e-3);
        EXPECT_NEAR(after->hitU[lane], hit.u, 1e-3);
        EXPECT_NEAR(after->hitV[lane], hit.v, 1e-3);
        const auto drawnBack = static_cast<float>(hit.t - 0.1);
        for (int axis = 0; axis < 3; ++axis) {
          EXPECT_NEAR(after->position[axis][lane],
                      ray.origin[axis] + drawnBack * ray.direction[axis], 1e-3);
        }
        ++hits;
      }
    }
  }
  EXPECT_GT(hits, 100);
  EXPECT_GT(misses, 50);
}

TEST_P(TraceKernels, TellShadowsWithinReach) {
  const SceneBuilder builder = TriangleSoup({});
  const TracedScene traced(builder, GetParam());
  constexpr float kReach = 40;
  int dark = 0;
  int lit = 0;
  for (unsigned seed = 100; seed < 112; ++seed) {
    const std::vector<Ray> rays = RandomRays(seed, kLanes);
    const auto packet = PacketOf(rays);
    for (int lane = 0; lane < kLanes; ++lane) {
      packet->lightMask[lane] = lane % 5 == 1 ? -3 : lane;
      for (auto& channel : packet->lightColor) channel[lane] = 0.5f;
    }
    TraceShadow(traced.in.trace, packet->position, packet->direction, kReach, packet->lightMask,
                packet->lightColor);
    for (int lane = 0; lane < kLanes; ++lane) {
      if (lane % 5 == 1) {
        EXPECT_LT(packet->lightMask[lane], 0) << "stays off";
        continue;
      }
      if (packet->lightMask[lane] >= 0) {
        EXPECT_EQ(packet->lightColor[2][lane], 0.5f) << "nothing transparent is in the way";
      }
      const BruteForce truth(builder, rays[static_cast<std::size_t>(lane)], kReach);
      if (!truth.clear) continue;
      EXPECT_EQ(packet->lightMask[lane], truth.nearest ? -1 : 0) << lane;
      ++(truth.nearest ? dark : lit);
    }
  }
  EXPECT_GT(dark, 50);
  EXPECT_GT(lit, 50);
}

TEST_P(TraceKernels, ReachFromALightJustToTheSurface) {
  SceneBuilder builder;
  const int matte = builder.Material(Vec3::Ones());
  builder.Floor(0, 100, matte);
  builder.Quad({20, -5, 10}, {10, 0, 0}, {0, 10, 0}, matte);
  const TracedScene traced(builder, GetParam());
  const auto packet = PacketOf({});
  // Lane by lane to points of the floor along x; the panel's shadow falls on 22.2 to 33.3.
  for (int lane = 0; lane < kLanes; ++lane) {
    packet->lightMask[lane] = 0;
    packet->lightDirection[0][lane] = static_cast<float>(lane);
    packet->lightDirection[2][lane] = -100;
    for (auto& channel : packet->lightColor) channel[lane] = 1;
  }
  const float light[3] = {0, 0, 100};
  TraceShadowFromPoint(traced.in.trace, light, packet->lightDirection, packet->lightMask,
                       packet->lightColor);
  for (int lane = 0; lane < kLanes; ++lane) {
    EXPECT_EQ(packet->lightMask[lane], lane > 22 && lane <= 33 ? -1 : 0) << lane;
  }
}

INSTANTIATE_TEST_SUITE_P(, TraceKernels, testing::Values(1, 8), testing::PrintToStringParamName());

}  // namespace
}  // namespace qv

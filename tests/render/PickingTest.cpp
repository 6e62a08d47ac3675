#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

#include "Renderer.h"

namespace qv {
namespace {

using test::Renderer;
using test::SceneBuilder;
using test::ViewFrom;

// A wall of 200 by 200 at y = 100, facing a camera at the origin that looks along +y over 90
// degrees.
SceneBuilder Wall() {
  SceneBuilder builder;
  builder.Floor(-500, 1, builder.Material(Vec3::Ones()));
  builder.Quad({-100, 100, -100}, {200, 0, 0}, {0, 0, 200}, 0);
  return builder;
}

RenderCamera AlongY() {
  RenderCamera camera;
  camera.fieldOfView = 1.5707964f;
  return camera;
}

TEST(Picking, FindsWhatAPixelShows) {
  // By single rays, by packets, and as on a processor without AVX.
  using Options = RaytraceImpl::Options;
  for (const Options& options : {Options{.packetWidth = 1}, Options{.packetWidth = 8},
                                 Options{.rayInstructions = "sse4.2"}}) {
    Renderer renderer(Wall(), 80, 40, options);
    renderer.Run(AlongY(), ModePreview);
    RayHit hit;
    ASSERT_TRUE(renderer.impl.PickPixel(40, 20, hit));
    EXPECT_TRUE(hit.position.isApprox(Vec3(0, 100, 0), 1e-4f));
    EXPECT_NEAR(hit.distance, 100, 1e-3f);
    EXPECT_EQ(hit.geometry, 1u);
    // Ten pixels to the right and five down from the middle: a quarter of 2 and of 1.
    ASSERT_TRUE(renderer.impl.PickPixel(50, 15, hit));
    EXPECT_TRUE(hit.position.isApprox(Vec3(50, 100, -25), 1e-4f)) << hit.position.transpose();
    EXPECT_NEAR(hit.distance, std::sqrt(2500 + 10000 + 625.0f), 1e-2f);
    EXPECT_EQ(hit.primitive, 0u) << "below the diagonal";
    // The triangle's corners are (-100, -100), (100, -100) and (100, 100).
    EXPECT_NEAR(hit.u, 0.375f, 1e-4f);
    EXPECT_NEAR(hit.v, 0.375f, 1e-4f);
    // Past the wall on the left: a point one unit along the ray.
    ASSERT_FALSE(renderer.impl.PickPixel(10, 20, hit));
    EXPECT_TRUE(hit.position.isApprox(Vec3(-1.5f, 1, 0).normalized(), 1e-5f));

    Vec3 right;
    Vec3 up;
    renderer.impl.PanVectors(100, right, up);
    EXPECT_TRUE(right.isApprox(Vec3(5, 0, 0), 1e-5f)) << "400 units over 80 columns";
    EXPECT_TRUE(up.isApprox(Vec3(0, 0, 5), 1e-5f));
  }
}

TEST(Picking, CastsRaysOfAnyLength) {
  Renderer renderer(Wall(), 8, 8);
  renderer.Run(AlongY(), ModePreview);
  const auto hit = renderer.impl.CastRay({10, 0, 20}, {0, 4, 0});
  ASSERT_TRUE(hit);
  EXPECT_NEAR(hit->distance, 25, 1e-4f) << "in multiples of the direction";
  EXPECT_TRUE(hit->position.isApprox(Vec3(10, 100, 20), 1e-5f));
  EXPECT_FALSE(renderer.impl.CastRay({10, 0, 20}, {0, -1, 0}));
  EXPECT_FALSE(renderer.impl.CastRay({10, 0, 20}, {0, 0, 0}));
  const float kNan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_FALSE(renderer.impl.CastRay({10, 0, 20}, {0, kNan, 0}));
  EXPECT_FALSE(renderer.impl.CastRay({kNan, 0, 20}, {0, 1, 0}));
}

TEST(Picking, HitsNothingBeforeTheFirstFrame) {
  for (const int packetWidth : {1, 8}) {
    RaytraceImpl::Options options;
    options.packetWidth = packetWidth;
    RaytraceImpl renderer(options);
    EXPECT_FALSE(renderer.CastRay({0, 0, 0}, {0, 1, 0}));
    Wall().SendTo(renderer);
    EXPECT_FALSE(renderer.CastRay({0, 0, 0}, {0, 1, 0}));
    renderer.BuildScene(nullptr);
    EXPECT_FALSE(renderer.CastRay({0, 0, 0}, {0, 1, 0}));
    RayHit hit;
    EXPECT_FALSE(renderer.PickPixel(0, 0, hit));
  }
}

TEST(Picking, WorksDuringAJob) {
  SceneBuilder scene = Wall();
  scene.meshes[1].billboard = {Vec3(0, 100, 0), Vec2(0, -1)};
  Renderer renderer(scene, 300, 200);
  renderer.Run(AlongY(), ModePreview);
  std::thread mover([&] {
    for (int i = 0; i < 100; ++i) {
      RenderCamera camera = AlongY();
      camera.forward = Vec3(0.001f * static_cast<float>(i), 1, 0);
      renderer.Start(camera, ModeMotion);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  });
  for (int i = 0; i < 3000; ++i) {
    const auto hit = renderer.impl.CastRay({1, 0, 1}, {0, 1, 0});
    ASSERT_TRUE(hit);
    EXPECT_NEAR(hit->distance, 100, 1);
    RayHit picked;
    EXPECT_TRUE(renderer.impl.PickPixel(150, 100, picked));
  }
  mover.join();
  renderer.ExpectDone();
}

}  // namespace
}  // namespace qv

#include <gtest/gtest.h>

#include <numbers>

#include "render/frame/PixelRays.h"

namespace qv {
namespace {

// Looking along +y with 90 degrees from bottom to top: the picture's plane at distance 1 reaches
// from z -1 to 1, and twice as far to the sides.
RenderCamera AlongY() {
  RenderCamera camera;
  camera.position = Vec3(1, 2, 3);
  camera.forward = Vec3(0, 5, 0);
  camera.up = Vec3(0, 0, 7);
  camera.fieldOfView = std::numbers::pi_v<float> / 2;
  return camera;
}

TEST(PixelRays, GoThroughTheLowerLeftCornersOfPixels) {
  const PixelRays rays = ComputePixelRays(AlongY(), 200, 100);
  EXPECT_TRUE(rays.Direction(0, 0).isApprox(Vec3(-2, 1, -1), 1e-6f));
  EXPECT_TRUE(rays.Direction(200, 100).isApprox(Vec3(2, 1, 1), 1e-6f));
  EXPECT_TRUE(rays.Direction(100, 50).isApprox(Vec3(0, 1, 0), 1e-6f));
  EXPECT_TRUE(rays.Direction(101, 51).isApprox(Vec3(0.02f, 1, 0.02f), 1e-6f));
  EXPECT_EQ(Vec3(rays.eye[0], rays.eye[1], rays.eye[2]), Vec3(1, 2, 3));
}

}  // namespace
}  // namespace qv

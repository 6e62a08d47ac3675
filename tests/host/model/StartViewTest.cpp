#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "host/model/StartView.h"

namespace qv::host {
namespace {

// Corners of a box as a scene.
Scene Box(const Vec3& low, const Vec3& high) {
  Scene scene;
  SceneMesh mesh;
  for (int i = 0; i < 8; ++i) {
    const Vec3 corner(i & 1 ? high.x() : low.x(), i & 2 ? high.y() : low.y(),
                      i & 4 ? high.z() : low.z());
    mesh.vertices.push_back({{corner.x(), corner.y(), corner.z()}, {0, 0, 1}, {0, 0}, {0, 0}});
    scene.bounds.extend(corner);
  }
  scene.meshes.push_back(mesh);
  return scene;
}

// Where the corners of the scene come in the frame, from -1 to 1 in both directions, seen through
// tangents of the half angles.
Eigen::AlignedBox2f InFrame(const Scene& scene, const RenderCamera& view, float aspect) {
  Eigen::AlignedBox2f frame;
  const Vec3 right = view.forward.cross(view.up);
  const float slope = std::tan(view.fieldOfView / 2);
  for (const MeshVertex& vertex : scene.meshes[0].vertices) {
    const Vec3 way =
        Vec3(vertex.position[0], vertex.position[1], vertex.position[2]) - view.position;
    const float depth = way.dot(view.forward);
    EXPECT_GT(depth, 0);
    frame.extend(Vec2(way.dot(right) / depth / slope / aspect, way.dot(view.up) / depth / slope));
  }
  return frame;
}

const Vec3 kSunFromSouthWest = Vec3(1, 2, -2).normalized();

TEST(StartView, ShowsAllOfTheModelAndFillsTheFrame) {
  for (const Vec3& size :
       {Vec3(700, 600, 300), Vec3(10, 900, 20), Vec3(5, 5, 900), Vec3(1, 1, 1)}) {
    const Scene scene = Box(Vec3(100, -50, 7), Vec3(100, -50, 7) + size);
    for (const float aspect : {1.0f, 1.5f, 2.0f}) {
      const RenderCamera view = ViewFromOutside(scene, kSunFromSouthWest, 0.7f, aspect);
      const Eigen::AlignedBox2f frame = InFrame(scene, view, aspect);
      EXPECT_LT(frame.max().maxCoeff(), 0.95f);
      EXPECT_GT(frame.min().minCoeff(), -0.95f);
      // It fills one of the two directions and is in the middle of that.
      const Vec2 sizes = frame.sizes();
      EXPECT_GT(sizes.maxCoeff(), 1.6f) << size.transpose() << " at " << aspect;
      EXPECT_NEAR(view.forward.norm(), 1, 1e-5f);
      EXPECT_NEAR(view.up.dot(view.forward), 0, 1e-5f);
    }
  }
}

TEST(StartView, LooksDownOnASunnyCorner) {
  const Scene scene = Box(Vec3(-300, -300, 0), Vec3(300, 300, 200));
  for (const Vec3& sunlight :
       {Vec3(1, 2, -2), Vec3(-2, 1, -1), Vec3(-1, -3, -1), Vec3(3, -1, -1)}) {
    const RenderCamera view = ViewFromOutside(scene, sunlight.normalized(), 0.7f, 1.5f);
    EXPECT_LT(view.forward.z(), -0.2f);
    EXPECT_GT(view.position.z(), 200);
    // The way of the view and of the light agree, on both axes.
    EXPECT_GT(view.forward.x() * sunlight.x(), 0);
    EXPECT_GT(view.forward.y() * sunlight.y(), 0);
    // The side with more sun is seen more squarely.
    EXPECT_EQ(std::abs(view.forward.x()) > std::abs(view.forward.y()),
              std::abs(sunlight.x()) > std::abs(sunlight.y()));
  }
}

TEST(StartView, WishesComeFirstAndTheFileBeforeTheViewFromOutside) {
  Scene scene = Box(Vec3(-100, -100, 0), Vec3(100, 100, 200));
  ViewWishes wishes;
  wishes.fieldOfView = 0.4f;
  EXPECT_EQ(StartView(scene, kSunFromSouthWest, wishes).fieldOfView, 0.4f);

  SceneCamera blind{"away",
                    {Vec3(0, -500, 50), Vec3(0, -1, 0), Vec3(0, 0, 1), 0.6f, Vec3(0, -600, 50)}};
  SceneCamera front{"front",
                    {Vec3(0, -500, 50), Vec3(0, 1, 0), Vec3(0, 0, 1), 0.5f, Vec3(0, 0, 50)}};
  scene.cameras = {blind, front};
  const RenderCamera fromFile = StartView(scene, kSunFromSouthWest, {});
  EXPECT_EQ(fromFile.position, front.view.position);
  EXPECT_EQ(fromFile.forward, front.view.forward);
  EXPECT_EQ(fromFile.fieldOfView, 0.5f);
  EXPECT_EQ(StartView(scene, kSunFromSouthWest, wishes).fieldOfView, 0.4f);
  EXPECT_EQ(StartView(scene, kSunFromSouthWest, wishes).position, front.view.position);

  wishes.eye = Vec3(300, 0, 100);
  RenderCamera wished = StartView(scene, kSunFromSouthWest, wishes);
  EXPECT_EQ(wished.position, Vec3(300, 0, 100));
  EXPECT_TRUE(wished.forward.isApprox(Vec3(-1, 0, 0), 1e-5f));
  wishes.target = Vec3(300, 90, 100);
  wished = StartView(scene, kSunFromSouthWest, wishes);
  EXPECT_TRUE(wished.forward.isApprox(Vec3(0, 1, 0), 1e-5f));
  EXPECT_EQ(wished.target, Vec3(300, 90, 100));
}

TEST(StartView, StaysUsableWhenAskedToLookStraightDownOrNowhere) {
  const Scene scene = Box(Vec3(-100, -100, 0), Vec3(100, 100, 200));
  for (const Vec3& target : {Vec3(0, 0, 0), Vec3(0, 0, 900), Vec3(0, 0, 500)}) {
    ViewWishes wishes;
    wishes.eye = Vec3(0, 0, 500);
    wishes.target = target;
    const RenderCamera view = StartView(scene, kSunFromSouthWest, wishes);
    EXPECT_NEAR(view.forward.norm(), 1, 1e-5f);
    EXPECT_NEAR(view.up.norm(), 1, 1e-5f);
    EXPECT_NEAR(view.up.dot(view.forward), 0, 1e-5f);
  }
}

}  // namespace
}  // namespace qv::host

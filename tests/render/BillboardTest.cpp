#include <gtest/gtest.h>

#include "TracedScene.h"
#include "render/geometry/Billboard.h"

namespace qv {
namespace {

using test::SceneBuilder;
using test::TracedScene;

// A panel of 20 by 20 above (100, 0), seen from -y when unturned, that turns about a pivot 5 units
// before its middle.
SceneBuilder PanelScene(const Vec2& frontAxis) {
  SceneBuilder builder;
  const int panel =
      builder.Quad({90, 5, 0}, {20, 0, 0}, {0, 0, 20}, builder.Material(Vec3::Ones()));
  builder.meshes[static_cast<std::size_t>(panel)].billboard = {Vec3(100, 0, 3), frontAxis};
  return builder;
}

Vec3 PositionOf(const TracedScene& traced, int vertex) {
  const PaddedVec3& p = traced.scene.Meshes()[0]->Positions()[vertex];
  return {p.x, p.y, p.z};
}

Vec3 NormalOf(const TracedScene& traced) {
  const PaddedVec3& n = traced.scene.Meshes()[0]->Normals()[0];
  return {n.x, n.y, n.z};
}

bool IsHit(const TracedScene& traced, const Vec3& origin, const Vec3& direction) {
  const test::Ray ray{origin, direction};
  return traced.Traced({&ray, 1})->geometry[0] >= 0;
}

TEST(Billboard, TurnsItsFrontToTheCamera) {
  TracedScene traced(PanelScene({0, -3}));
  traced.scene.CommitForFrame({0, 1, 0});
  EXPECT_TRUE(PositionOf(traced, 0).isApprox(Vec3(90, 5, 0), 1e-5f)) << "it faces -y as it stands";

  // Seen along -x: the front has to face +x, a quarter turn to the left. What lay 5 units behind
  // the pivot (along +y) then lies 5 units behind it along -x; the corner on the left (-x) goes to
  // -y.
  traced.scene.CommitForFrame({-1, 0, -0.7f});
  EXPECT_TRUE(PositionOf(traced, 0).isApprox(Vec3(95, -10, 0), 1e-5f));
  EXPECT_TRUE(PositionOf(traced, 2).isApprox(Vec3(95, 10, 20), 1e-5f));
  EXPECT_TRUE(NormalOf(traced).isApprox(Vec3(1, 0, 0), 1e-5f));
  EXPECT_FALSE(traced.scene.Meshes()[0]->IsStatic());
}

TEST(Billboard, IsHitWhereItStands) {
  TracedScene traced(PanelScene({0, -1}));
  traced.scene.CommitForFrame({0, 1, 0});
  EXPECT_TRUE(IsHit(traced, {92, -50, 10}, {0, 1, 0}));
  EXPECT_FALSE(IsHit(traced, {200, -9, 10}, {-1, 0, 0}));
  traced.scene.CommitForFrame({-1, 0, 0});
  EXPECT_FALSE(IsHit(traced, {92, -50, 10}, {0, 1, 0}));
  EXPECT_TRUE(IsHit(traced, {200, -9, 10}, {-1, 0, 0}));
}

TEST(Billboard, KeepsStillUnderACameraOverhead) {
  TracedScene traced(PanelScene({0, -1}));
  traced.scene.CommitForFrame({-1, 0, 0});
  const Vec3 before = PositionOf(traced, 0);
  traced.scene.CommitForFrame({0, 0, -1});
  EXPECT_EQ(PositionOf(traced, 0), before);
  traced.scene.CommitForFrame({1e-11f, 0, 1});
  EXPECT_EQ(PositionOf(traced, 0), before);
  EXPECT_TRUE(IsHit(traced, {200, -9, 10}, {-1, 0, 0}));
}

TEST(Billboard, GathersNoErrorOverManyTurns) {
  TracedScene traced(PanelScene({0, -1}));
  for (int i = 0; i < 2000; ++i) {
    const float angle = 0.37f * static_cast<float>(i);
    traced.scene.CommitForFrame({std::cos(angle), std::sin(angle), 0});
  }
  traced.scene.CommitForFrame({0, 1, 0});
  EXPECT_TRUE(PositionOf(traced, 2).isApprox(Vec3(110, 5, 20), 1e-6f));
}

TEST(Billboard, StaysRigidWhenTurnedAboutOrWithoutAFront) {
  TracedScene behind(PanelScene({0, -1}));
  behind.scene.CommitForFrame({0, -1, 0});
  EXPECT_TRUE(NormalOf(behind).isApprox(Vec3(0, 1, 0), 1e-5f));
  EXPECT_NEAR((PositionOf(behind, 0) - Vec3(100, 0, 3)).norm(),
              (Vec3(90, 5, 0) - Vec3(100, 0, 3)).norm(), 1e-4f);
  TracedScene unknown(PanelScene({0, 0}));
  unknown.scene.CommitForFrame({-1, 0, 0});
  EXPECT_TRUE(PositionOf(unknown, 0).isApprox(Vec3(90, 5, 0), 1e-5f));
}

}  // namespace
}  // namespace qv

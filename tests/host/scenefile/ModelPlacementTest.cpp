#include <gtest/gtest.h>

#include <numbers>

#include "host/scenefile/ModelPlacement.h"

namespace qv::host {
namespace {

constexpr float kQuarter = std::numbers::pi_v<float> / 2;

// 4 wide, 2 deep, 6 high, with a corner at the point 10, 20, 30.
const Bounds kBox(Vec3(10, 20, 30), Vec3(14, 22, 36));

void ExpectPoint(const Vec3& point, const Vec3& expected) {
  EXPECT_NEAR((point - expected).norm(), 0, 1e-4)
      << point.transpose() << " is not " << expected.transpose();
}

TEST(ModelPlacement, PutsTheMiddleOfTheFootWhereItIsWanted) {
  const auto place = PlacementOf(kBox, Vec3(1, 1, 1), Vec3(0, 0, 0), Vec3(100, 0, 5), false);
  ExpectPoint(place * Vec3(12, 21, 30), Vec3(100, 0, 5));
  ExpectPoint(place * Vec3(14, 22, 36), Vec3(102, 1, 11));
}

TEST(ModelPlacement, ScalesBeforeItTurns) {
  // Twice as wide, then a quarter turn: the width of 8 lies along y, and what was in front (-y)
  // looks along +x.
  const auto place =
      PlacementOf(kBox, Vec3(2, 1, 0.5f), Vec3(0, 0, kQuarter), Vec3(0, 0, 0), false);
  ExpectPoint(place * Vec3(14, 20, 30), Vec3(1, 4, 0));
  ExpectPoint(place * Vec3(10, 22, 36), Vec3(-1, -4, 3));
}

TEST(ModelPlacement, LaysAThingOnItsBackAndStandsItOnTheGroundThen) {
  // A quarter turn about x takes z to -y and y to z: it lies 6 long and 2 high.
  const auto place = PlacementOf(kBox, Vec3(1, 1, 1), Vec3(kQuarter, 0, 0), Vec3(0, 0, 7), false);
  ExpectPoint(place * Vec3(10, 20, 30), Vec3(-2, 3, 7));
  ExpectPoint(place * Vec3(14, 22, 36), Vec3(2, -3, 9));
}

TEST(ModelPlacement, TurnsAboutXThenYThenZ) {
  // z goes to -y by the turn about x, stays there about y, and goes to x about z.
  const auto place =
      PlacementOf(kBox, Vec3(1, 1, 1), Vec3(kQuarter, kQuarter, kQuarter), Vec3(0, 0, 0), true);
  ExpectPoint(place * Vec3(0, 0, 1), Vec3(1, 0, 0));
  // The origin's own place, not the foot's.
  ExpectPoint(place * Vec3(0, 0, 0), Vec3(0, 0, 0));
}

TEST(ModelPlacement, KeepsNormalsUprightUnderUnevenScales) {
  // The plane x + z = 0, three times as high: x + z / 3 = 0.
  SceneMesh mesh;
  mesh.vertices = {{{1, 0, -1}, {0.70710678f, 0, 0.70710678f}, {0, 0}, {0, 0}}};
  const SceneMesh placed =
      Placed(mesh, PlacementOf(kBox, Vec3(1, 1, 3), Vec3(0, 0, 0), Vec3(0, 0, 0), true));
  ExpectPoint(Vec3(placed.vertices[0].position), Vec3(1, 0, -3));
  ExpectPoint(Vec3(placed.vertices[0].normal), Vec3(3, 0, 1).normalized());
}

TEST(ModelPlacement, MeetsTheWantedLengths) {
  const Vec3 sizes(4, 2, 6);
  const auto scale = [&](std::optional<float> x, std::optional<float> y, std::optional<float> z) {
    WantedSize wanted;
    wanted.lengths = {x, y, z};
    return ScaleFor(wanted, sizes);
  };
  ExpectPoint(scale(2.0f, {}, {}), Vec3(0.5f, 0.5f, 0.5f));
  ExpectPoint(scale(8.0f, 16.0f, {}), Vec3(2, 8, 4));
  ExpectPoint(scale(4.0f, 4.0f, 3.0f), Vec3(1, 2, 0.5f));
  // Nothing to go by where the thing is flat.
  WantedSize flat;
  flat.lengths[2] = 3.0f;
  ExpectPoint(ScaleFor(flat, Vec3(4, 2, 0)), Vec3(1, 1, 1));
}

}  // namespace
}  // namespace qv::host

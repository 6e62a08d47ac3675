#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>

#include "render/trace/CubeLookup.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// Lanes of random numbers with the troublesome ones among them.
struct alignas(64) Lanes {
  LaneFloats a[3], out[3];
  LaneInts mask;
};

Lanes RandomLanes(unsigned seed) {
  constexpr float kSpecial[] = {0.0f,   -0.0f,   kInfinity, -kInfinity, kNan,
                                1e-38f, -1e-30f, 1e19f,     1e-11f,     3e38f};
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> value(-2, 2);
  std::uniform_int_distribution<int> dice(0, 19);
  Lanes lanes{};
  for (int lane = 0; lane < kLanes; ++lane) {
    for (auto& axis : lanes.a) {
      const int roll = dice(random);
      axis[lane] = roll < 4 ? kSpecial[random() % std::size(kSpecial)] : value(random);
    }
    lanes.mask[lane] = dice(random) < 6 ? -1 - dice(random) : dice(random);
  }
  return lanes;
}

struct V {
  float x, y, z;
};

V At(const LaneFloats (&v)[3], int lane) {
  return {v[0][lane], v[1][lane], v[2][lane]};
}

float Dot(const V& a, const V& b) {
  return a.x * b.x + a.y * b.y + a.z * b.z;
}

// Equal bits, any NaN being as good as another.
bool Same(float a, float b) {
  return (std::isnan(a) && std::isnan(b)) ||
         std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

void ExpectSame(const LaneFloats (&v)[3], int lane, const V& expected) {
  EXPECT_TRUE(Same(v[0][lane], expected.x)) << lane << ": " << v[0][lane] << ' ' << expected.x;
  EXPECT_TRUE(Same(v[1][lane], expected.y)) << lane << ": " << v[1][lane] << ' ' << expected.y;
  EXPECT_TRUE(Same(v[2][lane], expected.z)) << lane << ": " << v[2][lane] << ' ' << expected.z;
}

// What every instruction set of this processor has to do with numbers that no picture has; that
// they give the same pictures is tested beside the reference. The parameter is a set's bit.
class VectorOps : public testing::TestWithParam<std::int64_t> {
 protected:
  void SetUp() override { Use(GetParam()); }
  void TearDown() override { Use(0); }

  static void Use(std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  }

  // Runs `body` on lanes of several seeds: (lanes as they were, lanes to work on).
  template <class Body>
  static void ForSeeds(const Body& body) {
    for (unsigned seed = 0; seed < 50; ++seed) {
      const Lanes before = RandomLanes(seed);
      Lanes lanes = before;
      body(before, lanes);
    }
  }
};

TEST_P(VectorOps, RunsOnTheChosenInstructionSet) {
  EXPECT_STREQ(VectorInstructionSet(), hwy::TargetName(GetParam()));
}

TEST_P(VectorOps, NormalisesDirections) {
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    NormaliseDirections(lanes.a);
    for (int lane = 0; lane < kLanes; ++lane) {
      const V v = At(before.a, lane);
      const float length = std::sqrt(Dot(v, v));
      ExpectSame(lanes.a, lane,
                 length < 1e-10f ? V{0, 0, 1} : V{v.x / length, v.y / length, v.z / length});
    }
  });
}

// There is no shortest way from +z to -z.
TEST_P(VectorOps, TurnsToTheOppositeAboutX) {
  Lanes lanes{};
  std::fill_n(lanes.a[2], kLanes, -1.0f);
  RotateFromUp({0.36f, 0.48f, 0.8f}, lanes.a, lanes.mask, lanes.out);
  for (int lane = 0; lane < kLanes; ++lane) ExpectSame(lanes.out, lane, {0.36f, -0.48f, -0.8f});
}

TEST_P(VectorOps, LooksTheCubeUpLikeSingleDirections) {
  static const auto faces = [] {
    auto cube = std::make_unique<sky::CubeFaces>();
    std::mt19937 random(9);
    for (int face = 0; face < 5; ++face) {  // the last one stays empty
      auto& pixels = cube->pixels[static_cast<std::size_t>(face)];
      pixels.resize(std::size_t{4} << 20);
      for (std::uint8_t& byte : pixels) byte = static_cast<std::uint8_t>(random());
    }
    return cube;
  }();
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    for (int lane = 0; lane < kLanes; lane += 9) {  // on the borders between faces
      for (auto& axis : lanes.a) axis[lane] = std::copysign(0.5f, axis[lane]);
      if (lane % 2 == 0) lanes.a[lane % 3][lane] = 0;
    }
    SampleCube(*faces, lanes.a, lanes.mask, lanes.out);
    for (int lane = 0; lane < kLanes; ++lane) {
      const V d = At(lanes.a, lane);
      const Vec3 color = faces->Sample({d.x, d.y, d.z});
      if (before.mask[lane] >= 0) ExpectSame(lanes.out, lane, {color.x(), color.y(), color.z()});
    }
  });
}

TEST_P(VectorOps, TellsWhetherALaneIsActive) {
  alignas(64) LaneInts mask;
  for (int active = -1; active < kLanes; ++active) {
    for (int lane = 0; lane < kLanes; ++lane) mask[lane] = lane == active ? lane : -1 - lane;
    EXPECT_EQ(AnyActive(mask), active >= 0) << active;
  }
}

std::vector<std::int64_t> InstructionSets() {
  std::vector<std::int64_t> sets;
  hwy::SetSupportedTargetsForTest(0);
  for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) sets.push_back(target);
  return sets;
}

INSTANTIATE_TEST_SUITE_P(, VectorOps, testing::ValuesIn(InstructionSets()),
                         [](const auto& info) { return hwy::TargetName(info.param); });

}  // namespace
}  // namespace qv

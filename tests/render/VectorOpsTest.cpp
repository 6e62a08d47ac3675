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
#include "render/trace/InverseSqrt.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

// Lanes of random numbers with the troublesome ones among them.
struct alignas(64) Lanes {
  LaneFloats a[3], b[3], out[3], weight, scalar;
  LaneInts mask;
};

Lanes RandomLanes(unsigned seed) {
  constexpr float kSpecial[] = {0.0f,   -0.0f,   kInfinity, -kInfinity, kNan,
                                1e-38f, -1e-30f, 1e19f,     1e-11f,     3e38f};
  std::mt19937 random(seed);
  std::uniform_real_distribution<float> value(-2, 2);
  std::uniform_int_distribution<int> dice(0, 19);
  const auto draw = [&] {
    const int roll = dice(random);
    return roll < 4 ? kSpecial[random() % std::size(kSpecial)] : value(random);
  };
  Lanes lanes;
  for (int lane = 0; lane < kLanes; ++lane) {
    for (int axis = 0; axis < 3; ++axis) {
      lanes.a[axis][lane] = draw();
      lanes.b[axis][lane] = draw();
      lanes.out[axis][lane] = draw();
    }
    lanes.weight[lane] = draw();
    lanes.scalar[lane] = draw();
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

// Each test runs once with every instruction set of this processor, the parameter being its bit,
// with numbers that no picture has among the lanes and with lanes that are off. That the sets give
// the same pictures is tested beside the reference.
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

TEST_P(VectorOps, NormalisesNormalsNearly) {
  // Without vector instructions the estimate itself is coarser.
  const float tolerance = GetParam() == HWY_SCALAR ? 1e-5f : 1e-6f;
  ForSeeds([tolerance](const Lanes& before, Lanes& lanes) {
    NormaliseNormals(lanes.a, lanes.mask);
    for (int lane = 0; lane < kLanes; ++lane) {
      const V v = At(before.a, lane);
      const float squared = Dot(v, v);
      if (before.mask[lane] < 0) {
        ExpectSame(lanes.a, lane, v);
      } else if (squared > 1e-30f && squared < 1e30f) {
        for (int axis = 0; axis < 3; ++axis) {
          EXPECT_NEAR(lanes.a[axis][lane], before.a[axis][lane] / std::sqrt(squared), tolerance);
        }
      }
    }
  });
  for (float s = 1e-6f; s < 1e6f; s *= 1.7f) {
    EXPECT_NEAR(RefinedInverseSqrt(s) * std::sqrt(s), 1, 1e-6f) << s;
  }
}

TEST_P(VectorOps, MultipliesAndAdds) {
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    DotProducts(lanes.a, lanes.b, lanes.mask, lanes.scalar);
    Products(lanes.a[0], lanes.b[0], lanes.mask, lanes.weight);
    for (int lane = 0; lane < kLanes; ++lane) {
      const bool on = before.mask[lane] >= 0;
      EXPECT_TRUE(
          Same(lanes.scalar[lane], on ? Dot(At(before.a, lane), At(before.b, lane)) : 0.0f));
      EXPECT_TRUE(Same(lanes.weight[lane], on ? before.a[0][lane] * before.b[0][lane] : 0.0f));
    }
  });
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    const float tint[3] = {0.25f, 3, 0};
    AddScaled(lanes.out, lanes.mask, 0.7f, lanes.weight, lanes.a, tint);
    AddProducts(lanes.b, lanes.mask, lanes.weight, lanes.a, lanes.a);
    for (int lane = 0; lane < kLanes; ++lane) {
      const bool on = before.mask[lane] >= 0;
      const float w = before.weight[lane];
      const V a = At(before.a, lane);
      const V out = At(before.out, lane);
      const V b = At(before.b, lane);
      const float s = 0.7f * w;
      ExpectSame(
          lanes.out, lane,
          on ? V{out.x + s * a.x * tint[0], out.y + s * a.y * tint[1], out.z + s * a.z * tint[2]}
             : out);
      ExpectSame(lanes.b, lane,
                 on ? V{b.x + w * a.x * a.x, b.y + w * a.y * a.y, b.z + w * a.z * a.z} : b);
    }
  });
}

TEST_P(VectorOps, ReflectsInPlaceToo) {
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    Reflect(lanes.a, lanes.b, lanes.mask, lanes.out);
    Reflect(lanes.a, lanes.b, lanes.mask, lanes.a);
    for (int lane = 0; lane < kLanes; ++lane) {
      const V d = At(before.a, lane);
      const V n = At(before.b, lane);
      const float k = 2.0f * Dot(d, n);
      const V mirrored{d.x - n.x * k, d.y - n.y * k, d.z - n.z * k};
      const bool on = before.mask[lane] >= 0;
      ExpectSame(lanes.out, lane, on ? mirrored : At(before.out, lane));
      ExpectSame(lanes.a, lane, on ? mirrored : d);
    }
  });
}

TEST_P(VectorOps, FindsLightVectors) {
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    const float origin[3] = {0.5f, -0.25f, 1};
    LightVectors(origin, lanes.a, lanes.b, lanes.weight, lanes.mask, lanes.out, lanes.scalar);
    for (int lane = 0; lane < kLanes; ++lane) {
      const V p = At(before.a, lane);
      const V d{p.x - origin[0], p.y - origin[1], p.z - origin[2]};
      float c = Dot(At(before.b, lane), d);
      if (std::abs(c) < 0.0017453292f) c = 0;
      const bool lit = before.mask[lane] >= 0 && before.weight[lane] * c > 0;
      EXPECT_EQ(lanes.mask[lane], lit ? before.mask[lane] : -1);
      ExpectSame(lanes.out, lane, lit ? d : V{0, 0, 0});
      EXPECT_TRUE(Same(lanes.scalar[lane], lit ? std::abs(c) : 0.0f));
    }
  });
  ForSeeds([](const Lanes& before, Lanes& lanes) {
    const float toLight[3] = {0.6f, 0, 0.8f};
    DirectionalLightVectors(toLight, lanes.b, lanes.mask, lanes.out, lanes.scalar);
    for (int lane = 0; lane < kLanes; ++lane) {
      const float c = Dot({0.6f, 0, 0.8f}, At(before.b, lane));
      const bool lit = before.mask[lane] >= 0 && c > 0;
      EXPECT_EQ(lanes.mask[lane], lit ? before.mask[lane] : -1);
      EXPECT_TRUE(Same(lanes.scalar[lane], lit ? c : 0.0f));
      if (lit) ExpectSame(lanes.out, lane, {0.6f, 0, 0.8f});
    }
  });
}

TEST_P(VectorOps, GiveATileItsLanesRowByRowAndStoreItSo) {
  PixelRays rays{};
  const float numbers[3][3] = {{1, 2, 3}, {0.5f, 0, 0.25f}, {0, -1, 0.125f}};
  std::copy_n(numbers[0], 3, rays.corner);
  std::copy_n(numbers[1], 3, rays.columnStep);
  std::copy_n(numbers[2], 3, rays.rowStep);
  Lanes lanes{};
  TileDirections(rays, 32, 16, lanes.a);
  constexpr int kStride = 30, kFirst = 3;
  std::vector<float> rows(std::size_t{kTileSide} * kStride, -1.0f);
  StoreTile(lanes.a, rows.data() + kFirst, kStride);
  for (int y = 0; y < kTileSide; ++y) {
    for (int i = 0; i < kStride; ++i) {
      const int x = i / 3 - 1, c = i % 3;
      const bool stored = i >= kFirst && x < kTileSide;
      const float expected = numbers[0][c] + static_cast<float>(32 + x) * numbers[1][c] +
                             static_cast<float>(16 + y) * numbers[2][c];
      EXPECT_EQ(rows[static_cast<std::size_t>(y * kStride + i)], stored ? expected : -1.0f)
          << i << ' ' << y;
    }
  }
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
      const bool on = before.mask[lane] >= 0;
      ExpectSame(lanes.out, lane, on ? V{color.x(), color.y(), color.z()} : V{0, 0, 0});
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

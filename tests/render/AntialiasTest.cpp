#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "Renderer.h"
#include "TracedScene.h"
#include "render/frame/PixelRays.h"

namespace qv {
namespace {

using test::Picture;
using test::Renderer;
using test::SmallScene;
using test::ViewFrom;

constexpr int kWidth = 45;
constexpr int kHeight = 37;

bool Differ(const Picture& p, int ax, int ay, int bx, int by) {
  for (int c = 0; c < 3; ++c) {
    if (std::abs(p.At(ax, ay)[c] - p.At(bx, by)[c]) >= 16) return true;
  }
  return false;
}

// A pixel is an edge if it differs from one of its neighbours, but pairs that go down to the right
// are not compared, nor any that begin in the last column or row.
bool IsEdge(const Picture& p, int x, int y) {
  constexpr int kPairs[3][2] = {{1, 0}, {0, 1}, {1, 1}};
  const auto begins = [&](int fromX, int fromY) {
    return fromX >= 0 && fromY >= 0 && fromX < p.width - 1 && fromY < p.height - 1;
  };
  for (const auto& [dx, dy] : kPairs) {
    if (begins(x, y) && Differ(p, x, y, x + dx, y + dy)) return true;
    if (begins(x - dx, y - dy) && Differ(p, x - dx, y - dy, x, y)) return true;
  }
  return false;
}

class AntialiasFactor : public testing::TestWithParam<std::array<int, 2>> {};

TEST_P(AntialiasFactor, ShowsTheMeanOfAllSamplesOnEdges) {
  const auto [index, factor] = GetParam();
  const test::SceneBuilder scene = SmallScene();
  const RenderCamera camera = ViewFrom(330);
  Renderer renderer(scene, kWidth, kHeight);
  ASSERT_TRUE(renderer.impl.ResizeTargets(kWidth, kHeight, index));
  renderer.impl.SetUseAmbientOcclusion(false);
  renderer.impl.SetImageSettings({0.05f, 0.1f, 1.8f});
  renderer.Run(camera, ModeStill);
  const auto passes = renderer.Passes();
  ASSERT_EQ(passes.size(), 2u);
  const Picture& base = passes[0].picture;

  test::TracedScene traced(scene);
  traced.UseStartingSky();
  const int width = kWidth * factor;
  const int height = kHeight * factor;
  const std::vector<Vec3> samples =
      traced.Picture(ComputePixelRays(camera, width, height), width, height, PassFull);
  const auto adjusted = [](float c) {
    const float v = (c - 0.5f) * std::exp2(0.2f) + 0.5f + 0.05f;
    return 255 * std::clamp(std::pow(std::max(v, 0.0f), 1 / 1.8f), 0.0f, 1.0f);
  };
  Picture expected = base;
  int edges = 0;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      if (!IsEdge(base, x, y)) continue;
      ++edges;
      float sum[3] = {0, 0, 0};
      for (int j = 0; j < factor; ++j) {
        for (int i = 0; i < factor; ++i) {
          const int sample = (y * factor + j) * width + x * factor + i;
          for (int c = 0; c < 3; ++c)
            sum[c] += adjusted(samples[static_cast<std::size_t>(sample)][c]);
        }
      }
      for (int c = 0; c < 3; ++c) {
        expected.At(x, y)[c] =
            static_cast<std::uint8_t>(sum[c] / static_cast<float>(factor * factor));
      }
    }
  }
  EXPECT_GT(edges, 100);
  EXPECT_LT(edges, kWidth * kHeight / 2);
  ExpectSamePicture(passes[1].picture, expected, 1, edges / 100);
}

INSTANTIATE_TEST_SUITE_P(, AntialiasFactor,
                         testing::Values(std::array{0, 2}, std::array{1, 4}, std::array{2, 8},
                                         std::array{-1, 2}, std::array{5, 2}),
                         [](const auto& info) { return "Choice" + std::to_string(info.index); });

TEST(Antialias, KeepsItsEdgesWhenGammaChanges) {
  Renderer renderer(SmallScene(), kWidth, kHeight);
  renderer.Run(ViewFrom(330), ModeStill);
  const auto passes = renderer.Passes();
  renderer.impl.ComposeImage(false);
  EXPECT_EQ(renderer.Screen(), passes[1].picture) << "the last pass was the antialiasing";
  renderer.impl.SetImageSettings({0, 0, 2});
  EXPECT_EQ(renderer.Screen(), passes[1].picture) << "nothing changes until it is composed";
  renderer.impl.ComposeImage(true);
  Picture expected = renderer.Screen();
  EXPECT_NE(expected, passes[1].picture);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      if (IsEdge(passes[0].picture, x, y)) continue;
      for (int c = 0; c < 3; ++c) {
        // The root of a value between v and v + 1.
        const int v = passes[0].picture.At(x, y)[c];
        const int low = static_cast<int>(std::sqrt(v / 255.0f) * 255);
        const int high = v == 255 ? 255 : static_cast<int>(std::sqrt((v + 1) / 255.0f) * 255);
        EXPECT_TRUE(expected.At(x, y)[c] >= low && expected.At(x, y)[c] <= high) << x << ' ' << y;
      }
    }
  }
  // The same as if the job had run with the new gamma, but for the choice of edges.
  renderer.Run(ViewFrom(330), ModeStill);
  int same = 0;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) same += renderer.Screen().Color(x, y) == expected.Color(x, y);
  }
  EXPECT_GT(same, kWidth * kHeight * 8 / 10);
}

TEST(Antialias, KeepsItsFactorWhenTheSizeChanges) {
  Renderer renderer(SmallScene(), kWidth, kHeight);
  const auto lastPicture = [&](int index) {
    EXPECT_TRUE(renderer.impl.ResizeTargets(kWidth, kHeight, index));
    renderer.Run(ViewFrom(0), ModeFinal);
    return renderer.Screen();
  };
  const Picture four = lastPicture(1);
  EXPECT_EQ(lastPicture(-1), four);
  const Picture two = lastPicture(17);
  EXPECT_NE(two, four);
  EXPECT_EQ(lastPicture(0), two);
}

}  // namespace
}  // namespace qv

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "Renderer.h"
#include "TracedScene.h"
#include "render/frame/PixelRays.h"

namespace qv {
namespace {

using test::Picture;
using test::Renderer;
using test::SmallScene;
using test::ViewFrom;

// The picture of one pass, ray by ray, with the sky that a renderer starts with.
Picture PictureOf(const test::SceneBuilder& builder, const RenderCamera& camera, int width,
                  int height, RenderPass pass) {
  test::TracedScene traced(builder);
  traced.UseStartingSky();
  traced.in.switches.useAmbientOcclusion = true;
  const std::vector<Vec3> colors =
      traced.Picture(ComputePixelRays(camera, width, height), width, height, pass);
  Picture picture(width, height);
  for (std::size_t i = 0; i < colors.size(); ++i) {
    for (int c = 0; c < 3; ++c) {
      const float v = colors[i][c] * 255;
      const auto wrapped = static_cast<std::uint8_t>(static_cast<int>(v));
      const auto limited = static_cast<std::uint8_t>(std::clamp(v, 0.0f, 255.0f));
      picture.rgb[3 * i + static_cast<std::size_t>(c)] = pass == PassPreview ? wrapped : limited;
    }
  }
  return picture;
}

TEST(FrameEngine, TracesEachPixelOfAnySize) {
  const test::SceneBuilder scene = SmallScene();
  const RenderCamera camera = ViewFrom(20);
  const std::tuple<int, int> sizes[] = {{1, 1}, {9, 9}, {61, 43}, {100, 8}, {7, 300}};
  Renderer renderer(scene, 64, 64);
  for (const auto& [width, height] : sizes) {
    ASSERT_TRUE(renderer.impl.ResizeTargets(width, height, -1));
    const std::size_t before = renderer.Passes().size();
    renderer.Run(camera, ModeMotion);
    renderer.Run(camera, ModeSunPreview);
    const auto passes = renderer.Passes();
    ASSERT_EQ(passes.size(), before + 4);
    // Neighbouring rays share packets in another way, which may decide a grazing hit otherwise.
    const int some = width * height / 200;
    ExpectSamePicture(passes[before].picture, PictureOf(scene, camera, width, height, PassPreview),
                      1, some);
    ExpectSamePicture(passes[before + 1].picture, PictureOf(scene, camera, width, height, PassFull),
                      1, some);
    ExpectSamePicture(passes[before + 3].picture,
                      PictureOf(scene, camera, width, height, PassSunPreview), 1, some);
  }
}

TEST(FrameEngine, RunsThePassesOfItsModes) {
  Renderer renderer(SmallScene(), 48, 40);
  const RenderCamera camera = ViewFrom(200);
  std::vector<std::vector<Picture>> shown;
  for (const RenderMode mode :
       {ModePreview, ModeMotion, ModeSunMotion, ModeSunPreview, ModeStill, ModeFinal}) {
    const std::size_t before = renderer.Passes().size();
    renderer.Run(camera, mode);
    const auto passes = renderer.Passes();
    shown.emplace_back();
    for (std::size_t i = before; i < passes.size(); ++i) shown.back().push_back(passes[i].picture);
    ASSERT_FALSE(shown.back().empty());
    EXPECT_EQ(renderer.Screen(), shown.back().back());
  }
  const Picture& preview = shown[0][0];
  const Picture& sunPreview = shown[3][0];
  const Picture& full = shown[4][0];
  const Picture& antialiased = shown[4].back();
  EXPECT_NE(preview, sunPreview);
  EXPECT_NE(preview, full);
  EXPECT_NE(sunPreview, full);
  EXPECT_NE(full, antialiased);
  EXPECT_EQ(shown[0], (std::vector{preview}));
  EXPECT_EQ(shown[1], (std::vector{preview, full, antialiased}));
  EXPECT_EQ(shown[2], (std::vector{sunPreview, full, antialiased}));
  EXPECT_EQ(shown[3], (std::vector{sunPreview}));
  EXPECT_EQ(shown[4], (std::vector{full, antialiased}));
  EXPECT_EQ(shown[5], (std::vector{antialiased})) << "one call, after the last pass";
  EXPECT_EQ(renderer.impl.Statistics().triangleCount, 2 + 12 + 24 * 12 * 2);
  EXPECT_EQ(renderer.impl.Statistics().materialCount, 3);
  EXPECT_GT(renderer.impl.Statistics().basePassSeconds, 0);
  EXPECT_GT(renderer.impl.Statistics().antialiasPassSeconds, 0);
  renderer.Run(camera, static_cast<RenderMode>(77));
  EXPECT_EQ(renderer.impl.Statistics().antialiasPassSeconds, 0);
}

// Blurred reflections draw random numbers, and lights with an area random points.
TEST(FrameEngine, GivesTheSameBytesInEachRunWithAnyNumberOfThreads) {
  test::SceneBuilder scene = SmallScene();
  scene.materials[0].reflectance = 0.6f;
  scene.materials[0].glossy = 1;
  scene.materials[1].opacity = 0.5f;
  scene.materials[1].refractiveIndex = 1.3f;
  std::vector<Picture> pictures;
  for (const int threads : {1, 2, 4, 2}) {
    RaytraceImpl::Options options;
    options.threadCount = threads;
    Renderer renderer(scene, 50, 34, options);
    const float emitter[] = {-20, -60, 60, 20, -60, 60, 0, -20, 60};
    renderer.impl.AddLEMLight(Vec3(3, 3, 3), emitter);
    renderer.impl.BuildScene(nullptr);
    renderer.impl.SetUseLEM(true);
    for (int run = 0; run < 2; ++run) {
      renderer.Run(ViewFrom(90), ModeStill);
      pictures.push_back(renderer.Screen());
      renderer.Run(ViewFrom(30), ModePreview);
    }
  }
  for (const Picture& picture : pictures) ExpectSamePicture(picture, pictures[0]);
}

// Whoever reads the picture at any moment: each picture has one pair of times, and the picture of
// an antialiasing pass has both.
TEST(FrameEngine, ShowsAPictureWithItsOwnTimes) {
  Renderer renderer(SmallScene(), 48, 40);
  std::atomic<bool> done{false};
  std::map<std::vector<std::uint8_t>, std::pair<double, double>> timesOf;
  int mixed = 0;
  std::thread reader([&] {
    while (!done) {
      renderer.impl.ReadScreen([&](const ScreenView& view) {
        const std::size_t size = view.pitch * static_cast<std::size_t>(view.height);
        const std::pair times(view.times.base, view.times.antialias);
        const auto [place, isNew] = timesOf.try_emplace({view.pixels, view.pixels + size}, times);
        if (!isNew && place->second != times) ++mixed;
      });
    }
  });
  for (int i = 0; i < 12; ++i) renderer.Run(ViewFrom(30 * i), ModeMotion);
  done = true;
  reader.join();
  EXPECT_EQ(mixed, 0);
  EXPECT_GT(timesOf.size(), 12u);
  int antialiased = 0;
  for (const auto& [picture, times] : timesOf) {
    if (times.second > 0) ++antialiased;
    EXPECT_TRUE(times.first > 0 || times.second == 0);
  }
  EXPECT_GT(antialiased, 0);
}

TEST(FrameEngine, ShowsBakedLightWithTheNextJob) {
  test::SceneBuilder scene;
  scene.Floor(0, 1000, scene.Material(Vec3::Ones()));
  Renderer renderer(scene, 8, 8);
  const RenderCamera camera = ViewFrom(0);
  const auto red = [&] { return static_cast<int>(renderer.Screen().rgb[0]); };
  RaytraceImpl& impl = renderer.impl;
  impl.SetLightSettings({0, 0.5f, 1, 1, false});

  MeshLightmap lightmap;
  lightmap.coords.resize(6, Vec2(0.5f, 0.5f));
  lightmap.colors.resize(6, Vec3(0.25f, 0, 0));
  lightmap.pages = {0, 0};
  EXPECT_TRUE(impl.SetMeshLightmap(0, lightmap));
  EXPECT_FALSE(impl.SetMeshLightmap(1, lightmap)) << "there is one mesh";
  impl.SetLightmapPages({{1, 1, {0, 0, 0.75f, 1}}});
  EXPECT_TRUE(impl.HasLightmapPages());
  impl.SetUseLightmap(true);
  EXPECT_TRUE(impl.UseLightmap());
  renderer.Run(camera, ModeStill);
  EXPECT_EQ(red(), 127) << "0.5 of 0.25 + 0.75";

  impl.ClearLightmaps();
  EXPECT_FALSE(impl.HasLightmapPages());
  renderer.Run(camera, ModeStill);
  EXPECT_EQ(red(), 55) << "0.5 of half the ambient light";
  lightmap.pages.resize(1);
  EXPECT_FALSE(impl.SetMeshLightmap(0, lightmap)) << "it has two triangles";
  renderer.Run(camera, ModeStill);
  EXPECT_EQ(red(), 55);
}

// Nothing at all, and triangles without any material.
TEST(FrameEngine, ShowsTheSkyBehindAnEmptyScene) {
  Renderer empty(test::SceneBuilder(), 40, 30);
  empty.Run(ViewFrom(20), ModeStill);
  ExpectSamePicture(empty.Passes()[0].picture,
                    PictureOf(test::SceneBuilder(), ViewFrom(20), 40, 30, PassFull), 1);
  test::SceneBuilder floor;
  floor.Floor(0, 20, 0);
  Renderer bare(floor, 40, 30);
  for (const RenderMode mode : {ModeMotion, ModeSunMotion, ModeFinal}) {
    empty.Run(ViewFrom(20), mode);
    bare.Run(ViewFrom(20), mode);
    EXPECT_EQ(empty.Screen().rgb.back(), bare.Screen().rgb.back()) << "sky above the floor";
    EXPECT_NE(empty.Screen(), bare.Screen());
  }
}

TEST(FrameEngine, TakesNewFactorsWithTheNextJob) {
  Renderer renderer(SmallScene(), 40, 30);
  renderer.Run(ViewFrom(0), ModeSunPreview);
  const Picture bright = renderer.Screen();
  renderer.impl.SetLightSettings({0, 1, 0, 1, false});
  renderer.impl.ComposeImage(true);
  EXPECT_EQ(renderer.Screen(), bright);
  renderer.impl.StartRenderSameCamera(ModeSunPreview);
  renderer.ExpectDone();
  EXPECT_NE(renderer.Screen(), bright);
  EXPECT_EQ(renderer.impl.GetLightSettings().sun, 0);
  renderer.impl.SetUseAmbientOcclusion(false);
  renderer.impl.StartRenderSameCamera(ModeStill);
  renderer.ExpectDone();
  const Picture open = renderer.Screen();
  renderer.impl.SetUseAmbientOcclusion(true);
  renderer.impl.StartRenderSameCamera(ModeStill);
  renderer.ExpectDone();
  EXPECT_NE(renderer.Screen(), open);
}

TEST(FrameEngine, TellsHowFarItIs) {
  Renderer renderer(SmallScene(), 64, 64);
  renderer.Run(ViewFrom(0), ModePreview);
  EXPECT_EQ(renderer.Progress(), (std::vector<float>{0.33f, 0.66f, 1}));
  renderer.Run(ViewFrom(0), ModeStill);
  std::vector<float> progress = renderer.Progress();
  progress.erase(progress.begin(), progress.begin() + 6);
  ASSERT_GT(progress.size(), 6u);
  EXPECT_EQ(progress.back(), 0);
  const std::size_t zeros =
      static_cast<std::size_t>(std::count(progress.begin(), progress.end(), 0.0f));
  for (const float value : progress) EXPECT_TRUE(value >= 0 && value < 1) << value;
  EXPECT_GE(progress.size() - zeros, 9u);

  const std::size_t before = renderer.Progress().size();
  renderer.Run(ViewFrom(0), ModeStill, false);
  EXPECT_EQ(renderer.Progress().size(), before + 3) << "of the antialiasing only if asked for";
}

}  // namespace
}  // namespace qv

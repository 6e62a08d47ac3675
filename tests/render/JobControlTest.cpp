#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <tuple>

#include "Renderer.h"

namespace qv {
namespace {

using test::Picture;
using test::Renderer;
using test::SameView;
using test::SmallScene;
using test::ViewFrom;

Picture PictureOfJob(const RenderCamera& camera, int width, int height) {
  Renderer renderer(SmallScene(), width, height);
  renderer.Run(camera, ModeStill);
  return renderer.Screen();
}

// The number of passes shown of each view, in their order; fails if an old view comes back.
std::vector<int> PassesOfEachView(const std::vector<Renderer::Pass>& passes) {
  std::vector<int> counts;
  for (std::size_t i = 0; i < passes.size(); ++i) {
    if (i == 0 || !SameView(passes[i].camera, passes[i - 1].camera)) counts.push_back(0);
    ++counts.back();
  }
  return counts;
}

TEST(JobControl, GivesUpTheFullPassForANewView) {
  // Asked for when the preview stands: nothing of the old view's full pass is shown.
  Renderer renderer(SmallScene(), 48, 40);
  renderer.onPass = [&](std::size_t count) {
    if (count == 1) renderer.Start(ViewFrom(90), ModeMotion);
  };
  renderer.Run(ViewFrom(0), ModeMotion);
  EXPECT_EQ(PassesOfEachView(renderer.Passes()), (std::vector<int>{1, 3}));
  EXPECT_TRUE(SameView(renderer.Passes()[1].camera, ViewFrom(90)));

  // Asked for when the full pass stands: the antialiasing pass is given up.
  Renderer later(SmallScene(), 48, 40);
  later.onPass = [&](std::size_t count) {
    if (count == 2) later.Start(ViewFrom(90), ModePreview);
  };
  later.Run(ViewFrom(0), ModeMotion);
  EXPECT_EQ(PassesOfEachView(later.Passes()), (std::vector<int>{2, 1}));
}

TEST(JobControl, LeavesAFullPassAtTheNextTile) {
  Renderer renderer(SmallScene(), 900, 600);
  renderer.Run(ViewFrom(0), ModeStill);
  const double whole = renderer.impl.Statistics().basePassSeconds;
  const std::size_t before = renderer.Passes().size();

  renderer.Start(ViewFrom(90), ModeStill);
  while (renderer.impl.State() != RenderState::kRendering) std::this_thread::yield();
  std::this_thread::sleep_for(std::chrono::duration<double>(whole / 10));
  const auto asked = std::chrono::steady_clock::now();
  renderer.impl.StopRender();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - asked;
  EXPECT_LT(taken.count(), whole / 2);
  EXPECT_EQ(renderer.Passes().size(), before) << "nothing of it is shown";

  renderer.Run(ViewFrom(180), ModePreview);
  Renderer fresh(SmallScene(), 900, 600);
  fresh.Run(ViewFrom(180), ModePreview);
  EXPECT_EQ(renderer.Screen(), fresh.Screen()) << "no tile of the old view is left";
}

TEST(JobControl, AlwaysShowsTheLastPassWhileTheSunIsDragged) {
  Renderer renderer(SmallScene(), 48, 40);
  renderer.onPass = [&](std::size_t count) {
    if (count == 2) renderer.Start(ViewFrom(90), ModeSunPreview);
  };
  renderer.Run(ViewFrom(0), ModeSunMotion);
  const auto passes = renderer.Passes();
  EXPECT_EQ(PassesOfEachView(passes), (std::vector<int>{3, 1}));
  // What was not traced of it is black; the pixels off the edges stand.
  int black = 0;
  int same = 0;
  for (std::size_t i = 0; i < passes[2].picture.rgb.size(); i += 3) {
    const bool isBlack = passes[2].picture.rgb[i + 1] == 0;
    black += isBlack ? 1 : 0;
    same += passes[2].picture.rgb[i + 1] == passes[1].picture.rgb[i + 1] ? 1 : 0;
  }
  EXPECT_GT(black, 20);
  EXPECT_GT(same, 48 * 40 / 2);
}

TEST(JobControl, FinishesAFinalJobBeforeTheNext) {
  Renderer renderer(SmallScene(), 48, 40);
  renderer.Start(ViewFrom(0), ModeFinal);
  while (renderer.impl.State() == RenderState::kQueued) std::this_thread::yield();
  renderer.Run(ViewFrom(90), ModePreview);
  const auto passes = renderer.Passes();
  EXPECT_EQ(PassesOfEachView(passes), (std::vector<int>{1, 1}));
  EXPECT_EQ(passes[0].picture, PictureOfJob(ViewFrom(0), 48, 40));
}

TEST(JobControl, LetsTheNewestViewWin) {
  Renderer renderer(SmallScene(), 48, 40);
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&renderer, t] {
      constexpr RenderMode kModes[] = {ModeMotion, ModeSunMotion, ModeStill, ModePreview};
      for (int i = 0; i < 60; ++i) {
        renderer.Start(ViewFrom(t * 90 + i), kModes[(t + i) % 4]);
        if (i % 7 == 0) renderer.impl.SetLightSettings({1, 1, 1, 1, i % 2 == 0});
        if (i % 5 == 0) renderer.impl.Statistics();
        if (i % 3 == 0) renderer.Screen();
        renderer.impl.SetJulianDate(2453980.0 + i);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  renderer.impl.SetLightSettings({});
  renderer.impl.SetJulianDate(2453980.0);
  renderer.Run(ViewFrom(300), ModeStill);
  EXPECT_TRUE(SameView(renderer.impl.PendingCamera(), ViewFrom(300)));
  EXPECT_TRUE(SameView(renderer.impl.ActiveCamera(), ViewFrom(300)));
  Renderer fresh(SmallScene(), 48, 40);
  fresh.impl.SetJulianDate(2453980.0);
  fresh.Run(ViewFrom(300), ModeStill);
  EXPECT_EQ(renderer.Screen(), fresh.Screen());
}

TEST(JobControl, RepeatsTheViewAndKeepsUnitVectors) {
  Renderer renderer(SmallScene(), 48, 40);
  EXPECT_EQ(renderer.impl.State(), RenderState::kNone);
  RenderCamera camera = ViewFrom(10);
  camera.forward *= 5;
  camera.up *= 0.2f;
  renderer.Run(camera, ModeStill);
  EXPECT_NEAR(renderer.impl.PendingCamera().forward.norm(), 1, 1e-6f);
  EXPECT_NEAR(renderer.impl.PendingCamera().up.norm(), 1, 1e-6f);
  const Picture picture = renderer.Screen();
  renderer.impl.StartRenderSameCamera(ModeStill);
  renderer.ExpectDone();
  EXPECT_EQ(renderer.Screen(), picture);
  camera.forward = camera.up = Vec3::Zero();
  renderer.Run(camera, ModeStill);
  EXPECT_EQ(renderer.impl.ActiveCamera().forward, Vec3(0, 0, 0)) << "a zero vector stays";
}

TEST(JobControl, WaitsUntilDoneOrTheTimeIsOver) {
  Renderer renderer(SmallScene(), 500, 400);
  EXPECT_TRUE(renderer.impl.WaitUntilDone(std::nullopt)) << "nothing was ever started";
  renderer.Start(ViewFrom(0), ModeFinal);
  EXPECT_FALSE(renderer.impl.WaitUntilDone(0));
  EXPECT_FALSE(renderer.impl.WaitUntilDone(0.01));
  EXPECT_TRUE(renderer.impl.WaitUntilDone(std::nullopt));
  EXPECT_EQ(renderer.Passes().size(), 1u);
}

TEST(JobControl, StopsAgainAndAgain) {
  Renderer renderer(SmallScene(), 300, 200);
  renderer.impl.StopRender();
  EXPECT_EQ(renderer.impl.State(), RenderState::kNone);
  for (int i = 0; i < 20; ++i) {
    renderer.Start(ViewFrom(i), i % 2 == 0 ? ModeStill : ModeMotion);
    if (i % 3 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(i));
    renderer.impl.StopRender();
    EXPECT_EQ(renderer.impl.State(), RenderState::kIdle);
    renderer.impl.StopRender();
    EXPECT_TRUE(renderer.impl.WaitUntilDone(0));
  }
  renderer.Run(ViewFrom(7), ModeStill);
  EXPECT_EQ(renderer.Screen(), PictureOfJob(ViewFrom(7), 300, 200));
}

TEST(JobControl, StopsWhileTheWindowsGoOn) {
  Renderer renderer(SmallScene(), 500, 400);
  int yields = 0;
  renderer.impl.SetYield([&] {
    ++yields;
    renderer.impl.StopRender();  // a stop within the stop returns at once
  });
  renderer.Start(ViewFrom(0), ModeFinal);
  while (renderer.impl.State() != RenderState::kRendering) std::this_thread::yield();
  renderer.impl.StopRender();
  EXPECT_GT(yields, 0);
  EXPECT_EQ(renderer.impl.State(), RenderState::kIdle);
}

// A key held down moves the view in every yield; the stop still comes to an end, and the view is
// the next job's.
TEST(JobControl, StopsAlthoughEachYieldStartsAJob) {
  for (const RenderMode mode : {ModeFinal, ModeStill}) {
    Renderer renderer(SmallScene(), 200, 150);
    std::atomic<int> yields{0};
    renderer.impl.SetYield([&] { renderer.Start(ViewFrom(++yields), ModeMotion); });
    renderer.Start(ViewFrom(0), mode);
    while (renderer.impl.State() != RenderState::kRendering) std::this_thread::yield();
    renderer.impl.StopRender();
    EXPECT_EQ(renderer.impl.State(), RenderState::kIdle);
    EXPECT_TRUE(renderer.impl.WaitUntilDone(0));
    EXPECT_LT(yields, 1000);
    EXPECT_TRUE(SameView(renderer.impl.PendingCamera(), ViewFrom(yields)));
    renderer.impl.SetYield({});
    renderer.impl.StartRenderSameCamera(ModeStill);
    renderer.ExpectDone();
    EXPECT_TRUE(SameView(renderer.impl.ActiveCamera(), renderer.impl.PendingCamera()));
  }
}

TEST(JobControl, ComposesOnlyWhileIdle) {
  Renderer renderer(SmallScene(), 48, 40);
  renderer.impl.ComposeImage(true);
  // Composing and starting at the same time, from two threads.
  std::atomic<bool> end{false};
  std::thread composer([&] {
    for (int i = 0; !end; ++i) {
      renderer.impl.SetImageSettings({0, 0, i % 2 == 0 ? 1.0f : 2.0f});
      renderer.impl.ComposeImage(true);
    }
  });
  for (int i = 12; i < 20; ++i) renderer.Run(ViewFrom(i), ModeStill);
  end = true;
  composer.join();
  renderer.impl.SetImageSettings({});
  renderer.impl.ComposeImage(true);
  EXPECT_EQ(renderer.Screen(), PictureOfJob(ViewFrom(19), 48, 40));
}

TEST(JobControl, TellsFiguresWhileTheSceneArrives) {
  RaytraceImpl renderer;
  std::thread link([&] {
    SmallScene().SendTo(renderer);
    renderer.BuildScene(nullptr);
  });
  while (renderer.Statistics().triangleCount == 0) std::this_thread::yield();
  link.join();
  EXPECT_EQ(renderer.Statistics().materialCount, 3);
}

TEST(JobControl, RefusesSizesThatItCannotHold) {
  constexpr int kHuge = 1 << 30;
  Renderer renderer(SmallScene(), 48, 40);
  const std::tuple<int, int, int> kSizes[] = {
      {0, 0, 0},          {-5, 10, 0},           {10, 0, 0},
      {kHuge, 1, 0},      {1, kHuge, 0},         {kHuge, 1, 1},
      {kHuge, kHuge, 2},  {(1 << 29) + 1, 1, 2}, {1, (1 << 30) + 2, 1},
      {0x7fffffff, 3, 0}, {300000, 1, 0},        {100000, 1, 2}};
  for (const auto& [width, height, index] : kSizes) {
    EXPECT_FALSE(renderer.impl.ResizeTargets(width, height, index)) << width << ' ' << height;
    renderer.Run(ViewFrom(0), ModeMotion);
    EXPECT_TRUE(renderer.Passes().empty());
    EXPECT_EQ(renderer.Screen(), Picture());
    RayHit hit;
    EXPECT_FALSE(renderer.impl.PickPixel(3, 4, hit));
    renderer.impl.ComposeImage(true);
  }
  EXPECT_TRUE(renderer.impl.ResizeTargets(48, 40, 0));
  renderer.Run(ViewFrom(7), ModeStill);
  EXPECT_EQ(renderer.Screen(), PictureOfJob(ViewFrom(7), 48, 40));
}

TEST(JobControl, EndsInTheMiddleOfAJob) {
  for (int i = 0; i < 4; ++i) {
    Renderer renderer(SmallScene(), 600, 400);
    renderer.Start(ViewFrom(i), i % 2 == 0 ? ModeMotion : ModeFinal);
    if (i >= 2) std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  Renderer renderer(SmallScene(), 60, 40);
  renderer.Start(ViewFrom(0), ModeMotion);
  renderer.impl.Shutdown();
  renderer.impl.Shutdown();
  EXPECT_EQ(renderer.Screen(), Picture());
  EXPECT_EQ(renderer.impl.Statistics().triangleCount, 0);
  renderer.impl.SetJulianDate(2453980.5);
  renderer.Run(ViewFrom(0), ModeMotion);
  EXPECT_FALSE(renderer.impl.CastRay({0, 0, 50}, {0, 0, -1}));
}

}  // namespace
}  // namespace qv

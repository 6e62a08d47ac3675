#include <algorithm>
#include <array>
#include <set>
#include <tuple>

#include "e2e/support/QuartersTest.h"
#include "e2e/support/Settings.h"
#include "e2e/support/Typing.h"

namespace qv::e2e {
namespace {

std::array<int, 4> Numbers(const Area& area) {
  return {area.left, area.top, area.width, area.height};
}

// How much colour a tool has: one that is greyed or faded less.
int ColourOf(const Screenshot& shot, const Point& middle) {
  constexpr int kHalf = 11;
  int sum = 0;
  for (int y = middle.y - kHalf; y < middle.y + kHalf; ++y) {
    for (int x = middle.x - kHalf; x < middle.x + kHalf; ++x) {
      const Colour& c = shot.At(x, y);
      sum += std::max({c.red, c.green, c.blue}) - std::min({c.red, c.green, c.blue});
    }
  }
  return sum;
}

class Frame : public QuartersTest {
 protected:
  // The colours across the border between the upper two quarters, which leans.
  std::size_t BorderColours() {
    std::set<std::tuple<int, int, int>> colours;
    for (int y = area_.top + 40; y < area_.top + area_.height * 2 / 5; ++y) {
      for (int x = area_.left + area_.width / 4; x < area_.left + area_.width * 3 / 4; ++x) {
        const Colour& c = shot_.At(x, y);
        colours.insert({c.red, c.green, c.blue});
      }
    }
    return colours.size();
  }
};

TEST_F(Frame, OffersNothingUntilTheSceneIsComplete) {
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  ASSERT_TRUE(Eventually([&] { return window_->IsActive(); }, kSoon));
  const auto look = [&] {
    const Screenshot shot = window_->Shoot();
    window_->MovePointer(shot.width / 2, shot.height / 2);
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    return window_->Shoot();
  };
  PressWithControl(',');
  const Screenshot loading = look();
  EXPECT_FALSE(ViewerWindow::Exists("Preferences"));
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture());
  const Screenshot complete = look();
  for (const char* tool : {"FlyMode", "AO", "LEM", "Capture", "Reload"}) {
    const auto at = FindTool(complete, FindPicture(complete).top, tool);
    ASSERT_TRUE(at) << tool;
    EXPECT_GT(ColourOf(complete, *at), 1.5 * ColourOf(loading, *at)) << tool;
  }
}

TEST_F(Frame, PreferencesSetTheSamplesOfEdgesAndTheStatistics) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  RenderCamera leaning = QuarterCamera();
  leaning.up = Vec3(0.2f, 0, 1).normalized();
  std::size_t known = FinalPictures();
  ASSERT_TRUE(host_->link().SetCamera(leaning, true));
  ASSERT_TRUE(AwaitFinalPicture(known));
  ASSERT_TRUE(SettlesTo(kQuarters));
  const std::size_t fewSamples = BorderColours();

  known = FinalPictures();
  PressWithControl(',');
  const auto dialog = AwaitDialog("Preferences");
  ASSERT_TRUE(dialog);
  GoToFirstControl();
  PressKey(Key::kEnd);
  PressKey(Key::kTab);
  PressKey(Key::kSpace);
  dialog->ClickOk();
  ASSERT_TRUE(Leaves("Preferences"));
  ASSERT_TRUE(AwaitFinalPicture(known));
  ASSERT_TRUE(SettlesTo(kQuarters));
  EXPECT_GT(BorderColours(), 2 * fewSamples);
  EXPECT_EQ(CountWhite(shot_, {area_.left, area_.top, 300, 30}), 0) << "the statistics are off";

  window_->Close();
  ASSERT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(ReadSetting("/Defaults/Rendering/ShowStatistics"), 0);
  EXPECT_EQ(ReadTextSetting("/Defaults/Rendering/Antialias"), "64x");
}

TEST_F(Frame, ComesBackToItsPlace) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const std::size_t known = FinalPictures();
  window_->Resize(700, 500);
  ASSERT_TRUE(AwaitFinalPicture(known));
  const Area before = window_->Place();
  const auto startAnew = [&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    window_->Close();
    ASSERT_EQ(host_->link().WaitForViewer(kSoon), 0);
    host_.reset();
    ASSERT_NO_FATAL_FAILURE(StartViewer());
  };
  const auto expectBack = [&] {
    Eventually([&] { return Numbers(window_->Place()) == Numbers(before); }, kSoon);
    EXPECT_EQ(Numbers(window_->Place()), Numbers(before));
  };
  // Twice, since a small drift adds up only then.
  for (int run = 0; run < 2; ++run) {
    ASSERT_NO_FATAL_FAILURE(startAnew());
    expectBack();
  }
  // A maximised one comes back as such, and knows where it was before.
  const auto isMaximized = [&] { return window_->Place().width > Display::kWidth - 50; };
  window_->Maximize(true);
  ASSERT_TRUE(Eventually(isMaximized, kSoon));
  for (int run = 0; run < 2; ++run) {
    ASSERT_NO_FATAL_FAILURE(startAnew());
    ASSERT_TRUE(Eventually(isMaximized, kSoon));
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(1000));
  window_->Maximize(false);
  expectBack();
  ASSERT_NO_FATAL_FAILURE(startAnew());
  expectBack();
}

TEST_F(Frame, ShowsTheHostsCameraBehindAnOpenMenu) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  ASSERT_TRUE(window_->OpenMenu());
  // Until nothing of that is left which makes the window look for events.
  std::this_thread::sleep_for(std::chrono::milliseconds(1000));
  const std::size_t known = FinalPictures();
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  EXPECT_TRUE(log_.WaitFor("picture shown: antialiased", known, kSoon));
  window_->CloseMenu();
}

TEST_F(Frame, OutlivesACloseWithADialogOpen) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  PressWithControl(',');
  ASSERT_TRUE(AwaitDialog("Preferences"));
  window_->Close();
  if (ViewerWindow::DialogsHoldClose()) {
    // Nothing of it arrives: what is behind the dialog goes on.
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    const std::size_t known = FinalPictures();
    ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
    EXPECT_TRUE(AwaitFinalPicture(known));
    EXPECT_EQ(host_->closes, 0);
    EXPECT_TRUE(ViewerWindow::Exists("Preferences"));
    PressKey(Key::kEscape);
    ASSERT_TRUE(Leaves("Preferences"));
    window_->Close();
  }
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(host_->closes, 1);
}

}  // namespace
}  // namespace qv::e2e

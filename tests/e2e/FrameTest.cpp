#include <set>
#include <tuple>

#include "e2e/support/QuartersTest.h"
#include "e2e/support/Settings.h"
#include "e2e/support/Typing.h"

namespace qv::e2e {
namespace {

bool IsWhite(const Colour& c) {
  return c.red > 200 && c.green > 200 && c.blue > 200;
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
  int white = 0;
  for (int y = area_.top; y < area_.top + 30; ++y) {
    for (int x = area_.left; x < area_.left + 300; ++x) white += IsWhite(shot_.At(x, y));
  }
  EXPECT_EQ(white, 0) << "the statistics are off";

  window_->Close();
  ASSERT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(ReadSetting("/Defaults/Rendering/ShowStatistics"), 0);
}

TEST_F(Frame, ComesBackToItsPlace) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const std::size_t known = FinalPictures();
  window_->Resize(700, 500);
  ASSERT_TRUE(AwaitFinalPicture(known));
  // Twice, since a small drift adds up only then.
  const Area before = window_->Place();
  for (int run = 0; run < 2; ++run) {
    std::this_thread::sleep_for(std::chrono::milliseconds(500));
    window_->Close();
    ASSERT_EQ(host_->link().WaitForViewer(kSoon), 0);
    host_.reset();
    ASSERT_NO_FATAL_FAILURE(StartViewer());
    Eventually([&] { return window_->Place().left == before.left; }, kSoon);
    const Area after = window_->Place();
    EXPECT_EQ(after.left, before.left);
    EXPECT_EQ(after.top, before.top);
    EXPECT_EQ(after.width, before.width);
    EXPECT_EQ(after.height, before.height);
  }
}

TEST_F(Frame, OutlivesACloseWithADialogOpen) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  PressWithControl(',');
  ASSERT_TRUE(AwaitDialog("Preferences"));
  window_->Close();
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  PressKey(Key::kEscape);
  ASSERT_TRUE(Leaves("Preferences"));
  window_->Close();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(host_->closes, 1);
}

}  // namespace
}  // namespace qv::e2e

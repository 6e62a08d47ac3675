#include <set>

#include "e2e/support/QuartersTest.h"

namespace qv::e2e {
namespace {

class Picture : public QuartersTest {};

TEST_F(Picture, ComesUpUprightFromBaseToAntialiased) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const std::vector<std::string> shown = log_.Lines("picture shown:");
  ASSERT_GE(shown.size(), 2u);
  EXPECT_NE(shown.front().find("picture shown: base"), std::string::npos) << shown.front();
  EXPECT_EQ(LoggedSize(), AreaSize());

  // The statistics stand in small white letters at the top left.
  const int white = CountWhite(shot_, {area_.left, area_.top, 300, 30});
  EXPECT_GT(white, 200);
  EXPECT_LT(white, 4500);
}

TEST_F(Picture, FollowsTheSizeOfTheWindow) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const std::string sizeBefore = LoggedSize();
  const std::size_t shownBefore = log_.Lines("picture shown:").size();
  // As a border that is dragged, faster than a pause that counts as its end, while the picture
  // moves.
  for (int step = 0; step < 10; ++step) {
    window_->Resize(800 + 20 * step, 500 + 20 * step);
    ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  ASSERT_TRUE(Eventually([&] {
    return host_->link().SetCamera(QuarterCamera(), true) && !log_.Lines(" 980x").empty();
  }));
  ASSERT_TRUE(
      Eventually([&] { return LoggedSize() != sizeBefore && window_->Shoot().width == 980; }));
  ASSERT_TRUE(Eventually([&] {
    return SettlesTo(kQuarters) && area_.width == 980 && LoggedSize() == AreaSize();
  })) << AreaSize()
      << " but the log says " << LoggedSize();

  // Not once for each step of a drag, and never before there was anything to be seen.
  const std::vector<std::string> shown = log_.Lines("picture shown:");
  std::set<std::string> sizes;
  for (std::size_t i = shownBefore; i < shown.size(); ++i) sizes.insert(SizeIn(shown[i]));
  sizes.erase(sizeBefore);
  if (ViewerWindow::ResizesAreDrag()) {
    EXPECT_LE(sizes.size(), 2u);
  }
  EXPECT_TRUE(log_.Lines(", 0.000 s").empty()) << log_.Text();
}

TEST_F(Picture, IsTheSameAfterReload) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const Screenshot before = shot_;
  const std::size_t known = FinalPictures();
  ASSERT_NO_FATAL_FAILURE(ClickTool("Reload"));
  ASSERT_TRUE(Eventually([&] { return host_->resends == 1; }));
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture(known));
  ASSERT_TRUE(SettlesTo(kQuarters));

  EXPECT_EQ(DifferentPixels(before), 0);
}

TEST_F(Picture, StandsAgainWhenTheHostSendsItsSceneUnasked) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const std::size_t known = FinalPictures();
  // The renderer is at work when the scene begins to come in.
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture(known));
  EXPECT_TRUE(SettlesTo(kQuarters));
}

TEST_F(Picture, TakesTheCameraOfTheHostOnRequest) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  host_->camera = QuarterCamera();
  host_->camera.position = {-100, 0, 100};  // before the middle of the red quarter
  const std::size_t known = FinalPictures();
  ASSERT_NO_FATAL_FAILURE(ClickTool("syncCamera"));
  ASSERT_TRUE(AwaitFinalPicture(known));
  EXPECT_TRUE(SettlesTo({"red", "red", "red", "red"}));
}

TEST_F(Picture, LinkToTheCameraIsToldAndKept) {
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  EXPECT_EQ(host_->link().IsCameraLinked(), false);
  ASSERT_NO_FATAL_FAILURE(ClickTool("CameraLink"));
  EXPECT_TRUE(Eventually([&] { return host_->link().IsCameraLinked() == true; }));
  window_->Close();
  ASSERT_EQ(host_->link().WaitForViewer(kSoon), 0);

  // The next viewer reads it when its scene is complete.
  host_.reset();
  ASSERT_NO_FATAL_FAILURE(StartViewer());
  EXPECT_EQ(host_->link().IsCameraLinked(), false);
  ASSERT_TRUE(SendQuarters(host_->link()));
  EXPECT_EQ(host_->link().IsCameraLinked(), true);
}

}  // namespace
}  // namespace qv::e2e

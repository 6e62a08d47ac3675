#include <cmath>
#include <initializer_list>

#include "e2e/support/Looks.h"
#include "e2e/support/Scenes.h"
#include "e2e/support/ViewerTest.h"

namespace qv::e2e {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr float kEyeHeight = 70;
constexpr double kDegree = 3.14159265358979 / 180;

// Moves in the yard with real keys and mouse, and reads from the link where that led to.
class Navigation : public ViewerTest {
 protected:
  void ShowYard(float y) {
    ASSERT_NO_FATAL_FAILURE(StartViewer());
    ASSERT_TRUE(SendYard(host_->link()));
    ASSERT_TRUE(host_->link().SetCamera(YardCamera(y), true));
    ASSERT_TRUE(AwaitFinalPicture());
    // What the log tells may be a moment ahead of the screen.
    ASSERT_TRUE(Eventually([&] {
      area_ = FindPicture(window_->Shoot());
      return area_.width > 550 && area_.height > 300;
    }));
  }
  void Link() {
    ASSERT_NO_FATAL_FAILURE(ClickTool("CameraLink"));
    ASSERT_TRUE(Eventually([&] { return host_->link().IsCameraLinked() == true; }));
  }

  // Does what ends one movement, and gives the camera that the host is then told.
  template <class Action>
  RenderCamera CameraAfter(Action&& action) {
    const std::size_t known = host_->Cameras().size();
    action();
    EXPECT_TRUE(Eventually([&] { return host_->Cameras().size() > known; }, kPatience));
    const std::vector<RenderCamera> cameras = host_->Cameras();
    return cameras.empty() ? RenderCamera() : cameras.back();
  }
  RenderCamera HoldKeys(std::initializer_list<HeldKey> keys, milliseconds time) {
    return CameraAfter([&] {
      for (const HeldKey key : keys) window_->KeyDown(key);
      std::this_thread::sleep_for(time);
      for (auto key = std::rbegin(keys); key != std::rend(keys); ++key) window_->KeyUp(*key);
    });
  }
  // From the middle of the picture, with the button held.
  RenderCamera Drag(Button button, int right, int down) {
    const int x = area_.left + area_.width / 2, y = area_.top + area_.height / 2;
    return CameraAfter([&] {
      window_->MovePointer(x, y);
      window_->Press(button);
      for (int step = 1; step <= 10; ++step) {
        window_->MovePointer(x + right * step / 10, y + down * step / 10);
        std::this_thread::sleep_for(milliseconds(10));
      }
      window_->Release(button);
    });
  }
  // That nothing moves any more: an antialiased picture comes, and no camera after it.
  void ExpectRest(std::size_t cameras) {
    const std::size_t known = FinalPictures();
    ASSERT_TRUE(host_->link().SetCamera(YardCamera(0), true));
    EXPECT_TRUE(AwaitFinalPicture(known));
    EXPECT_EQ(host_->Cameras().size(), cameras);
  }

  Area area_;
};

TEST_F(Navigation, WalkerStopsAtAWall) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(150));
  ASSERT_NO_FATAL_FAILURE(Link());
  ASSERT_NO_FATAL_FAILURE(ClickTool("WalkMode"));
  float before = 0, y = 150;
  std::size_t movements = 0;
  do {
    before = y;
    y = HoldKeys({'W'}, milliseconds(600)).position.y();
    ++movements;
  } while (y > before && !HasFailure());
  EXPECT_GT(movements, 1u);
  EXPECT_NEAR(y, kWall - 5, 0.01);
  EXPECT_NEAR(host_->Cameras().back().position.z(), kEyeHeight, 0.01);
  EXPECT_EQ(host_->Cameras().size(), movements);
}

TEST_F(Navigation, WalkerFallsOffALedgeAndLandsAtEyeHeight) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(-80));
  ASSERT_NO_FATAL_FAILURE(Link());
  ASSERT_NO_FATAL_FAILURE(ClickTool("WalkMode"));
  std::size_t movements = 0;
  const auto walkBack = [&](milliseconds time) {
    ++movements;
    return HoldKeys({'S'}, time).position;
  };
  Vec3 eye;
  do {
    eye = walkBack(milliseconds(600));
    if (eye.y() > kLedge) {
      EXPECT_NEAR(eye.z(), kEyeHeight, 0.01);
    }
  } while (eye.y() > kLedge && !HasFailure());
  // Told when the key is let go, in mid-air: the fall takes more than two seconds.
  EXPECT_GT(eye.z(), kLowGround + kEyeHeight + 1);
  EXPECT_LT(eye.z(), kEyeHeight);
  EXPECT_TRUE(Eventually([&] {
    std::this_thread::sleep_for(milliseconds(1000));
    return std::abs(walkBack(milliseconds(50)).z() - (kLowGround + kEyeHeight)) < 0.01;
  }));
  EXPECT_EQ(host_->Cameras().size(), movements);
}

TEST_F(Navigation, OrbitGoesRoundThePivotOfTheHost) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  host_->camera = YardCamera(0);
  ASSERT_NO_FATAL_FAILURE(Link());
  const Vec3 pivot = host_->camera.target;
  // A hundred pixels are eighteen degrees, against the way of the hand.
  const RenderCamera aside = Drag(Button::kMiddle, 100, 0);
  const Vec3 arm = aside.position - pivot;
  EXPECT_NEAR(arm.norm(), 200, 0.05);
  EXPECT_NEAR(std::atan2(arm.x(), -arm.y()) / kDegree, -18, 0.1);
  EXPECT_NEAR(aside.forward.dot(-arm), 200, 0.1);
  const RenderCamera above = Drag(Button::kMiddle, 0, 50);
  EXPECT_NEAR((above.position - pivot).norm(), 200, 0.05);
  EXPECT_NEAR(above.position.z() - pivot.z(), 200 * std::sin(9 * kDegree), 0.3);
  EXPECT_EQ(host_->Cameras().size(), 2u);
}

TEST_F(Navigation, LookTurnsByThePixelsAlsoOutsideTheWindow) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  window_->Resize(500, 400);
  ASSERT_TRUE(Eventually([&] {
    area_ = FindPicture(window_->Shoot());
    return area_.width == 500;
  }));
  const RenderCamera camera = Drag(Button::kRight, 350, 100);
  const double yaw = 350 * 0.18 * kDegree, pitch = 100 * 0.18 * kDegree;
  const Vec3 forward(static_cast<float>(std::sin(yaw) * std::cos(pitch)),
                     static_cast<float>(std::cos(yaw) * std::cos(pitch)),
                     static_cast<float>(-std::sin(pitch)));
  EXPECT_LT((camera.forward - forward).norm(), 0.001f) << camera.forward.transpose();
  EXPECT_LT((camera.position - Vec3(0, 0, kEyeHeight)).norm(), 1e-4f);
  ExpectRest(1);
}

TEST_F(Navigation, WheelGoesToThePointUnderThePointer) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  const int x = area_.left + area_.width / 4, y = area_.top + area_.height / 4;
  const RenderCamera camera = CameraAfter([&] {
    window_->MovePointer(x, y);
    window_->TurnWheel(1);
  });
  // A quarter of the picture's width and height from its middle, on the wall.
  const double half = kWall * std::tan(YardCamera(0).fieldOfView / 2.0);
  const double across = half * area_.width / area_.height;
  const Vec3 point(static_cast<float>(-across / 2), kWall,
                   static_cast<float>(kEyeHeight + half / 2));
  const Vec3 eye = YardCamera(0).position;
  EXPECT_LT((camera.position - (eye + 0.05f * (point - eye))).norm(), 0.1f)
      << camera.position.transpose();
  EXPECT_EQ(host_->Cameras().size(), 1u);
}

TEST_F(Navigation, ShiftBoosts) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  const auto speed = [&](std::initializer_list<HeldKey> keys) {
    const Vec3 start =
        host_->Cameras().empty() ? YardCamera(0).position : host_->Cameras().back().position;
    const auto begin = steady_clock::now();
    const Vec3 end = HoldKeys(keys, milliseconds(1500)).position;
    return (end - start).norm() /
           std::chrono::duration<double>(steady_clock::now() - begin).count();
  };
  EXPECT_LE(speed({'D'}), 50);
  // The boost is 10 after 0.9 seconds: 365 units a second on the average of 1.5 seconds.
  EXPECT_TRUE(Eventually([&] {
    const double boosted = speed({kShift, 'A'});
    EXPECT_LE(boosted, 500);
    return boosted > 150;
  }));
}

TEST_F(Navigation, NothingStaysHeldWhenTheFocusOrAMenuTakesTheKeys) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  CameraAfter([&] {
    window_->KeyDown('D');
    std::this_thread::sleep_for(milliseconds(300));
    EXPECT_TRUE(window_->OpenMenu());
    std::this_thread::sleep_for(milliseconds(200));
    window_->KeyUp('D');
  });
  // The host's camera is shown to its last pass behind the menu.
  ASSERT_NO_FATAL_FAILURE(ExpectRest(1));
  window_->CloseMenu();
  const RenderCamera camera = CameraAfter([&] {
    window_->KeyDown('A');
    std::this_thread::sleep_for(milliseconds(300));
    window_->LoseFocus();
  });
  window_->KeyUp('A');
  EXPECT_LT(camera.position.x(), 0);
  ExpectRest(2);
}

TEST_F(Navigation, TellsNothingWithoutTheLink) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  HoldKeys({'W'}, milliseconds(100));
  const std::size_t known = FinalPictures();
  ASSERT_TRUE(AwaitFinalPicture(known - 1));
  ASSERT_NO_FATAL_FAILURE(ClickTool("CameraLink"));
  ASSERT_TRUE(Eventually([&] { return host_->link().IsCameraLinked() == false; }));
  const std::size_t pictures = log_.Lines("picture shown").size();
  window_->KeyDown('W');
  EXPECT_TRUE(log_.WaitFor("picture shown", pictures));
  window_->KeyUp('W');
  ExpectRest(1);
}

TEST_F(Navigation, ControlAndLeftTellTheHostTheSunTime) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  const int x = area_.left + area_.width / 2, y = area_.top + area_.height / 2;
  window_->MovePointer(x, y);
  window_->Press(Button::kLeft);
  std::this_thread::sleep_for(milliseconds(100));
  // Control comes last: no pointer moves while a key is held, which Wine would let go.
  window_->MovePointer(x + 60, y);
  window_->KeyDown(kControl);
  EXPECT_TRUE(Eventually([&] {
    const auto dates = host_->Dates();
    return !dates.empty() && dates.back().hour * 60 + dates.back().minute > 12 * 60 + 10;
  }));
  window_->KeyUp(kControl);
  window_->Release(Button::kLeft);
  ASSERT_FALSE(host_->Dates().empty());
  const auto date = host_->Dates().front();
  EXPECT_EQ(std::vector<int>({date.year, date.month, date.day}), std::vector<int>({2024, 6, 21}));
}

TEST_F(Navigation, EyeHeightIsSetFromTheStatusBar) {
  ASSERT_NO_FATAL_FAILURE(ShowYard(0));
  ASSERT_NO_FATAL_FAILURE(Link());
  ASSERT_NO_FATAL_FAILURE(ClickTool("WalkMode"));
  const Screenshot shot = window_->Shoot();
  // Keys that come before the small window is up go to the view, which has no use for them.
  ASSERT_TRUE(Eventually([&] {
    window_->Click(shot.width - 200, shot.height - 12);
    std::this_thread::sleep_for(milliseconds(500));
    for (const HeldKey key : {'9', '0', kEnter}) {
      window_->KeyDown(key);
      window_->KeyUp(key);
    }
    const auto isSet = [&] { return host_->FloatProperty("eye_height") == 90.0f; };
    return Eventually(isSet, milliseconds(2000));
  }));
  // The walker rises at once; the host is told of it with the next movement, here none.
  EXPECT_NEAR(Drag(Button::kRight, 0, 0).position.z(), 90, 0.01);
  EXPECT_EQ(host_->Cameras().size(), 1u);
}

}  // namespace
}  // namespace qv::e2e

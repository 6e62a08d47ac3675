#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "e2e/support/Looks.h"
#include "e2e/support/Programs.h"
#include "e2e/support/Typing.h"
#include "e2e/support/ViewerTest.h"
#include "sky/CubeMaps.h"

namespace qv::e2e {
namespace {

std::vector<std::byte> Property(std::int32_t type, std::int32_t cubeMap) {
  const std::int32_t words[] = {type, cubeMap};
  std::vector<std::byte> value(sizeof(words));
  std::memcpy(value.data(), words, sizeof(words));
  return value;
}

// Away from the wall of the quarters.
RenderCamera ViewOfTheBackground() {
  RenderCamera camera = QuarterCamera();
  camera.position = {0, 0, 0};
  camera.forward = {0, -1, 0};
  camera.up = {0, 0, 1};
  camera.fieldOfView = 1.0f;
  return camera;
}

class Background : public ViewerTest {
 protected:
  // The greatest difference between a part of the picture and what the faces have there, of 255:
  // the mean over 16 by 16 pixels, since the picture is antialiased and the faces are not.
  double DifferenceFrom(const sky::CubeFaces& faces) {
    const Screenshot shot = window_->Shoot();
    const double tangent = std::tan(ViewOfTheBackground().fieldOfView / 2);
    double worst = 0;
    // Without the rows of the statistics.
    for (int top = area_.top + 40; top + 16 < area_.top + area_.height; top += 40) {
      for (int left = area_.left + 8; left + 16 < area_.left + area_.width; left += 40) {
        double sum[3] = {0, 0, 0};
        for (int y = top; y < top + 16; ++y) {
          for (int x = left; x < left + 16; ++x) {
            const double right = (2.0 * (x - area_.left) - area_.width) / area_.height * tangent;
            const double up = (area_.height - 2.0 * (y - area_.top)) / area_.height * tangent;
            // To the right of somebody who looks south is west.
            const Vec3 expected =
                faces.Sample({static_cast<float>(-right), -1, static_cast<float>(up)}) * 255;
            const Colour& got = shot.At(x, y);
            sum[0] += got.red - expected.x();
            sum[1] += got.green - expected.y();
            sum[2] += got.blue - expected.z();
          }
        }
        for (const double channel : sum) worst = std::max(worst, std::abs(channel) / 256);
      }
    }
    return worst;
  }

  Area area_;
};

TEST_F(Background, IsThatOfThePropertyAndGoesBackToTheHost) {
  const auto folder = sky::CubeMapFolder(std::filesystem::path(ViewerProgram()).parent_path());
  const auto names = sky::ListCubeMaps(folder);
  ASSERT_GE(names.size(), 2u);
  const auto last = static_cast<std::int32_t>(names.size()) - 1;

  ASSERT_NO_FATAL_FAILURE(StartViewer());
  host_->properties["background"] = Property(8, last);
  ASSERT_TRUE(SendQuarters(host_->link()));
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture());
  Screenshot shot;
  ASSERT_TRUE(Eventually([&] {
    shot = window_->Shoot();
    area_ = FindPicture(shot);
    return area_.width > 0 && area_.height > 0;
  }));
  const std::size_t known = FinalPictures();
  ASSERT_TRUE(host_->link().SetCamera(ViewOfTheBackground(), true));
  ASSERT_TRUE(AwaitFinalPicture(known));
  const sky::CubeFaces faces = sky::LoadCubeMap(folder, names.back());
  double difference = 0;
  EXPECT_TRUE(Eventually([&] { return (difference = DifferenceFrom(faces)) < 12; }, kSoon))
      << difference;

  // The dialog comes up with the mode "Texture"; the next one is "Simulation", with "Fine1".
  host_->properties.clear();
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));
  ASSERT_TRUE(AwaitFinalPicture(known + 1));
  ASSERT_NO_FATAL_FAILURE(ClickTool("Background"));
  const auto dialog = ViewerWindow::Find(kPatience, "Background Settings");
  ASSERT_TRUE(dialog);
  ASSERT_TRUE(Eventually([&] { return dialog->IsActive(); }));
  // The arrow alone chooses as well, but not with Wine's buttons.
  PressKey(Key::kRight);
  PressKey(Key::kSpace);
  PressKey(Key::kEnter);
  ASSERT_TRUE(Eventually([&] { return host_->PropertyValue("background").has_value(); }, kSoon));
  EXPECT_EQ(host_->PropertyValue("background"), Property(1, last));
  ASSERT_TRUE(AwaitFinalPicture(known + 2)) << "the choice brings a new picture";
  window_->Close();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
}

}  // namespace
}  // namespace qv::e2e

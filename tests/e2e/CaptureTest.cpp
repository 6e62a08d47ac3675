#include <FreeImage.h>

#include <filesystem>

#include "e2e/support/QuartersTest.h"
#include "e2e/support/Settings.h"
#include "e2e/support/Typing.h"

namespace qv::e2e {
namespace {

constexpr long kPng = 1;
constexpr long kOwnSize = 1;

class Capture : public QuartersTest {
 protected:
  // What the dialog begins with.
  void Choose(long width, long height) {
    WriteSetting("/CaptureImageDialog/Format", kPng);
    WriteSetting("/CaptureImageDialog/Size", kOwnSize);
    WriteSetting("/CaptureImageDialog/Width", width);
    WriteSetting("/CaptureImageDialog/Height", height);
  }

  // Goes through the dialogs, with a name without an extension.
  void StartCapture() {
    ASSERT_NO_FATAL_FAILURE(ClickTool("Capture"));
    const auto settings = AwaitDialog("Image Settings");
    ASSERT_TRUE(settings);
    settings->ClickOk();
    ASSERT_TRUE(AwaitDialog("Save an image file"));
    TypeText((display_.folder() / "captured").string());
    // The first may only accept what the dialog has proposed while the name was typed.
    for (int i = 0; i < 10 && ViewerWindow::Exists("Save an image file"); ++i) {
      PressKey(Key::kEnter);
      std::this_thread::sleep_for(std::chrono::milliseconds(500));
    }
  }

  Screenshot ReadFile() const {
    Screenshot picture;
    FIBITMAP* read = FreeImage_Load(FIF_PNG, file_.string().c_str());
    if (read == nullptr) return picture;
    FIBITMAP* bitmap = FreeImage_ConvertTo24Bits(read);
    picture.width = static_cast<int>(FreeImage_GetWidth(bitmap));
    picture.height = static_cast<int>(FreeImage_GetHeight(bitmap));
    for (int y = picture.height - 1; y >= 0; --y) {
      const BYTE* at = FreeImage_GetScanLine(bitmap, y);
      for (int x = 0; x < picture.width; ++x, at += 3) {
        picture.pixels.push_back({at[FI_RGBA_RED], at[FI_RGBA_GREEN], at[FI_RGBA_BLUE]});
      }
    }
    FreeImage_Unload(bitmap);
    FreeImage_Unload(read);
    return picture;
  }

  const std::filesystem::path file_ = display_.folder() / "captured.png";
};

TEST_F(Capture, WritesThePictureAndShowsTheViewAsBefore) {
  Choose(322, 201);
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  const Screenshot before = shot_;
  const std::string size = LoggedSize();
  const std::size_t known = FinalPictures();
  ASSERT_NO_FATAL_FAILURE(StartCapture());
  ASSERT_TRUE(log_.WaitFor("image written")) << "by " << file_;
  const Screenshot captured = ReadFile();
  ASSERT_EQ(captured.width, 322);
  ASSERT_EQ(captured.height, 201);
  EXPECT_EQ(QuarterColours(captured, {0, 0, 322, 201}), kQuarters);

  ASSERT_TRUE(AwaitFinalPicture(known));
  ASSERT_TRUE(SettlesTo(kQuarters));
  EXPECT_EQ(LoggedSize(), size);
  EXPECT_EQ(DifferentPixels(before), 0);

  window_->Close();
  ASSERT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_EQ(ReadTextSetting("/Dirs/Capture"), display_.folder().string());
  EXPECT_EQ(ReadTextSetting("/Dirs/CaptureFileName"), file_.string());
}

TEST_F(Capture, ClosedMeanwhileLosesNothing) {
  Choose(6000, 6000);
  ASSERT_NO_FATAL_FAILURE(ShowQuarters());
  ASSERT_NO_FATAL_FAILURE(ClickTool("CameraLink"));
  ASSERT_TRUE(Eventually([&] { return host_->link().IsCameraLinked() == true; }));
  ASSERT_NO_FATAL_FAILURE(StartCapture());
  ASSERT_TRUE(AwaitDialog("Capture an image"));
  EXPECT_EQ(host_->link().IsCameraLinked(), false) << "while the picture is not the view's";
  // The window shows the view, and goes on doing so; the dialog covers a part of it.
  window_->Resize(900, 700);
  EXPECT_TRUE(Eventually(
      [&] {
        shot_ = window_->Shoot();
        area_ = FindPicture(shot_);
        if (shot_.width != 900 || area_.width < 800) return false;
        const std::vector<std::string> shown = QuarterColours(shot_, area_);
        return shown[1] == "green" && shown[2] == "blue" && shown[3] == "yellow";
      },
      kSoon));
  // The host may look somewhere else meanwhile.
  ASSERT_TRUE(host_->link().SetCamera(QuarterCamera(), true));

  window_->Close();
  EXPECT_EQ(host_->link().WaitForViewer(kSoon), 0);
  EXPECT_FALSE(std::filesystem::exists(file_));
  EXPECT_EQ(ReadSetting("/Defaults/CameraLink"), 1);
}

}  // namespace
}  // namespace qv::e2e

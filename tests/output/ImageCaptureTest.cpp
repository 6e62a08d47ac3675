#include <FreeImage.h>
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "output/ImageCapture.h"
#include "render/Renderer.h"
#include "support/ImageFile.h"

namespace qv {
namespace {

using test::Picture;
using test::Renderer;
using test::ScratchPath;
using test::SmallScene;
using test::ViewFrom;
using Outcome = ImageCapture::Outcome;

constexpr int kViewWidth = 48, kViewHeight = 40;
constexpr int kSixteenSamples = 1;

Picture ReadFile(const std::string& path) {
  FIBITMAP* file = FreeImage_Load(FreeImage_GetFileType(path.c_str()), path.c_str());
  if (file == nullptr) return {};
  FIBITMAP* bitmap = FreeImage_ConvertTo24Bits(file);
  Picture picture(static_cast<int>(FreeImage_GetWidth(bitmap)),
                  static_cast<int>(FreeImage_GetHeight(bitmap)), FreeImage_GetPitch(bitmap),
                  FreeImage_GetBits(bitmap));
  FreeImage_Unload(bitmap);
  FreeImage_Unload(file);
  return picture;
}

Outcome Capture(RaytraceImpl& renderer, int width, int height, const std::filesystem::path& file) {
  ImageCapture capture(renderer, {ViewFrom(30), width, height, file}, {});
  EXPECT_TRUE(capture.Start());
  return capture.Finish([] {});
}

// What another renderer shows that has had that size from the start.
Picture Expected(int width, int height, RenderMode mode = ModeFinal) {
  Renderer other(SmallScene(), width, height);
  other.impl.ResizeTargets(width, height, kSixteenSamples);
  other.Run(ViewFrom(30), mode);
  return other.Screen();
}

TEST(ImageCapture, WritesThePictureOfThatSizeAndGivesTheViewBack) {
  Renderer renderer(SmallScene(), kViewWidth, kViewHeight);
  renderer.impl.ResizeTargets(kViewWidth, kViewHeight, kSixteenSamples);
  renderer.Run(ViewFrom(30), ModeStill);
  const std::size_t passes = renderer.Passes().size();
  const std::size_t steps = renderer.Progress().size();
  const std::pair<int, int> sizes[] = {{2, 2}, {61, 43}, {200, 3}};
  for (const char* extension : {".png", ".bmp"}) {
    for (const auto& [width, height] : sizes) {
      const std::string file = ScratchPath(std::to_string(width) + extension);
      ASSERT_EQ(Capture(renderer.impl, width, height, file), Outcome::kSaved);
      EXPECT_EQ(ReadFile(file), Expected(width, height)) << file;
    }
  }
  const std::string lossy = ScratchPath("lossy.jpg");
  ASSERT_EQ(Capture(renderer.impl, 120, 90, lossy), Outcome::kSaved);
  ExpectSamePicture(ReadFile(lossy), Expected(120, 90), 40, 120 * 90 / 50);

  // Any letters of any language will do.
  const std::string plain = ScratchPath("plain.png");
  const auto foreign = std::filesystem::path(plain).parent_path() / u8"\u00e4\u6728 1.png";
  ASSERT_EQ(Capture(renderer.impl, 30, 20, foreign), Outcome::kSaved);
  std::filesystem::rename(foreign, plain);
  EXPECT_EQ(ReadFile(plain), Expected(30, 20));

  EXPECT_EQ(renderer.Passes().size(), passes) << "nobody is told of the capture's pictures";
  EXPECT_EQ(renderer.Progress().size(), steps);
  EXPECT_FALSE(renderer.impl.Offline());
  renderer.Run(ViewFrom(30), ModeStill);
  EXPECT_EQ(renderer.Screen(), Expected(kViewWidth, kViewHeight, ModeStill));
}

TEST(ImageCapture, LeavesNoFileWhereItCannotWrite) {
  Renderer renderer(SmallScene(), kViewWidth, kViewHeight);
  const std::filesystem::path folder =
      std::filesystem::path(ScratchPath("picture")).parent_path() / "folder";
  std::filesystem::create_directories(folder);
  EXPECT_EQ(Capture(renderer.impl, 20, 20, (folder / "picture.xyz").string()),
            Outcome::kUnknownFormat);
  EXPECT_EQ(Capture(renderer.impl, 20, 20, (folder / "picture").string()), Outcome::kUnknownFormat);
  EXPECT_EQ(Capture(renderer.impl, 20, 20, (folder / "missing" / "picture.png").string()),
            Outcome::kNotWritten);
  // A folder of that name cannot be replaced.
  std::filesystem::create_directories(folder / "taken.png" / "full");
  EXPECT_EQ(Capture(renderer.impl, 20, 20, (folder / "taken.png").string()), Outcome::kNotWritten);
  const auto count = std::distance(std::filesystem::directory_iterator(folder), {});
  EXPECT_EQ(count, 1) << "only the folder that was there";
  renderer.Run(ViewFrom(30), ModeFinal);
  EXPECT_EQ(renderer.Screen().width, kViewWidth);
}

TEST(ImageCapture, RefusedMemoryLeavesTheRendererAsItWas) {
  Renderer renderer(SmallScene(), kViewWidth, kViewHeight);
  ImageCapture capture(renderer.impl, {ViewFrom(0), 130000, 130000, ScratchPath("huge.png")}, {});
  EXPECT_FALSE(capture.Start());
  EXPECT_FALSE(renderer.impl.Offline());
  renderer.Run(ViewFrom(0), ModeStill);
  EXPECT_EQ(renderer.Screen().width, kViewWidth);
  EXPECT_FALSE(renderer.Passes().empty());
}

TEST(ImageCapture, CancelLeavesThePassesThatNothingElseLeaves) {
  Renderer renderer(SmallScene(), kViewWidth, kViewHeight);
  const std::string file = ScratchPath("cancelled.png");
  bool told = false;
  {
    // Some minutes of work.
    ImageCapture capture(renderer.impl, {ViewFrom(0), 6000, 6000, file}, [&told] { told = true; });
    ASSERT_TRUE(capture.Start());
    while (capture.Progress() <= 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_LT(capture.Progress(), 0.5f);
    const auto start = std::chrono::steady_clock::now();
    capture.Cancel();
    EXPECT_EQ(capture.Finish([] {}), Outcome::kCancelled);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  }
  EXPECT_TRUE(told);
  EXPECT_FALSE(std::filesystem::exists(file));
  renderer.Run(ViewFrom(30), ModeFinal);
  EXPECT_EQ(renderer.Screen().width, kViewWidth);
  EXPECT_EQ(renderer.impl.JobProgress(), 1.0f);
}

}  // namespace
}  // namespace qv

#include "support/Picture.h"

#include <FreeImage.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace qv::test {
namespace {

void Save(const Picture& picture, const std::string& path) {
  FIBITMAP* bitmap = FreeImage_Allocate(picture.width, picture.height, 24);
  if (bitmap == nullptr) return;
  for (int y = 0; y < picture.height; ++y) {
    BYTE* to = FreeImage_GetScanLine(bitmap, y);
    for (int x = 0; x < picture.width; ++x, to += 3) {
      const std::uint8_t* from = picture.At(x, y);
      to[FI_RGBA_RED] = from[0];
      to[FI_RGBA_GREEN] = from[1];
      to[FI_RGBA_BLUE] = from[2];
    }
  }
  FreeImage_Save(FIF_PNG, bitmap, path.c_str(), 0);
  FreeImage_Unload(bitmap);
}

// The first part of the names of this test's pictures.
std::string PicturePath() {
  const testing::TestInfo* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string name = std::string(test->test_suite_name()) + "." + test->name();
  std::replace(name.begin(), name.end(), '/', '-');
  std::error_code ignored;
  std::filesystem::create_directories(QUORVANE_PICTURES, ignored);
  return std::string(QUORVANE_PICTURES) + "/" + name;
}

}  // namespace

Picture::Picture(int w, int h, std::size_t pitch, const std::uint8_t* bgr) : Picture(w, h) {
  for (int y = 0; y < h; ++y) {
    const std::uint8_t* from = bgr + static_cast<std::size_t>(y) * pitch;
    for (int x = 0; x < w; ++x, from += 3) std::reverse_copy(from, from + 3, At(x, y));
  }
}

void ExpectSamePicture(const Picture& got, const Picture& expected, int tolerance,
                       int mostDifferent) {
  ASSERT_EQ(got.width, expected.width);
  ASSERT_EQ(got.height, expected.height);
  Picture difference(got.width, got.height);
  int different = 0;
  int largest = 0;
  for (std::size_t i = 0; i < got.rgb.size(); i += 3) {
    int step = 0;
    for (std::size_t c = i; c < i + 3; ++c) {
      const int channel = std::abs(got.rgb[c] - expected.rgb[c]);
      difference.rgb[c] = static_cast<std::uint8_t>(std::min(255, channel * 8));
      step = std::max(step, channel);
    }
    if (step > tolerance) ++different;
    largest = std::max(largest, step);
  }
  if (different <= mostDifferent) return;
  const std::string path = PicturePath();
  Save(expected, path + "-expected.png");
  Save(got, path + "-got.png");
  Save(difference, path + "-difference.png");
  ADD_FAILURE() << different << " of " << got.width * got.height << " pixels differ by more than "
                << tolerance << ", the worst by " << largest << "; see " << path << "-*.png";
}

}  // namespace qv::test

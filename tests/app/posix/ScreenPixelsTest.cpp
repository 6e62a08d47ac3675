#include <gtest/gtest.h>

#include <vector>

#include "app/posix/ScreenPixels.h"

namespace qv {
namespace {

TEST(ExpandPicture, TurnsBottomUpTriplesIntoTopDownWords) {
  // 5 by 2 pixels, rows of 15 bytes padded to 16. Each pixel is (10 y + x, 100 + x, 200 + y).
  constexpr int kWidth = 5, kHeight = 2;
  constexpr std::size_t kPitch = 16;
  std::vector<std::uint8_t> in(kPitch * kHeight, 0xEE);
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      std::uint8_t* pixel =
          in.data() + static_cast<std::ptrdiff_t>(kPitch) * y + 3 * static_cast<std::ptrdiff_t>(x);
      pixel[0] = static_cast<std::uint8_t>(10 * y + x);
      pixel[1] = static_cast<std::uint8_t>(100 + x);
      pixel[2] = static_cast<std::uint8_t>(200 + y);
    }
  }
  std::vector<std::uint32_t> out(std::size_t{8} * kHeight, 0);
  ExpandPicture({kWidth, kHeight, kPitch, in.data(), {}},
                reinterpret_cast<std::uint8_t*>(out.data()), 8 * sizeof(std::uint32_t));
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const auto expected = static_cast<std::uint32_t>(0xFF000000 + ((200 + y) << 16) +
                                                       ((100 + x) << 8) + 10 * y + x);
      EXPECT_EQ(out[8 * (kHeight - 1 - y) + x], expected) << x << ' ' << y;
    }
    EXPECT_EQ(out[8 * y + kWidth], 0u) << "behind the row";
  }
}

TEST(ExpandPicture, ReadsNothingBehindTheLastPixel) {
  // Rows without padding, the last one at the end of its memory: for the address sanitizer to see.
  const std::vector<std::uint8_t> in{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
  std::vector<std::uint32_t> out(4, 0);
  ExpandPicture({4, 1, 12, in.data(), {}}, reinterpret_cast<std::uint8_t*>(out.data()), 16);
  EXPECT_EQ(out, (std::vector<std::uint32_t>{0xFF030201, 0xFF060504, 0xFF090807, 0xFF0C0B0A}));
}

}  // namespace
}  // namespace qv

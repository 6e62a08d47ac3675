#include "render/frame/EdgeMask.h"

#include <algorithm>
#include <cstdlib>

namespace qv {
namespace {

constexpr int kVisibleStep = 16;

bool Differ(const std::uint8_t* a, const std::uint8_t* b) {
  return std::abs(a[0] - b[0]) >= kVisibleStep || std::abs(a[1] - b[1]) >= kVisibleStep ||
         std::abs(a[2] - b[2]) >= kVisibleStep;
}

}  // namespace

void EdgeMask::Resize(int width, int height) {
  width_ = width;
  height_ = height;
  words_.assign(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 0);
}

void EdgeMask::Mark(const ScreenImage& screen) {
  constexpr std::uint32_t kMarked = ~0u;
  std::fill(words_.begin(), words_.end(), 0);
  for (int y = 0; y + 1 < height_; ++y) {
    const std::uint8_t* pixel = screen.Row(y);
    const std::uint8_t* above = screen.Row(y + 1);
    for (int x = 0; x + 1 < width_; ++x, pixel += 3, above += 3) {
      const auto markPair = [&](const std::uint8_t* other, int ox, int oy) {
        if (!Differ(pixel, other)) return;
        words_[Index(x, y)] = kMarked;
        words_[Index(ox, oy)] = kMarked;
      };
      markPair(pixel + 3, x + 1, y);
      markPair(above, x, y + 1);
      markPair(above + 3, x + 1, y + 1);
    }
  }
}

bool EdgeMask::AnyIn(int x, int y, int width, int height) const {
  const int right = std::min(x + width, width_);
  const int top = std::min(y + height, height_);
  for (int row = y; row < top; ++row) {
    for (int column = x; column < right; ++column) {
      if (At(column, row)) return true;
    }
  }
  return false;
}

}  // namespace qv

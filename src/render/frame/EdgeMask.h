#pragma once

#include <cstdint>
#include <vector>

#include "render/image/ScreenImage.h"

namespace qv {

// Which pixels of the base picture are worth more samples: one word a pixel, all ones where marked.
class EdgeMask {
 public:
  void Resize(int width, int height);

  // Marks both pixels of each pair of neighbours (right, above, right above) that differs by 16 or
  // more in a channel of the picture that the user sees. The last column and the last row begin no
  // pair.
  void Mark(const ScreenImage& screen);

  bool At(int x, int y) const { return words_[Index(x, y)] != 0; }
  // True if a pixel of the rectangle is marked; clipped at the edges of the picture.
  bool AnyIn(int x, int y, int width, int height) const;
  const std::uint32_t* Row(int y) const { return words_.data() + Index(0, y); }

 private:
  std::size_t Index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) +
           static_cast<std::size_t>(x);
  }

  int width_ = 0;
  int height_ = 0;
  std::vector<std::uint32_t> words_;
};

}  // namespace qv

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>

#include "render/frame/PixelRays.h"

namespace qv {

// A picture of linear red, green, blue floats, bottom row first, and the rays that fill it.
class RenderTarget {
 public:
  RenderTarget() = default;

  // Makes room for a picture; its contents are zero. False if the memory is refused: the target is
  // then empty. The memory is zeroed by the system page by page when it is first touched, so that a
  // large picture of which little is used costs little.
  bool Resize(int width, int height);

  int width() const { return width_; }
  int height() const { return height_; }
  std::size_t pitch() const { return pitch_; }  // bytes
  float* Row(int y) { return reinterpret_cast<float*>(pixels_.get() + Offset(y)); }
  const float* Row(int y) const {
    return reinterpret_cast<const float*>(pixels_.get() + Offset(y));
  }

  PixelRays rays{};
  double passTime = 0;  // seconds of the last pass that was shown; 0 for none in this job

 private:
  struct Free {
    void operator()(std::byte* p) const { std::free(p); }
  };

  std::size_t Offset(int y) const { return static_cast<std::size_t>(y) * pitch_; }

  int width_ = 0;
  int height_ = 0;
  std::size_t pitch_ = 0;
  std::unique_ptr<std::byte, Free> pixels_;
};

}  // namespace qv

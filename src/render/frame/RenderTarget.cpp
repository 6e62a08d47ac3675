#include "render/frame/RenderTarget.h"

#include <limits>

namespace qv {

bool RenderTarget::Resize(int width, int height) {
  constexpr std::size_t kRowAlignment = 16;
  pixels_.reset();
  width_ = height_ = 0;
  pitch_ = 0;
  if (width < 1 || height < 1) return false;
  const std::size_t rowBytes = static_cast<std::size_t>(width) * 3 * sizeof(float);
  const std::size_t pitch = (rowBytes + kRowAlignment - 1) / kRowAlignment * kRowAlignment;
  const auto rows = static_cast<std::size_t>(height);
  if (rows > std::numeric_limits<std::size_t>::max() / pitch) return false;
  pixels_.reset(static_cast<std::byte*>(std::calloc(rows, pitch)));
  if (!pixels_) return false;
  width_ = width;
  height_ = height;
  pitch_ = pitch;
  return true;
}

}  // namespace qv

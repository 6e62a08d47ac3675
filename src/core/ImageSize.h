#pragma once

#include <cstdint>

namespace qv {

// Whether an image file of so many bytes may hold a picture of that size. A header that lies would
// cost gigabytes and minutes before the pixels are missed. The densest usual file is one bit a
// pixel, deflated, which shrinks at most 1032 times (zlib's technical details); small pictures pass
// whatever the file.
inline bool IsPlausibleImage(std::uint64_t width, std::uint64_t height, std::uint64_t fileBytes) {
  constexpr std::uint64_t kSmallPixels = 1 << 20;
  constexpr std::uint64_t kMostPixelsPerByte = std::uint64_t{8} * 1032;
  const std::uint64_t pixels = width * height;
  return pixels <= kSmallPixels || pixels / kMostPixelsPerByte <= fileBytes;
}

}  // namespace qv

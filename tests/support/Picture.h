#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qv::test {

// A picture of red, green, blue bytes, bottom row first, without gaps.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> rgb;

  Picture() = default;
  Picture(int w, int h)
      : width(w), height(h), rgb(static_cast<std::size_t>(w) * static_cast<std::size_t>(h) * 3) {}
  // From rows of blue, green, red bytes, `pitch` bytes apart.
  Picture(int w, int h, std::size_t pitch, const std::uint8_t* bgr);

  std::uint8_t* At(int x, int y) { return rgb.data() + Offset(x, y); }
  const std::uint8_t* At(int x, int y) const { return rgb.data() + Offset(x, y); }
  std::array<int, 3> Color(int x, int y) const { return {At(x, y)[0], At(x, y)[1], At(x, y)[2]}; }
  bool operator==(const Picture&) const = default;

 private:
  std::size_t Offset(int x, int y) const {
    return (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
            static_cast<std::size_t>(x)) *
           3;
  }
};

// Fails unless the pictures have one size and at most `mostDifferent` pixels differ by more than
// `tolerance` in a channel. On failure leaves the test's expected, got and difference pictures side
// by side in the folder `pictures` of the build.
void ExpectSamePicture(const Picture& got, const Picture& expected, int tolerance = 0,
                       int mostDifferent = 0);

}  // namespace qv::test

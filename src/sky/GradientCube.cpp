#include "sky/GradientCube.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace qv::sky {
namespace {

// Red, green, blue as shown.
const Vec3 kZenith(0.208f, 0.404f, 0.737f);
const Vec3 kHorizon(0.867f, 0.918f, 0.957f);
const Vec3 kFarGround(0.729f, 0.729f, 0.698f);
const Vec3 kNearGround(0.525f, 0.518f, 0.486f);

// Sine of the elevations between which the haze hides where the ground ends.
constexpr float kGroundEnd = -0.040f;
constexpr float kSkyStart = 0.006f;

constexpr int kTableSize = 4096;

float SmoothStep(float from, float to, float v) {
  const float t = std::clamp((v - from) / (to - from), 0.0f, 1.0f);
  return t * t * (3 - 2 * t);
}

Vec3 Mix(const Vec3& a, const Vec3& b, float t) {
  return a + (b - a) * t;
}

// Of a number that is not negative.
float Fraction(float v) {
  return v - static_cast<float>(static_cast<int>(v));
}

// Half a step of 8 bits at most, different from pixel to pixel without a pattern that the eye finds
// (interleaved gradient noise; J. Jimenez, SIGGRAPH course on advances in real-time rendering,
// 2014): what would be visible bands becomes fine grain.
float Dither(int column, int row) {
  const float v = 0.06711056f * column + 0.00583715f * row;
  const float w = 52.9829189f * Fraction(v);
  return Fraction(w);
}

// Red, green, blue in bytes, not yet rounded, over the sine of the elevation from -1 to 1. Bare
// numbers, since a sanitizer looks at each use of a vector, of which there would be millions.
using Table = std::array<float, std::size_t{3} * (kTableSize + 1)>;

Table MakeTable() {
  Table table;
  float* out = table.data();
  for (int i = 0; i <= kTableSize; ++i) {
    const Vec3 color = GradientColor(2.0f * i / kTableSize - 1) * 255.0f;
    out = std::copy(color.data(), color.data() + 3, out);
  }
  return table;
}

void FillFace(const Table& table, int face, std::vector<std::uint8_t>& pixels) {
  constexpr int kSize = CubeFaces::kFaceSize;
  pixels.resize(std::size_t{kSize} * kSize * 4);
  std::uint8_t* out = pixels.data();
  for (int row = 0; row < kSize; ++row) {
    for (int column = 0; column < kSize; ++column) {
      const Vec3 direction = CubeFaces::DirectionOf({face, column, row});
      const float sine = direction.z() / direction.norm();
      const float position = (sine + 1) * (0.5f * kTableSize);
      const int index = std::clamp(static_cast<int>(position), 0, kTableSize - 1);
      const float* const below = table.data() + std::ptrdiff_t{3} * index;
      const float* const above = below + 3;
      const float t = position - index;
      const float dither = Dither(column, row);
      for (int axis = 2; axis >= 0; --axis) {
        *out++ = static_cast<std::uint8_t>(below[axis] + (above[axis] - below[axis]) * t + dither);
      }
      *out++ = 255;
    }
  }
}

}  // namespace

Vec3 GradientColor(float sineOfElevation) {
  const float up = std::clamp(sineOfElevation, 0.0f, 1.0f);
  const float down = std::clamp(-sineOfElevation, 0.0f, 1.0f);
  // The path through the air shortens quickly above the horizon, and with it the white of the haze.
  const Vec3 sky = Mix(kZenith, kHorizon, std::exp(-3.2f * up));
  const Vec3 ground = Mix(kNearGround, kFarGround, std::exp(-4.0f * down));
  return Mix(ground, sky, SmoothStep(kGroundEnd, kSkyStart, sineOfElevation));
}

void FillGradientCube(CubeFaces& faces) {
  const Table table = MakeTable();
  FillFace(table, 0, faces.pixels[0]);
  FillFace(table, 4, faces.pixels[4]);
  FillFace(table, 5, faces.pixels[5]);
  // The sky is the same all around, and with it the four upright faces.
  for (std::size_t face : {1, 2, 3}) faces.pixels[face] = faces.pixels[0];
}

}  // namespace qv::sky

#pragma once

#include <cstdint>

#include "core/Vec.h"

namespace qv::cubemaps {

// Evenly spread bits of a number (finalizer of MurmurHash3, A. Appleby).
std::uint32_t Scramble(std::uint32_t v);

// A sequence of even numbers in 0 to 1, the same for the same seed.
class Dice {
 public:
  explicit Dice(std::uint32_t seed) : state_(Scramble(seed + 0x9e3779b9u)) {}
  float Roll();
  float Roll(float from, float to) { return from + (to - from) * Roll(); }

 private:
  std::uint32_t state_;
};

// Gradient noise (K. Perlin, "Improving noise", 2002) of about -0.7 to 0.7, 0 at whole numbers.
float Noise(float x, float y, std::uint32_t seed);
float Noise(const Vec3& p, std::uint32_t seed);

// Sums of noise, each octave twice as fine and half as strong; about -1 to 1.
float Fbm(float x, float y, int octaves, std::uint32_t seed);
float Fbm(const Vec3& p, int octaves, std::uint32_t seed);

// The cells around one point scattered in each unit square (S. Worley, 1996).
struct Cell {
  float nearest;       // distance to the nearest point
  float second;        // and to the one after
  std::uint32_t name;  // of the nearest, for its colour
};
Cell CellAt(float x, float y, std::uint32_t seed);

// 0 below `from`, 1 above `to`, smooth between.
float Step(float from, float to, float v);
inline float Blend(float a, float b, float t) {
  return a + (b - a) * t;
}
inline Vec3 Blend(const Vec3& a, const Vec3& b, float t) {
  return a + (b - a) * t;
}

}  // namespace qv::cubemaps

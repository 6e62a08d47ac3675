#include "Noise.h"

#include <algorithm>
#include <cmath>

namespace qv::cubemaps {
namespace {

constexpr float kUnit = 1.0f / 16777216.0f;

float ShareOf(std::uint32_t bits) {
  return static_cast<float>(bits >> 8) * kUnit;
}

std::uint32_t NameOf(int x, int y, std::uint32_t seed) {
  return Scramble(static_cast<std::uint32_t>(x) * 0x8da6b343u +
                  static_cast<std::uint32_t>(y) * 0xd8163841u + seed * 0xcb1ab31fu);
}

std::uint32_t NameOf(int x, int y, int z, std::uint32_t seed) {
  return Scramble(static_cast<std::uint32_t>(x) * 0x8da6b343u +
                  static_cast<std::uint32_t>(y) * 0xd8163841u +
                  static_cast<std::uint32_t>(z) * 0x165667b1u + seed * 0xcb1ab31fu);
}

// Slope of degree 5, without a bend at the ends.
float Ease(float t) {
  return t * t * t * (t * (t * 6 - 15) + 10);
}

float Slope(std::uint32_t name, float x, float y) {
  constexpr float kSide[8][2] = {{1, 0},     {-1, 0},     {0, 1},      {0, -1},
                                 {.7f, .7f}, {-.7f, .7f}, {.7f, -.7f}, {-.7f, -.7f}};
  const float* side = kSide[name & 7];
  return side[0] * x + side[1] * y;
}

// The twelve edges of a cube, four of them twice.
float Slope(std::uint32_t name, float x, float y, float z) {
  const std::uint32_t edge = name & 15;
  const float u = edge < 8 ? x : y;
  const float v = edge < 4 ? y : edge == 12 || edge == 14 ? x : z;
  return (edge & 1 ? -u : u) + (edge & 2 ? -v : v);
}

}  // namespace

std::uint32_t Scramble(std::uint32_t v) {
  v = (v ^ v >> 16) * 0x85ebca6bu;
  v = (v ^ v >> 13) * 0xc2b2ae35u;
  return v ^ v >> 16;
}

float Dice::Roll() {
  state_ = state_ * 1664525u + 1013904223u;
  return ShareOf(Scramble(state_));
}

float Noise(float x, float y, std::uint32_t seed) {
  const float fx = std::floor(x);
  const float fy = std::floor(y);
  const int ix = static_cast<int>(fx);
  const int iy = static_cast<int>(fy);
  x -= fx;
  y -= fy;
  const float u = Ease(x);
  const float low =
      Blend(Slope(NameOf(ix, iy, seed), x, y), Slope(NameOf(ix + 1, iy, seed), x - 1, y), u);
  const float high = Blend(Slope(NameOf(ix, iy + 1, seed), x, y - 1),
                           Slope(NameOf(ix + 1, iy + 1, seed), x - 1, y - 1), u);
  return Blend(low, high, Ease(y));
}

float Noise(const Vec3& p, std::uint32_t seed) {
  const float fx = std::floor(p.x());
  const float fy = std::floor(p.y());
  const float fz = std::floor(p.z());
  const int ix = static_cast<int>(fx);
  const int iy = static_cast<int>(fy);
  const int iz = static_cast<int>(fz);
  const float x = p.x() - fx;
  const float y = p.y() - fy;
  const float z = p.z() - fz;
  const auto corner = [&](int dx, int dy, int dz) {
    return Slope(NameOf(ix + dx, iy + dy, iz + dz, seed), x - dx, y - dy, z - dz);
  };
  const float u = Ease(x);
  const float v = Ease(y);
  const float low = Blend(Blend(corner(0, 0, 0), corner(1, 0, 0), u),
                          Blend(corner(0, 1, 0), corner(1, 1, 0), u), v);
  const float high = Blend(Blend(corner(0, 0, 1), corner(1, 0, 1), u),
                           Blend(corner(0, 1, 1), corner(1, 1, 1), u), v);
  return 0.7f * Blend(low, high, Ease(z));
}

float Fbm(float x, float y, int octaves, std::uint32_t seed) {
  float sum = 0;
  float strength = 1;
  for (int i = 0; i < octaves; ++i, strength *= 0.5f) {
    sum += strength * Noise(x, y, seed + static_cast<std::uint32_t>(i));
    // Turned, so that the lattices of the octaves do not lie on each other.
    const float turned = 1.6f * x + 1.2f * y;
    y = 1.6f * y - 1.2f * x;
    x = turned;
  }
  return sum;
}

float Fbm(const Vec3& p, int octaves, std::uint32_t seed) {
  float sum = 0;
  float strength = 1;
  Vec3 q = p;
  for (int i = 0; i < octaves; ++i, strength *= 0.5f) {
    sum += strength * Noise(q, seed + static_cast<std::uint32_t>(i));
    q = Vec3(1.6f * q.x() + 1.2f * q.y(), 1.6f * q.y() - 1.2f * q.x(), 2 * q.z() + 7.3f);
  }
  return sum;
}

Cell CellAt(float x, float y, std::uint32_t seed) {
  const int ix = static_cast<int>(std::floor(x));
  const int iy = static_cast<int>(std::floor(y));
  Cell cell{1e9f, 1e9f, 0};
  for (int cy = iy - 1; cy <= iy + 1; ++cy) {
    for (int cx = ix - 1; cx <= ix + 1; ++cx) {
      const std::uint32_t name = NameOf(cx, cy, seed);
      const float dx = static_cast<float>(cx) + ShareOf(name) - x;
      const float dy = static_cast<float>(cy) + ShareOf(Scramble(name)) - y;
      const float distance = dx * dx + dy * dy;
      if (distance < cell.nearest) {
        cell.second = cell.nearest;
        cell.nearest = distance;
        cell.name = name;
      } else {
        cell.second = std::min(cell.second, distance);
      }
    }
  }
  cell.nearest = std::sqrt(cell.nearest);
  cell.second = std::sqrt(cell.second);
  return cell;
}

float Step(float from, float to, float v) {
  const float t = std::clamp((v - from) / (to - from), 0.0f, 1.0f);
  return t * t * (3 - 2 * t);
}

}  // namespace qv::cubemaps

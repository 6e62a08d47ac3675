#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "core/Vec.h"

namespace qv::sky {

// The six pictures around the scene, each kFaceSize by kFaceSize pixels of blue, green, red, alpha
// bytes, top row first, rows without gaps. An empty face shows black. Order and the model direction
// (z up) at each centre: +y, -x, -y, +x, +z, -z.
class CubeFaces {
 public:
  static constexpr int kFaceSize = 1024;

  std::array<std::vector<std::uint8_t>, 6> pixels;

  struct Texel {
    int face;
    int column;
    int row;  // from the top
  };

  // The pixel that a direction of any length falls on: the nearest one below, without filtering. On
  // a tie between x and y the y axis rules, on a tie with z the z axis. The zero vector and NaN
  // give some pixel of the cube.
  static Texel TexelOf(const Vec3& direction);

  // A direction, not of unit length, through the middle of what TexelOf maps to the pixel.
  static Vec3 DirectionOf(const Texel& texel);

  // The direction, not of unit length, to a point of a face: `right` and `down` from its top left
  // corner, in widths of the face.
  static Vec3 DirectionAt(int face, float right, float down);

  // Red, green, blue in 0 to 1.
  Vec3 Sample(const Vec3& direction) const;
};

}  // namespace qv::sky

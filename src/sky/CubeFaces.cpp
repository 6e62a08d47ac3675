#include "sky/CubeFaces.h"

#include <algorithm>
#include <cmath>

namespace qv::sky {
namespace {

constexpr int kFaceFront = 0;  // +y
constexpr int kFaceLeft = 1;   // -x
constexpr int kFaceBack = 2;   // -y
constexpr int kFaceRight = 3;  // +x
constexpr int kFaceUp = 4;     // +z
constexpr int kFaceDown = 5;   // -z

// Distance between the first and the last pixel of a face, in pixels.
constexpr float kSpan = CubeFaces::kFaceSize - 1;

// NaN becomes 0.
float ClampToUnit(float v) {
  if (!(v > 0.0f)) return 0.0f;
  return v < 1.0f ? v : 1.0f;
}

// u runs to the right and v upwards, both 0 to 1 over the face.
CubeFaces::Texel TexelAt(int face, float u, float v) {
  return {face, static_cast<int>(kSpan * ClampToUnit(u)),
          static_cast<int>(kSpan * (1.0f - ClampToUnit(v)))};
}

}  // namespace

CubeFaces::Texel CubeFaces::TexelOf(const Vec3& direction) {
  const float x = direction.x();
  const float y = direction.y();
  const float z = direction.z();
  const float absX = std::abs(x);
  const float absY = std::abs(y);
  const float absZ = std::abs(z);

  if (absX > absY && absX > absZ) {
    const float w = 2 * absX;
    if (x > 0) return TexelAt(kFaceRight, 0.5f - y / w, 0.5f + z / w);
    return TexelAt(kFaceLeft, 0.5f + y / w, 0.5f + z / w);
  }
  if (!(absX > absY) && absY > absZ) {
    const float w = 2 * absY;
    if (y > 0) return TexelAt(kFaceFront, 0.5f + x / w, 0.5f + z / w);
    return TexelAt(kFaceBack, 0.5f - x / w, 0.5f + z / w);
  }
  const float w = 2 * absZ;
  if (z > 0) return TexelAt(kFaceUp, 0.5f + x / w, 0.5f - y / w);
  return TexelAt(kFaceDown, 0.5f + x / w, 0.5f + y / w);
}

Vec3 CubeFaces::DirectionOf(const Texel& texel) {
  // The last column and row are met only by u = 1 and v = 0 exactly.
  const float a = std::min((texel.column + 0.5f) / kSpan, 1.0f) * 2 - 1;
  const float b = 1 - std::min((texel.row + 0.5f) / kSpan, 1.0f) * 2;
  switch (texel.face) {
    case kFaceFront:
      return {a, 1, b};
    case kFaceLeft:
      return {-1, a, b};
    case kFaceBack:
      return {-a, -1, b};
    case kFaceRight:
      return {1, -a, b};
    case kFaceUp:
      return {a, -b, 1};
    default:
      return {a, b, -1};
  }
}

Vec3 CubeFaces::Sample(const Vec3& direction) const {
  const Texel texel = TexelOf(direction);
  const std::vector<std::uint8_t>& face = pixels[static_cast<std::size_t>(texel.face)];
  const std::size_t offset =
      (static_cast<std::size_t>(texel.row) * kFaceSize + static_cast<std::size_t>(texel.column)) *
      4;
  if (offset + 4 > face.size()) return Vec3::Zero();
  const std::uint8_t* pixel = face.data() + offset;
  return Vec3(pixel[2], pixel[1], pixel[0]) / 255.0f;
}

}  // namespace qv::sky

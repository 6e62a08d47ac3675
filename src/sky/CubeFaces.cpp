#include "sky/CubeFaces.h"

#include <algorithm>
#include <array>
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

// Byte values as shares of the brightest.
constexpr std::array<float, 256> kShareOfByte = [] {
  std::array<float, 256> shares{};
  for (int i = 0; i < 256; ++i) shares[i] = static_cast<float>(i) / 255.0f;
  return shares;
}();

// Where a direction meets a face: `right` and `up` from the middle of the face, in half its width
// times `reach`, the longest component.
struct FacePoint {
  int face;
  float right;
  float up;
  float reach;
};

inline FacePoint FacePointOf(float x, float y, float z) {
  const float absX = std::abs(x);
  const float absY = std::abs(y);
  const float absZ = std::abs(z);
  if (absX > absY && absX > absZ) {
    if (x > 0) return {kFaceRight, -y, z, absX};
    return {kFaceLeft, y, z, absX};
  }
  if (!(absX > absY) && absY > absZ) {
    if (y > 0) return {kFaceFront, x, z, absY};
    return {kFaceBack, -x, z, absY};
  }
  if (z > 0) return {kFaceUp, x, -y, absZ};
  return {kFaceDown, x, y, absZ};
}

inline CubeFaces::Texel TexelAt(const Vec3& direction) {
  const FacePoint point = FacePointOf(direction.x(), direction.y(), direction.z());
  const float u = ClampToUnit(0.5f + point.right / (2 * point.reach));
  const float v = ClampToUnit(0.5f + point.up / (2 * point.reach));
  return {point.face, static_cast<int>(kSpan * u), static_cast<int>(kSpan * (1.0f - v))};
}

}  // namespace

CubeFaces::Texel CubeFaces::TexelOf(const Vec3& direction) {
  return TexelAt(direction);
}

Vec3 CubeFaces::DirectionOf(const Texel& texel) {
  // The last column and row are met only by u = 1 and v = 0 exactly.
  return DirectionAt(texel.face, std::min((texel.column + 0.5f) / kSpan, 1.0f),
                     std::min((texel.row + 0.5f) / kSpan, 1.0f));
}

Vec3 CubeFaces::DirectionAt(int face, float right, float down) {
  const float a = right * 2 - 1;
  const float b = 1 - down * 2;
  switch (face) {
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
  const Texel texel = TexelAt(direction);
  const std::vector<std::uint8_t>& face = pixels[static_cast<std::size_t>(texel.face)];
  const std::size_t offset =
      (static_cast<std::size_t>(texel.row) * kFaceSize + static_cast<std::size_t>(texel.column)) *
      4;
  if (offset + 4 > face.size()) return Vec3::Zero();
  const std::uint8_t* pixel = face.data() + offset;
  return {kShareOfByte[pixel[2]], kShareOfByte[pixel[1]], kShareOfByte[pixel[0]]};
}

}  // namespace qv::sky

#include "render/trace/CubeLookup.h"

#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/trace/CubeLookup.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace qv {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::CappedTag<float, 16>;
using Ints = hn::RebindToSigned<Floats>;
using V = hn::Vec<Floats>;
using I = hn::Vec<Ints>;
using M = hn::Mask<Floats>;

HWY_INLINE V ClampToUnit(V v) {
  const Floats d;
  const V zero = hn::Zero(d);
  const V one = hn::Set(d, 1.0f);
  // Comparisons, so that NaN becomes 0.
  return hn::IfThenElse(hn::Gt(v, zero), hn::IfThenElse(hn::Lt(v, one), v, one), zero);
}

// `yes` where the axis value is above 0, else `no`.
HWY_INLINE I BySign(V axis, int yes, int no) {
  const Ints di;
  return hn::IfThenElse(hn::RebindMask(di, hn::Gt(axis, hn::Zero(Floats()))), hn::Set(di, yes),
                        hn::Set(di, no));
}

HWY_INLINE V NegatedUnless(V axis, V value) {
  return hn::IfThenElse(hn::Gt(axis, hn::Zero(Floats())), value, hn::Neg(value));
}

// Face and byte offset in it, by the rules of CubeFaces::TexelOf, operation for operation.
void CubeTexels(const LaneFloats (&direction)[3], LaneInts& face, LaneInts& offset) {
  const Floats d;
  const Ints di;
  const V half = hn::Set(d, 0.5f);
  const V span = hn::Set(d, static_cast<float>(sky::CubeFaces::kFaceSize - 1));
  for (int i = 0; i < kLanes; i += static_cast<int>(hn::Lanes(d))) {
    const V x = hn::Load(d, direction[0] + i);
    const V y = hn::Load(d, direction[1] + i);
    const V z = hn::Load(d, direction[2] + i);
    const V absX = hn::Abs(x);
    const V absY = hn::Abs(y);
    const V absZ = hn::Abs(z);
    const M xRules = hn::And(hn::Gt(absX, absY), hn::Gt(absX, absZ));
    const M yRules = hn::AndNot(hn::Gt(absX, absY), hn::Gt(absY, absZ));

    const V right = hn::IfThenElse(xRules, NegatedUnless(x, hn::Neg(y)),
                                   hn::IfThenElse(yRules, NegatedUnless(y, x), x));
    const V up = hn::IfThenElse(hn::Or(xRules, yRules), z, NegatedUnless(z, hn::Neg(y)));
    const V reach = hn::IfThenElse(xRules, absX, hn::IfThenElse(yRules, absY, absZ));
    const I faceOf = hn::IfThenElse(
        hn::RebindMask(di, xRules), BySign(x, 3, 1),
        hn::IfThenElse(hn::RebindMask(di, yRules), BySign(y, 0, 2), BySign(z, 4, 5)));

    const V width = hn::Add(reach, reach);
    const V u = ClampToUnit(hn::Add(half, hn::Div(right, width)));
    const V v = ClampToUnit(hn::Add(half, hn::Div(up, width)));
    const I column = hn::ConvertTo(di, hn::Mul(span, u));
    const I row = hn::ConvertTo(di, hn::Mul(span, hn::Sub(hn::Set(d, 1.0f), v)));
    constexpr int kRowShift = 10;
    static_assert(sky::CubeFaces::kFaceSize == 1 << kRowShift);
    hn::Store(faceOf, di, face + i);
    hn::Store(hn::ShiftLeft<2>(hn::Add(hn::ShiftLeft<kRowShift>(row), column)), di, offset + i);
  }
}

// Blue, green and red of a pixel from its low byte up, as shares of the brightest.
void PixelColours(const LaneInts& pixel, LaneFloats (&out)[3]) {
  const Floats d;
  const Ints di;
  const V brightest = hn::Set(d, 255.0f);
  const I byte = hn::Set(di, 255);
  for (int i = 0; i < kLanes; i += static_cast<int>(hn::Lanes(d))) {
    const I word = hn::Load(di, pixel + i);
    const I channel[3] = {hn::And(hn::ShiftRight<16>(word), byte),
                          hn::And(hn::ShiftRight<8>(word), byte), hn::And(word, byte)};
    for (int c = 0; c < 3; ++c) {
      hn::Store(hn::Div(hn::ConvertTo(d, channel[c]), brightest), d, out[c] + i);
    }
  }
}

}  // namespace HWY_NAMESPACE
}  // namespace qv
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace qv {
namespace {

HWY_EXPORT(CubeTexels);
HWY_EXPORT(PixelColours);

}  // namespace

void SampleCube(const sky::CubeFaces& faces, const LaneFloats (&direction)[3], const LaneInts& mask,
                LaneFloats (&out)[3]) {
  alignas(64) LaneInts face;
  alignas(64) LaneInts offset;
  HWY_DYNAMIC_DISPATCH(CubeTexels)(direction, face, offset);
  alignas(64) LaneInts pixel;
  for (int lane = 0; lane < kLanes; ++lane) {
    pixel[lane] = 0;
    if (mask[lane] < 0) continue;
    const auto& pixels = faces.pixels[static_cast<std::size_t>(face[lane])];
    const auto first = static_cast<std::size_t>(offset[lane]);
    if (first + 4 <= pixels.size()) std::memcpy(&pixel[lane], pixels.data() + first, 4);
  }
  HWY_DYNAMIC_DISPATCH(PixelColours)(pixel, out);
}

}  // namespace qv
#endif  // HWY_ONCE

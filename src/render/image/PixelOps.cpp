#include "render/image/PixelOps.h"

#include <algorithm>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/image/PixelOps.cpp"
#include <hwy/foreach_target.h>
// It comes before whatever is compiled for each target.
#include <hwy/contrib/math/math-inl.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace qv {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using Floats = hn::ScalableTag<float>;
using Ints = hn::RebindToSigned<Floats>;
using Bytes = hn::Rebind<std::uint8_t, Floats>;
using V = hn::Vec<Floats>;
using I = hn::Vec<Ints>;

// Calls `convert` on whole vectors, the last one filled up with zeros.
template <class Convert>
HWY_INLINE void ForRow(const float* in, std::size_t count, std::uint8_t* out,
                       const Convert& convert) {
  const Floats d;
  const Bytes db;
  const std::size_t n = hn::Lanes(d);
  std::size_t i = 0;
  for (; i + n <= count; i += n)
    hn::StoreU(hn::U8FromU32(convert(hn::LoadU(d, in + i))), db, out + i);
  if (i == count) return;
  HWY_ALIGN float rest[hn::MaxLanes(d)] = {};
  HWY_ALIGN std::uint8_t bytes[hn::MaxLanes(d)];
  for (std::size_t k = i; k < count; ++k) rest[k - i] = in[k];
  hn::StoreU(hn::U8FromU32(convert(hn::Load(d, rest))), db, bytes);
  for (std::size_t k = i; k < count; ++k) out[k] = bytes[k - i];
}

HWY_INLINE V BrightnessAndContrast(V c, float scale, float offset) {
  const Floats d;
  const V half = hn::Set(d, 0.5f);
  return hn::Add(hn::Add(hn::Mul(hn::Sub(c, half), hn::Set(d, scale)), half), hn::Set(d, offset));
}

void AdjustLinear(const float* in, std::size_t count, float scale, float offset,
                  std::uint8_t* out) {
  const Floats d;
  const V full = hn::Set(d, 255.0f);
  ForRow(in, count, out, [&](V c) HWY_ATTR {
    const V w = hn::Mul(BrightnessAndContrast(c, scale, offset), full);
    // Comparisons, so that NaN becomes 0.
    const V limited =
        hn::IfThenElseZero(hn::Gt(w, hn::Zero(d)), hn::IfThenElse(hn::Lt(w, full), w, full));
    return hn::BitCast(hn::RebindToUnsigned<Ints>(), hn::ConvertTo(Ints(), limited));
  });
}

void AdjustByTable(const float* in, std::size_t count, float scale, float offset,
                   const ByteTable& table, std::uint8_t* out) {
  using Words = hn::RebindToUnsigned<Ints>;
  const Floats d;
  const Words du;
  const V low = hn::Set(d, table.low);
  const V high = hn::Set(d, table.high);
  const auto firstCell = hn::Set(du, table.firstCell);
  const auto within = hn::Set(du, (1u << table.shift) - 1);
  ForRow(in, count, out, [&](V c) HWY_ATTR {
    const V v = BrightnessAndContrast(c, scale, offset);
    // Comparisons, so that NaN becomes 0.
    const auto reached = hn::Ge(v, low);
    const V limited = hn::IfThenElse(reached, hn::IfThenElse(hn::Lt(v, high), v, high), low);
    const auto bits = hn::BitCast(du, limited);
    const auto cell = hn::Sub(hn::ShiftRightSame(bits, table.shift), firstCell);
    const auto entry = hn::GatherIndex(du, table.cells.data(), hn::BitCast(Ints(), cell));
    const auto byte = hn::ShiftRight<24>(hn::Add(entry, hn::And(bits, within)));
    return hn::IfThenElseZero(hn::RebindMask(du, reached), byte);
  });
}

void AdjustByPower(const float* in, std::size_t count, float scale, float offset, float exponent,
                   float* out) {
  const hn::ScalableTag<double> d;
  const hn::Rebind<float, decltype(d)> df;
  const std::size_t n = hn::Lanes(d);
  const auto power = hn::Set(d, static_cast<double>(exponent));
  const auto zero = hn::Zero(df);
  // Above 1 every power is limited to 1, and the logarithm of nothing is never used.
  const auto raise = [&](auto c) HWY_ATTR {
    const auto half = hn::Set(df, 0.5f);
    const auto v =
        hn::Add(hn::Add(hn::Mul(hn::Sub(c, half), hn::Set(df, scale)), half), hn::Set(df, offset));
    const auto base = hn::Min(hn::Max(v, hn::Set(df, 1e-37f)), hn::Set(df, 1.0f));
    const auto raised = hn::Exp(d, hn::Mul(power, hn::Log(d, hn::PromoteTo(d, base))));
    const auto w = hn::Mul(hn::DemoteTo(df, raised), hn::Set(df, 255.0f));
    // Comparisons that are false for NaN.
    return hn::IfThenElse(hn::Gt(v, zero), w, hn::IfThenElse(hn::Eq(v, zero), zero, hn::NaN(df)));
  };
  std::size_t i = 0;
  for (; i + n <= count; i += n) hn::StoreU(raise(hn::LoadU(df, in + i)), df, out + i);
  if (i == count) return;
  HWY_ALIGN float rest[hn::MaxLanes(df)] = {};
  std::copy(in + i, in + count, rest);
  hn::Store(raise(hn::Load(df, rest)), df, rest);
  std::copy_n(rest, count - i, out + i);
}

void SwapRedAndBlue(std::uint8_t* row, std::size_t pixels) {
  const hn::ScalableTag<std::uint8_t> d;
  const std::size_t n = hn::Lanes(d);
  std::size_t i = 0;
  for (; i + n <= pixels; i += n) {
    hn::Vec<decltype(d)> first, second, third;
    hn::LoadInterleaved3(d, row + 3 * i, first, second, third);
    hn::StoreInterleaved3(third, second, first, d, row + 3 * i);
  }
  for (; i < pixels; ++i) std::swap(row[3 * i], row[3 * i + 2]);
}

void TakeLowBytes(const float* in, std::size_t count, std::uint8_t* out) {
  const Floats d;
  const V limit = hn::Set(d, 2147483648.0f);
  ForRow(in, count, out, [&](V c) HWY_ATTR {
    const V v = hn::Mul(c, hn::Set(d, 255.0f));
    const V whole = hn::IfThenElseZero(hn::Lt(hn::Abs(v), limit), v);
    const I low = hn::And(hn::ConvertTo(Ints(), whole), hn::Set(Ints(), 0xff));
    return hn::BitCast(hn::RebindToUnsigned<Ints>(), low);
  });
}

}  // namespace HWY_NAMESPACE
}  // namespace qv
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace qv {

HWY_EXPORT(AdjustLinear);
HWY_EXPORT(TakeLowBytes);
HWY_EXPORT(AdjustByTable);
HWY_EXPORT(AdjustByPower);
HWY_EXPORT(SwapRedAndBlue);

void AdjustLinear(const float* in, std::size_t count, float scale, float offset,
                  std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(AdjustLinear)(in, count, scale, offset, out);
}

void AdjustByTable(const float* in, std::size_t count, float scale, float offset,
                   const ByteTable& table, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(AdjustByTable)(in, count, scale, offset, table, out);
}

void AdjustByPower(const float* in, std::size_t count, float scale, float offset, float exponent,
                   float* out) {
  HWY_DYNAMIC_DISPATCH(AdjustByPower)(in, count, scale, offset, exponent, out);
}

void SwapRedAndBlue(std::uint8_t* row, std::size_t pixels) {
  HWY_DYNAMIC_DISPATCH(SwapRedAndBlue)(row, pixels);
}

void TakeLowBytes(const float* in, std::size_t count, std::uint8_t* out) {
  HWY_DYNAMIC_DISPATCH(TakeLowBytes)(in, count, out);
}

}  // namespace qv
#endif  // HWY_ONCE

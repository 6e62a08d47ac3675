#include "render/trace/VectorOps.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/trace/VectorOps.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace qv {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

// At most 16 lanes at a time, so that every instruction set divides the 64 lanes evenly.
using Floats = hn::CappedTag<float, 16>;
using Ints = hn::RebindToSigned<Floats>;
using V = hn::Vec<Floats>;
using M = hn::Mask<Floats>;

struct V3 {
  V x, y, z;
};

HWY_INLINE V3 Load3(const LaneFloats (&v)[3], int i) {
  const Floats d;
  return {hn::Load(d, v[0] + i), hn::Load(d, v[1] + i), hn::Load(d, v[2] + i)};
}

HWY_INLINE void Store3(const V3& v, LaneFloats (&out)[3], int i) {
  const Floats d;
  hn::Store(v.x, d, out[0] + i);
  hn::Store(v.y, d, out[1] + i);
  hn::Store(v.z, d, out[2] + i);
}

HWY_INLINE V3 Splat3(const float (&v)[3]) {
  const Floats d;
  return {hn::Set(d, v[0]), hn::Set(d, v[1]), hn::Set(d, v[2])};
}

HWY_INLINE V3 Sub(const V3& a, const V3& b) {
  return {hn::Sub(a.x, b.x), hn::Sub(a.y, b.y), hn::Sub(a.z, b.z)};
}

HWY_INLINE V3 Scale(const V3& a, V s) {
  return {hn::Mul(a.x, s), hn::Mul(a.y, s), hn::Mul(a.z, s)};
}

HWY_INLINE V3 Select(M mask, const V3& yes, const V3& no) {
  return {hn::IfThenElse(mask, yes.x, no.x), hn::IfThenElse(mask, yes.y, no.y),
          hn::IfThenElse(mask, yes.z, no.z)};
}

// Sums in the order x, y, z without fused operations: the same bits on every instruction set.
HWY_INLINE V Dot(const V3& a, const V3& b) {
  return hn::Add(hn::Add(hn::Mul(a.x, b.x), hn::Mul(a.y, b.y)), hn::Mul(a.z, b.z));
}

HWY_INLINE M Active(const LaneInts& mask, int i) {
  const Ints di;
  return hn::RebindMask(Floats(), hn::Gt(hn::Load(di, mask + i), hn::Set(di, -1)));
}

template <class Body>
HWY_INLINE void ForLanes(const Body& body) {
  const Floats d;
  for (int i = 0; i < kLanes; i += static_cast<int>(hn::Lanes(d))) body(i);
}

void TileDirections(const PixelRays& rays, int x, int y, LaneFloats (&direction)[3]) {
  const Floats d;
  const Ints di;
  ForLanes([&](int i) HWY_ATTR {
    const auto lane = hn::Iota(di, i);
    const V column =
        hn::ConvertTo(d, hn::Add(hn::And(lane, hn::Set(di, kTileSide - 1)), hn::Set(di, x)));
    const V row = hn::ConvertTo(d, hn::Add(hn::ShiftRight<3>(lane), hn::Set(di, y)));
    for (int axis = 0; axis < 3; ++axis) {
      const V across = hn::Add(hn::Set(d, rays.corner[axis]),
                               hn::Mul(column, hn::Set(d, rays.columnStep[axis])));
      hn::Store(hn::Add(across, hn::Mul(row, hn::Set(d, rays.rowStep[axis]))), d,
                direction[axis] + i);
    }
  });
}

void StoreTile(const LaneFloats (&color)[3], float* rows, std::size_t stride) {
  const hn::CappedTag<float, kTileSide> d;
  const auto width = static_cast<int>(hn::Lanes(d));
  for (int y = 0; y < kTileSide; ++y, rows += stride) {
    for (int x = 0; x < kTileSide; x += width) {
      const int lane = y * kTileSide + x;
      hn::StoreInterleaved3(hn::Load(d, color[0] + lane), hn::Load(d, color[1] + lane),
                            hn::Load(d, color[2] + lane), d, rows + std::ptrdiff_t{3} * x);
    }
  }
}

void NormaliseDirections(LaneFloats (&v)[3]) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    const V3 a = Load3(v, i);
    const V length = hn::Sqrt(Dot(a, a));
    const M shortVector = hn::Lt(length, hn::Set(d, 1e-10f));
    const V3 up{hn::Zero(d), hn::Zero(d), hn::Set(d, 1.0f)};
    const V3 unit{hn::Div(a.x, length), hn::Div(a.y, length), hn::Div(a.z, length)};
    Store3(Select(shortVector, up, unit), v, i);
  });
}

void StartPrimaryRays(const PixelRays& rays, int x, int y, RayPacket& packet) {
  const Floats d;
  const Ints di;
  const V3 eye = Splat3(rays.eye);
  const V one = hn::Set(d, 1.0f);
  HWY_NAMESPACE::TileDirections(rays, x, y, packet.direction);
  HWY_NAMESPACE::NormaliseDirections(packet.direction);
  ForLanes([&](int i) HWY_ATTR {
    Store3({hn::Zero(d), hn::Zero(d), hn::Zero(d)}, packet.color, i);
    Store3(eye, packet.position, i);
    hn::Store(hn::Zero(d), d, packet.distance + i);
    hn::Store(one, d, packet.throughput + i);
    hn::Store(one, d, packet.iorTo + i);
    hn::Store(hn::Set(d, kUnlimited), d, packet.t + i);
    hn::Store(hn::Zero(di), di, packet.geometry + i);
  });
}

void NormaliseNormals(LaneFloats (&v)[3], const LaneInts& mask) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    const V3 a = Load3(v, i);
    const V s = Dot(a, a);
    const V r = hn::ApproximateReciprocalSqrt(s);
    const V cubed = hn::Mul(hn::Mul(r, r), r);
    const V factor =
        hn::Sub(hn::Mul(hn::Set(d, 1.5f), r), hn::Mul(hn::Mul(hn::Set(d, 0.5f), s), cubed));
    Store3(Select(Active(mask, i), Scale(a, factor), a), v, i);
  });
}

void DotProducts(const LaneFloats (&a)[3], const LaneFloats (&b)[3], const LaneInts& mask,
                 LaneFloats& out) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    hn::Store(hn::IfThenElseZero(Active(mask, i), Dot(Load3(a, i), Load3(b, i))), d, out + i);
  });
}

void Reflect(const LaneFloats (&dir)[3], const LaneFloats (&n)[3], const LaneInts& mask,
             LaneFloats (&out)[3]) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    const V3 a = Load3(dir, i);
    const V3 normal = Load3(n, i);
    const V3 mirrored = Sub(a, Scale(normal, hn::Mul(hn::Set(d, 2.0f), Dot(a, normal))));
    Store3(Select(Active(mask, i), mirrored, Load3(out, i)), out, i);
  });
}

void LightVectors(const float (&origin)[3], const LaneFloats (&position)[3],
                  const LaneFloats (&normal)[3], const LaneFloats& incidence, LaneInts& mask,
                  LaneFloats (&out)[3], LaneFloats& cosine) {
  constexpr float kGrazing = 0.0017453292f;  // a tenth of a degree
  const Floats d;
  const Ints di;
  const V3 from = Splat3(origin);
  ForLanes([&](int i) HWY_ATTR {
    const V3 toSurface = Sub(Load3(position, i), from);
    V c = Dot(Load3(normal, i), toSurface);
    c = hn::IfThenZeroElse(hn::Lt(hn::Abs(c), hn::Set(d, kGrazing)), c);
    const M lit =
        hn::And(Active(mask, i), hn::Gt(hn::Mul(hn::Load(d, incidence + i), c), hn::Zero(d)));
    const V3 zero{hn::Zero(d), hn::Zero(d), hn::Zero(d)};
    Store3(Select(lit, toSurface, zero), out, i);
    hn::Store(hn::IfThenElseZero(lit, hn::Abs(c)), d, cosine + i);
    const auto old = hn::Load(di, mask + i);
    hn::Store(hn::IfThenElse(hn::RebindMask(di, lit), old, hn::Set(di, -1)), di, mask + i);
  });
}

void DirectionalLightVectors(const float (&toLight)[3], const LaneFloats (&normal)[3],
                             LaneInts& mask, LaneFloats (&out)[3], LaneFloats& cosine) {
  const Floats d;
  const Ints di;
  const V3 light = Splat3(toLight);
  ForLanes([&](int i) HWY_ATTR {
    const V c = Dot(light, Load3(normal, i));
    const M lit = hn::And(Active(mask, i), hn::Gt(c, hn::Zero(d)));
    Store3(light, out, i);
    hn::Store(hn::IfThenElseZero(lit, c), d, cosine + i);
    const auto old = hn::Load(di, mask + i);
    hn::Store(hn::IfThenElse(hn::RebindMask(di, lit), old, hn::Set(di, -1)), di, mask + i);
  });
}

void AddScaled(LaneFloats (&color)[3], const LaneInts& mask, float factor, const LaneFloats& weight,
               const LaneFloats (&a)[3], const float (&tint)[3]) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    const V w =
        hn::IfThenElseZero(Active(mask, i), hn::Mul(hn::Set(d, factor), hn::Load(d, weight + i)));
    for (int c = 0; c < 3; ++c) {
      const V term = hn::Mul(hn::Mul(w, hn::Load(d, a[c] + i)), hn::Set(d, tint[c]));
      const V sum = hn::Add(hn::Load(d, color[c] + i), term);
      hn::Store(hn::IfThenElse(Active(mask, i), sum, hn::Load(d, color[c] + i)), d, color[c] + i);
    }
  });
}

void Products(const LaneFloats& a, const LaneFloats& b, const LaneInts& mask, LaneFloats& out) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    const V product = hn::Mul(hn::Load(d, a + i), hn::Load(d, b + i));
    hn::Store(hn::IfThenElseZero(Active(mask, i), product), d, out + i);
  });
}

void AddProducts(LaneFloats (&color)[3], const LaneInts& mask, const LaneFloats& weight,
                 const LaneFloats (&a)[3], const LaneFloats (&b)[3]) {
  const Floats d;
  ForLanes([&](int i) HWY_ATTR {
    const M active = Active(mask, i);
    const V w = hn::Load(d, weight + i);
    for (int c = 0; c < 3; ++c) {
      const V term = hn::Mul(hn::Mul(w, hn::Load(d, a[c] + i)), hn::Load(d, b[c] + i));
      const V old = hn::Load(d, color[c] + i);
      hn::Store(hn::IfThenElse(active, hn::Add(old, term), old), d, color[c] + i);
    }
  });
}

// The rotation matrix from +z to n, with k = 1 / (1 + n.z):
// (1 - k x x, -k x y, x), (-k x y, 1 - k y y, y), (-x, -y, z).
void RotateFromUp(const float (&v)[3], const LaneFloats (&normal)[3], const LaneInts& mask,
                  LaneFloats (&out)[3]) {
  constexpr float kOpposite = 1e-6f;
  const Floats d;
  const V3 a = Splat3(v);
  const V one = hn::Set(d, 1.0f);
  ForLanes([&](int i) HWY_ATTR {
    const V3 n = Load3(normal, i);
    const V denominator = hn::Add(one, n.z);
    const M opposite = hn::Lt(denominator, hn::Set(d, kOpposite));
    const V k = hn::Div(one, denominator);
    const V along = hn::Mul(k, hn::Add(hn::Mul(n.x, a.x), hn::Mul(n.y, a.y)));
    const V3 turned{hn::Add(hn::Sub(a.x, hn::Mul(along, n.x)), hn::Mul(n.x, a.z)),
                    hn::Add(hn::Sub(a.y, hn::Mul(along, n.y)), hn::Mul(n.y, a.z)),
                    hn::Sub(hn::Mul(n.z, a.z), hn::Add(hn::Mul(n.x, a.x), hn::Mul(n.y, a.y)))};
    const V3 half{a.x, hn::Neg(a.y), hn::Neg(a.z)};
    Store3(Select(Active(mask, i), Select(opposite, half, turned), Load3(out, i)), out, i);
  });
}

bool AnyActive(const LaneInts& mask) {
  const Ints di;
  auto all = hn::Set(di, -1);
  ForLanes([&](int i) HWY_ATTR { all = hn::And(all, hn::Load(di, mask + i)); });
  return !hn::AllTrue(di, hn::Lt(all, hn::Zero(di)));
}

const char* VectorInstructionSet() {
  return hwy::TargetName(HWY_TARGET);
}

}  // namespace HWY_NAMESPACE
}  // namespace qv
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace qv {

HWY_EXPORT(TileDirections);
HWY_EXPORT(StartPrimaryRays);
HWY_EXPORT(StoreTile);
HWY_EXPORT(NormaliseDirections);
HWY_EXPORT(NormaliseNormals);
HWY_EXPORT(DotProducts);
HWY_EXPORT(Reflect);
HWY_EXPORT(LightVectors);
HWY_EXPORT(DirectionalLightVectors);
HWY_EXPORT(AddScaled);
HWY_EXPORT(Products);
HWY_EXPORT(AddProducts);
HWY_EXPORT(RotateFromUp);
HWY_EXPORT(AnyActive);
HWY_EXPORT(VectorInstructionSet);

void TileDirections(const PixelRays& rays, int x, int y, LaneFloats (&direction)[3]) {
  HWY_DYNAMIC_DISPATCH(TileDirections)(rays, x, y, direction);
}

void StartPrimaryRays(const PixelRays& rays, int x, int y, RayPacket& packet) {
  HWY_DYNAMIC_DISPATCH(StartPrimaryRays)(rays, x, y, packet);
}

void StoreTile(const LaneFloats (&color)[3], float* rows, std::size_t stride) {
  HWY_DYNAMIC_DISPATCH(StoreTile)(color, rows, stride);
}

void NormaliseDirections(LaneFloats (&v)[3]) {
  HWY_DYNAMIC_DISPATCH(NormaliseDirections)(v);
}

void NormaliseNormals(LaneFloats (&v)[3], const LaneInts& mask) {
  HWY_DYNAMIC_DISPATCH(NormaliseNormals)(v, mask);
}

void DotProducts(const LaneFloats (&a)[3], const LaneFloats (&b)[3], const LaneInts& mask,
                 LaneFloats& out) {
  HWY_DYNAMIC_DISPATCH(DotProducts)(a, b, mask, out);
}

void Reflect(const LaneFloats (&d)[3], const LaneFloats (&n)[3], const LaneInts& mask,
             LaneFloats (&out)[3]) {
  HWY_DYNAMIC_DISPATCH(Reflect)(d, n, mask, out);
}

void LightVectors(const float (&origin)[3], const LaneFloats (&position)[3],
                  const LaneFloats (&normal)[3], const LaneFloats& incidence, LaneInts& mask,
                  LaneFloats (&d)[3], LaneFloats& cosine) {
  HWY_DYNAMIC_DISPATCH(LightVectors)(origin, position, normal, incidence, mask, d, cosine);
}

void DirectionalLightVectors(const float (&toLight)[3], const LaneFloats (&normal)[3],
                             LaneInts& mask, LaneFloats (&d)[3], LaneFloats& cosine) {
  HWY_DYNAMIC_DISPATCH(DirectionalLightVectors)(toLight, normal, mask, d, cosine);
}

void AddScaled(LaneFloats (&color)[3], const LaneInts& mask, float factor, const LaneFloats& weight,
               const LaneFloats (&a)[3], const float (&tint)[3]) {
  HWY_DYNAMIC_DISPATCH(AddScaled)(color, mask, factor, weight, a, tint);
}

void Products(const LaneFloats& a, const LaneFloats& b, const LaneInts& mask, LaneFloats& out) {
  HWY_DYNAMIC_DISPATCH(Products)(a, b, mask, out);
}

void AddProducts(LaneFloats (&color)[3], const LaneInts& mask, const LaneFloats& weight,
                 const LaneFloats (&a)[3], const LaneFloats (&b)[3]) {
  HWY_DYNAMIC_DISPATCH(AddProducts)(color, mask, weight, a, b);
}

void RotateFromUp(const float (&v)[3], const LaneFloats (&normal)[3], const LaneInts& mask,
                  LaneFloats (&out)[3]) {
  HWY_DYNAMIC_DISPATCH(RotateFromUp)(v, normal, mask, out);
}

bool AnyActive(const LaneInts& mask) {
  return HWY_DYNAMIC_DISPATCH(AnyActive)(mask);
}

const char* VectorInstructionSet() {
  return HWY_DYNAMIC_DISPATCH(VectorInstructionSet)();
}

bool LimitVectorInstructionSet(std::string_view name) {
  // One bit for each set, the better the lower on all processors.
  for (std::int64_t rest = hwy::SupportedTargets(); rest != 0; rest &= rest - 1) {
    const std::int64_t target = rest & -rest;
    if (name != hwy::TargetName(target)) continue;
    hwy::DisableTargets(target - 1);
    return true;
  }
  return false;
}

}  // namespace qv
#endif  // HWY_ONCE

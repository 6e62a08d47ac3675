#include "render/trace/TraceKernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "render/trace/PacketBlocks.h"
#include "render/trace/TransmissionFilter.h"

namespace qv {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

void Gather(const float* lanes, int block, float* out) {
  std::memcpy(out, lanes + FirstLane(block, 0), kRun * sizeof(float));
  std::memcpy(out + kRun, lanes + FirstLane(block, 1), kRun * sizeof(float));
}

// The valid words of a block; false if no lane of it is active.
bool Valid(const LaneInts& mask, int block, int* valid) {
  int any = 0;
  for (int i = 0; i < 8; ++i) {
    valid[i] = mask[LaneOf(block, i)] >= 0 ? -1 : 0;
    any |= valid[i];
  }
  return any != 0;
}

// The ray library takes no rays with larger numbers, nor with what is no number (its own limit is
// 1.844e18); some builds of it end the program over one.
constexpr float kLargestNumber = 1e18f;

// All ones, or 0.
int Usable(float v) {
  return std::abs(v) <= kLargestNumber ? -1 : 0;
}

// Switches those rays off: they meet nothing and get no light. False if no ray is left.
template <class Rays>
bool DropUnusable(const Rays& rays, int block, int* valid, LaneInts& mask) {
  alignas(32) int usable[8];
  int all = -1;
  for (int i = 0; i < 8; ++i) {
    usable[i] = Usable(rays.org_x[i]) & Usable(rays.org_y[i]) & Usable(rays.org_z[i]) &
                Usable(rays.dir_x[i]) & Usable(rays.dir_y[i]) & Usable(rays.dir_z[i]);
    all &= usable[i] | ~valid[i];
  }
  if (all == -1) return true;
  int any = 0;
  for (int i = 0; i < 8; ++i) {
    if (valid[i] != 0 && usable[i] == 0) mask[LaneOf(block, i)] = -1;
    valid[i] &= usable[i];
    any |= valid[i];
  }
  return any != 0;
}

bool IsUsable(const RTCRay& ray) {
  return (Usable(ray.org_x) & Usable(ray.org_y) & Usable(ray.org_z) & Usable(ray.dir_x) &
          Usable(ray.dir_y) & Usable(ray.dir_z)) != 0;
}

// Errors of the ray library are fetched, so that the next call starts clean, and dropped.
void DropError(RTCDevice device) {
  static_cast<void>(rtcGetDeviceError(device));
}

void StoreHit(RayPacket& packet, int lane, unsigned geometry, unsigned primitive, float t, float u,
              float v) {
  packet.geometry[lane] = static_cast<std::int32_t>(geometry);
  if (geometry == RTC_INVALID_GEOMETRY_ID) return;
  packet.primitive[lane] = static_cast<std::int32_t>(primitive);
  packet.t[lane] = t;
  packet.hitU[lane] = u;
  packet.hitV[lane] = v;
  for (int axis = 0; axis < 3; ++axis) {
    packet.position[axis][lane] += (t + kHitPullBack) * packet.direction[axis][lane];
  }
}

void TraceClosestBlock(const TraceTarget& target, RayPacket& packet, int block) {
  alignas(32) int valid[8];
  if (!Valid(packet.geometry, block, valid)) return;
  alignas(32) RTCRayHit8 query;
  Gather(packet.position[0], block, query.ray.org_x);
  Gather(packet.position[1], block, query.ray.org_y);
  Gather(packet.position[2], block, query.ray.org_z);
  Gather(packet.direction[0], block, query.ray.dir_x);
  Gather(packet.direction[1], block, query.ray.dir_y);
  Gather(packet.direction[2], block, query.ray.dir_z);
  if (!DropUnusable(query.ray, block, valid, packet.geometry)) return;
  for (int i = 0; i < 8; ++i) {
    query.ray.tnear[i] = 0;
    query.ray.tfar[i] = kInfinity;
    query.ray.time[i] = 0;
    query.ray.mask[i] = ~0u;
    query.ray.id[i] = 0;
    query.ray.flags[i] = 0;
    query.hit.geomID[i] = RTC_INVALID_GEOMETRY_ID;
    query.hit.instID[0][i] = RTC_INVALID_GEOMETRY_ID;
  }
  RTCIntersectContext context;
  rtcInitIntersectContext(&context);
  rtcIntersect8(valid, target.scene->EmbreeScene(), &context, &query);
  DropError(target.device);
  for (int i = 0; i < 8; ++i) {
    if (valid[i] == 0) continue;
    StoreHit(packet, LaneOf(block, i), query.hit.geomID[i], query.hit.primID[i], query.ray.tfar[i],
             query.hit.u[i], query.hit.v[i]);
  }
}

void TraceClosestLane(const TraceTarget& target, RayPacket& packet, int lane) {
  RTCRayHit query{};
  query.ray.org_x = packet.position[0][lane];
  query.ray.org_y = packet.position[1][lane];
  query.ray.org_z = packet.position[2][lane];
  query.ray.dir_x = packet.direction[0][lane];
  query.ray.dir_y = packet.direction[1][lane];
  query.ray.dir_z = packet.direction[2][lane];
  if (!IsUsable(query.ray)) {
    packet.geometry[lane] = -1;
    return;
  }
  query.ray.tfar = kInfinity;
  query.ray.mask = ~0u;
  query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
  query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
  RTCIntersectContext context;
  rtcInitIntersectContext(&context);
  rtcIntersect1(target.scene->EmbreeScene(), &context, &query);
  DropError(target.device);
  StoreHit(packet, lane, query.hit.geomID, query.hit.primID, query.ray.tfar, query.hit.u,
           query.hit.v);
}

// What becomes of the light that is left of a shadow ray.
struct DimLight {
  LaneFloats (&lightColor)[3];
  void Store(int lane, float attenuation) const {
    for (auto& channel : lightColor) channel[lane] *= attenuation;
  }
};

struct KeepVisibility {
  LaneFloats& visibility;
  void Store(int lane, float attenuation) const { visibility[lane] = attenuation; }
};

// The ray library tells an occluded ray by a tfar of minus infinity. Values of lanes that are off
// do not matter.
template <class Result>
void StoreShadow(int lane, float tfar, float attenuation, LaneInts& mask, const Result& result) {
  mask[lane] = mask[lane] < 0 || tfar < 0 ? -1 : 0;
  result.Store(lane, attenuation);
}

template <class Result>
void StoreShadowRun(int firstLane, const float* tfar, const float* attenuation, LaneInts& mask,
                    const Result& result) {
  for (int i = 0; i < kRun; ++i) StoreShadow(firstLane + i, tfar[i], attenuation[i], mask, result);
}

// Where shadow rays start: all in one point, or each lane in its own.
struct OnePoint {
  const float (&point)[3];
  void Fill(int, int axis, float* out) const {
    for (int i = 0; i < 8; ++i) out[i] = point[axis];
  }
  float Of(int, int axis) const { return point[axis]; }
  void Tell(TraceObserver& observer, const LaneFloats (&d)[3], float tfar,
            const LaneInts& mask) const {
    alignas(64) LaneFloats origin[3];
    for (int axis = 0; axis < 3; ++axis) std::fill_n(origin[axis], kLanes, point[axis]);
    observer.OnShadow(origin, d, tfar, mask);
  }
};

struct EachLane {
  const LaneFloats (&origin)[3];
  void Fill(int block, int axis, float* out) const { Gather(origin[axis], block, out); }
  float Of(int lane, int axis) const { return origin[axis][lane]; }
  void Tell(TraceObserver& observer, const LaneFloats (&d)[3], float tfar,
            const LaneInts& mask) const {
    observer.OnShadow(origin, d, tfar, mask);
  }
};

template <class Origins, class Result>
void TraceShadowBlock(const TraceTarget& target, const Origins& origins, const LaneFloats (&d)[3],
                      float tfar, int block, LaneInts& mask, const Result& result) {
  alignas(32) int valid[8];
  if (!Valid(mask, block, valid)) return;
  alignas(32) RTCRay8 ray;
  origins.Fill(block, 0, ray.org_x);
  origins.Fill(block, 1, ray.org_y);
  origins.Fill(block, 2, ray.org_z);
  Gather(d[0], block, ray.dir_x);
  Gather(d[1], block, ray.dir_y);
  Gather(d[2], block, ray.dir_z);
  if (!DropUnusable(ray, block, valid, mask)) return;
  for (int i = 0; i < 8; ++i) {
    ray.tnear[i] = 0;
    ray.tfar[i] = tfar;
    ray.time[i] = 0;
    ray.mask[i] = ~0u;
    ray.id[i] = static_cast<unsigned>(i);
    ray.flags[i] = 0;
  }
  ShadowContext context;
  InitShadowContext(context, *target.scene, target.footprintScale);
  rtcOccluded8(valid, target.scene->EmbreeScene(), &context.context, &ray);
  DropError(target.device);
  for (int run = 0; run < 2; ++run) {
    const std::size_t from = static_cast<std::size_t>(run) * kRun;
    StoreShadowRun(FirstLane(block, run), ray.tfar + from, context.attenuation + from, mask,
                   result);
  }
}

template <class Origins, class Result>
void TraceShadowLane(const TraceTarget& target, const Origins& origins, const LaneFloats (&d)[3],
                     float tfar, int lane, LaneInts& mask, const Result& result) {
  RTCRay ray{};
  ray.org_x = origins.Of(lane, 0);
  ray.org_y = origins.Of(lane, 1);
  ray.org_z = origins.Of(lane, 2);
  ray.dir_x = d[0][lane];
  ray.dir_y = d[1][lane];
  ray.dir_z = d[2][lane];
  if (!IsUsable(ray)) {
    mask[lane] = -1;
    return;
  }
  ray.tfar = tfar;
  ray.mask = ~0u;
  ShadowContext context;
  InitShadowContext(context, *target.scene, target.footprintScale);
  rtcOccluded1(target.scene->EmbreeScene(), &context.context, &ray);
  DropError(target.device);
  StoreShadow(lane, ray.tfar, context.attenuation[0], mask, result);
}

template <class Origins, class Result>
void TraceShadowRays(const TraceTarget& target, const Origins& origins, const LaneFloats (&d)[3],
                     float tfar, LaneInts& mask, const Result& result) {
  if (target.observer != nullptr) origins.Tell(*target.observer, d, tfar, mask);
  if (target.packetWidth == 8) {
    for (int block = 0; block < kBlocks; ++block) {
      TraceShadowBlock(target, origins, d, tfar, block, mask, result);
    }
    return;
  }
  for (int lane = 0; lane < kLanes; ++lane) {
    if (mask[lane] >= 0) TraceShadowLane(target, origins, d, tfar, lane, mask, result);
  }
}

}  // namespace

void TraceClosest(const TraceTarget& target, RayPacket& packet) {
  if (target.observer != nullptr) target.observer->OnClosest(packet);
  if (target.packetWidth == 8) {
    for (int block = 0; block < kBlocks; ++block) TraceClosestBlock(target, packet, block);
    return;
  }
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] >= 0) TraceClosestLane(target, packet, lane);
  }
}

void TraceShadowFromPoint(const TraceTarget& target, const float (&point)[3],
                          const LaneFloats (&d)[3], LaneInts& mask, LaneFloats (&lightColor)[3]) {
  TraceShadowRays(target, OnePoint{point}, d, kToSurface, mask, DimLight{lightColor});
}

void TraceShadow(const TraceTarget& target, const LaneFloats (&origin)[3], const LaneFloats (&d)[3],
                 float tfar, LaneInts& mask, LaneFloats (&lightColor)[3]) {
  TraceShadowRays(target, EachLane{origin}, d, tfar, mask, DimLight{lightColor});
}

void TraceVisibility(const TraceTarget& target, const LaneFloats (&origin)[3],
                     const LaneFloats (&d)[3], float tfar, LaneInts& mask, LaneFloats& visibility) {
  TraceShadowRays(target, EachLane{origin}, d, tfar, mask, KeepVisibility{visibility});
}

}  // namespace qv

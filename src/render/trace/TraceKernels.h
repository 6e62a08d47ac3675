#pragma once

#include "render/geometry/RenderScene.h"
#include "render/trace/RayPacket.h"

namespace qv {

// How far hit positions are drawn back along their ray.
constexpr float kHitPullBack = -0.1f;
// How far along a ray from a light to a surface something counts as between them.
constexpr float kToSurface = 0.99999f;

// Sees the rays that the kernels cast, before they do: for measurements and for finding out what
// became of a pixel. Called on the tracing threads.
class TraceObserver {
 public:
  virtual ~TraceObserver() = default;
  // The lanes whose `geometry` is not negative.
  virtual void OnClosest(const RayPacket& packet) = 0;
  // The lanes with a mask that is not negative.
  virtual void OnShadow(const LaneFloats (&origin)[3], const LaneFloats (&d)[3], float tfar,
                        const LaneInts& mask) = 0;
};

// What the kernels trace against, the same for a whole pass.
struct TraceTarget {
  RTCDevice device = nullptr;
  const RenderScene* scene = nullptr;
  int packetWidth =
      8;  // 8: rtcIntersect8 and rtcOccluded8 over 4 by 2 blocks of lanes; else ray by ray
  float footprintScale = 0;           // radians a pixel, for alpha textures in shadows
  TraceObserver* observer = nullptr;  // usually none
};

// Closest hits of the packet's rays from `position` along `direction`, for lanes whose `geometry`
// is not negative. A hit fills geometry, primitive, t, hitU, hitV and moves position to the hit,
// drawn back; a miss sets geometry to -1 and leaves the rest.
void TraceClosest(const TraceTarget& target, RayPacket& packet);

// Rays from one point along `d`, which reach just to the surface. Lanes with a mask that is not
// negative: an unoccluded one gets mask 0 and its light colour multiplied by what transparent
// surfaces let through, an occluded one mask -1.
void TraceShadowFromPoint(const TraceTarget& target, const float (&point)[3],
                          const LaneFloats (&d)[3], LaneInts& mask, LaneFloats (&lightColor)[3]);

// The same from origins of their own, as far as `tfar`.
void TraceShadow(const TraceTarget& target, const LaneFloats (&origin)[3], const LaneFloats (&d)[3],
                 float tfar, LaneInts& mask, LaneFloats (&lightColor)[3]);

// The same, giving only what is left of the light: `visibility` is written where the mask stays at
// 0.
void TraceVisibility(const TraceTarget& target, const LaneFloats (&origin)[3],
                     const LaneFloats (&d)[3], float tfar, LaneInts& mask, LaneFloats& visibility);

}  // namespace qv

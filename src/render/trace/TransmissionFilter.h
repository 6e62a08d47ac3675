#pragma once

#include <embree3/rtcore.h>

#include "render/geometry/RenderScene.h"

namespace qv {

// The ray library's context of one occlusion call, extended by what the filter needs. Rays are
// numbered by their `id`.
struct ShadowContext {
  RTCIntersectContext context;  // first: the filter is handed a pointer to it
  const RenderScene* scene;
  float footprintScale;  // field of view / height of the base picture: radians a pixel
  float attenuation[8];  // what is left of the light of each ray
};

// Lets light through transparent surfaces and alpha textures: takes away the surface's opacity from
// what is left, and lets the hit stand only where less than a hundredth is left.
void TransmissionFilter(const RTCFilterFunctionNArguments* args);

// A context with attenuation 1 for all rays.
void InitShadowContext(ShadowContext& context, const RenderScene& scene, float footprintScale);

}  // namespace qv

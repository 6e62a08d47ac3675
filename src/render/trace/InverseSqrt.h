#pragma once

#include <hwy/highway.h>

namespace qv {

// 1 / sqrt(s) by the processor's estimate r and one Newton step: 1.5 r - 0.5 s r^3. Infinite or NaN
// for s = 0.
inline float RefinedInverseSqrt(float s) {
  namespace hn = hwy::HWY_NAMESPACE;
  const hn::CappedTag<float, 1> d;
  const float r = hn::GetLane(hn::ApproximateReciprocalSqrt(hn::Set(d, s)));
  return 1.5f * r - 0.5f * s * r * r * r;
}

}  // namespace qv

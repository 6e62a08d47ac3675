#pragma once

#include <xmmintrin.h>

namespace qv {

// 1 / sqrt(s) by the processor's estimate r and one Newton step: 1.5 r - 0.5 s r^3. Infinite or NaN
// for s = 0.
inline float RefinedInverseSqrt(float s) {
  const float r = _mm_cvtss_f32(_mm_rsqrt_ss(_mm_set_ss(s)));
  return 1.5f * r - 0.5f * s * r * r * r;
}

}  // namespace qv

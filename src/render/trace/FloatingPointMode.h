#pragma once

#include <pmmintrin.h>
#include <xmmintrin.h>

namespace qv {

// Flushes denormal results to zero and reads denormals as zero on the calling thread, while in
// scope: what the ray library asks of every thread that traces.
class FloatingPointMode {
 public:
  FloatingPointMode() : saved_(_mm_getcsr()) {
    _MM_SET_FLUSH_ZERO_MODE(_MM_FLUSH_ZERO_ON);
    _MM_SET_DENORMALS_ZERO_MODE(_MM_DENORMALS_ZERO_ON);
  }
  ~FloatingPointMode() { _mm_setcsr(saved_); }
  FloatingPointMode(const FloatingPointMode&) = delete;
  FloatingPointMode& operator=(const FloatingPointMode&) = delete;

 private:
  unsigned saved_;
};

}  // namespace qv

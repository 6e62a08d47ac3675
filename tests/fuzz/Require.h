#pragma once

#include <cstdio>
#include <cstdlib>

namespace qv {

// Ends the fuzzer with a finding where the code under it does not do what it promises.
inline void Require(bool promise, const char* what) {
  if (promise) return;
  std::fprintf(stderr, "broken promise: %s\n", what);
  std::abort();
}

}  // namespace qv

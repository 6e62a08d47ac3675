#include "core/Random.h"

#include <emmintrin.h>

namespace qv {
namespace {

// The parameter set of SFMT19937 (table of the paper): pick-up position, shifts in bits of 32-bit
// words and in bytes of 128-bit blocks, and the masks.
constexpr int kPickUp = 122;
constexpr int kWordShiftLeft = 18;
constexpr int kBlockShiftLeft = 1;
constexpr int kWordShiftRight = 11;
constexpr int kBlockShiftRight = 1;
constexpr std::uint32_t kMask[4] = {0xdfffffefu, 0xddfecb7fu, 0xbffaffffu, 0xbffffff6u};
constexpr std::uint32_t kParity[4] = {0x00000001u, 0x00000000u, 0x00000000u, 0x13c9e684u};

}  // namespace

void Random::Seed(std::uint32_t seed) {
  state_[0] = seed;
  for (int i = 1; i < kWords; ++i) {
    state_[i] = 1812433253u * (state_[i - 1] ^ state_[i - 1] >> 30) + static_cast<std::uint32_t>(i);
  }
  CertifyPeriod();
  next_ = kWords;
}

void Random::CertifyPeriod() {
  std::uint32_t inner = 0;
  for (int i = 0; i < 4; ++i) inner ^= state_[i] & kParity[i];
  for (int shift = 16; shift > 0; shift /= 2) inner ^= inner >> shift;
  if (inner & 1u) return;
  state_[0] ^= kParity[0] & 1u;
}

void Random::Refill() {
  auto* blocks = reinterpret_cast<__m128i*>(state_.data());
  const __m128i mask = _mm_loadu_si128(reinterpret_cast<const __m128i*>(kMask));
  __m128i c = blocks[kBlocks - 2];
  __m128i d = blocks[kBlocks - 1];
  for (int i = 0; i < kBlocks; ++i) {
    const __m128i a = blocks[i];
    const __m128i b = blocks[(i + kPickUp) % kBlocks];
    const __m128i picked = _mm_and_si128(_mm_srli_epi32(b, kWordShiftRight), mask);
    __m128i out = _mm_xor_si128(a, _mm_slli_si128(a, kBlockShiftLeft));
    out = _mm_xor_si128(out, picked);
    out = _mm_xor_si128(out, _mm_srli_si128(c, kBlockShiftRight));
    out = _mm_xor_si128(out, _mm_slli_epi32(d, kWordShiftLeft));
    blocks[i] = out;
    c = d;
    d = out;
  }
  next_ = 0;
}

}  // namespace qv

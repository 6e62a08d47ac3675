#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace qv {

// SIMD-oriented Fast Mersenne Twister of period 2^19937 - 1, 32-bit output (M. Saito and M.
// Matsumoto, "SIMD-oriented Fast Mersenne Twister: a 128-bit Pseudorandom Number Generator", MCQMC
// 2006), with its period certification. One thread at a time; use by several threads is for callers
// that do not mind which of them gets which value.
class Random {
 public:
  explicit Random(std::uint32_t seed = kDefaultSeed) { Seed(seed); }

  static constexpr std::uint32_t kDefaultSeed = 1234;

  void Seed(std::uint32_t seed);
  std::uint32_t NextWord() {
    if (next_ >= kWords) Refill();
    return state_[static_cast<std::size_t>(next_++)];
  }
  // Uniform in the open interval (0, 1).
  double NextUniform() { return (NextWord() + 0.5) * 2.3283064365386963e-10; }

 private:
  static constexpr int kBlocks = 19937 / 128 + 1;
  static constexpr int kWords = kBlocks * 4;

  void CertifyPeriod();
  void Refill();

  alignas(16) std::array<std::uint32_t, kWords> state_;
  int next_ = kWords;
};

}  // namespace qv

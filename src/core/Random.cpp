#include "core/Random.h"

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

struct Block {
  std::uint64_t low;
  std::uint64_t high;
};

Block Load(const std::uint32_t* words) {
  return {words[0] | static_cast<std::uint64_t>(words[1]) << 32,
          words[2] | static_cast<std::uint64_t>(words[3]) << 32};
}

Block ShiftBytesLeft(Block b, int bytes) {
  const int bits = bytes * 8;
  return {b.low << bits, b.high << bits | b.low >> (64 - bits)};
}

Block ShiftBytesRight(Block b, int bytes) {
  const int bits = bytes * 8;
  return {b.low >> bits | b.high << (64 - bits), b.high >> bits};
}

std::uint32_t WordOf(Block b, int i) {
  return static_cast<std::uint32_t>((i < 2 ? b.low : b.high) >> (i % 2 * 32));
}

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
  const auto block = [this](int i) {
    return &state_[std::size_t{4} * static_cast<std::size_t>(i)];
  };
  for (int i = 0; i < kBlocks; ++i) {
    const Block a = Load(block(i));
    const Block x = ShiftBytesLeft(a, kBlockShiftLeft);
    const std::uint32_t* b = block((i + kPickUp) % kBlocks);
    const Block c = Load(block((i + kBlocks - 2) % kBlocks));
    const Block y = ShiftBytesRight(c, kBlockShiftRight);
    const std::uint32_t* d = block((i + kBlocks - 1) % kBlocks);
    std::uint32_t out[4];
    for (int w = 0; w < 4; ++w) {
      out[w] = WordOf(a, w) ^ WordOf(x, w) ^ (b[w] >> kWordShiftRight & kMask[w]) ^ WordOf(y, w) ^
               d[w] << kWordShiftLeft;
    }
    for (int w = 0; w < 4; ++w) block(i)[w] = out[w];
  }
  next_ = 0;
}

std::uint32_t Random::NextWord() {
  if (next_ >= kWords) Refill();
  return state_[next_++];
}

}  // namespace qv

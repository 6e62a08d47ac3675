#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qv {

// A record that is laid out by hand, one field after the other at its offset. Grows as needed, with
// zeros between.
class RecordBytes {
 public:
  RecordBytes() = default;
  explicit RecordBytes(std::int32_t code) { Int(0, code); }

  RecordBytes& Int(std::size_t offset, std::int32_t value) {
    return Word(offset, static_cast<std::uint32_t>(value));
  }
  RecordBytes& Float(std::size_t offset, float value) {
    return Word(offset, std::bit_cast<std::uint32_t>(value));
  }
  RecordBytes& Floats(std::size_t offset, std::initializer_list<float> values) {
    for (const float value : values) {
      Float(offset, value);
      offset += 4;
    }
    return *this;
  }
  RecordBytes& Ints(std::size_t offset, std::initializer_list<std::int32_t> values) {
    for (const std::int32_t value : values) {
      Int(offset, value);
      offset += 4;
    }
    return *this;
  }
  RecordBytes& Byte(std::size_t offset, unsigned value) {
    Reach(offset + 1);
    bytes_[offset] = static_cast<std::byte>(value);
    return *this;
  }
  // With its terminator.
  RecordBytes& Text(std::size_t offset, std::string_view text) {
    for (const char c : text) Byte(offset++, static_cast<unsigned char>(c));
    return Byte(offset, 0);
  }
  RecordBytes& Size(std::size_t size) {
    Reach(size);
    return *this;
  }

  std::span<const std::byte> bytes() const { return bytes_; }

 private:
  // Little-endian.
  RecordBytes& Word(std::size_t offset, std::uint32_t value) {
    for (int i = 0; i < 4; ++i)
      Byte(offset + static_cast<std::size_t>(i), (value >> (8 * i)) & 0xff);
    return *this;
  }
  void Reach(std::size_t size) {
    if (bytes_.size() < size) bytes_.resize(size);
  }

  std::vector<std::byte> bytes_;
};

inline bool SameBytes(std::span<const std::byte> a, std::span<const std::byte> b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

}  // namespace qv

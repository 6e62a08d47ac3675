#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <vector>

namespace qv {

// A record that is laid out by hand, one field after the other at its offset. Grows as needed, with
// zeros between.
class RecordBytes {
 public:
  RecordBytes() = default;
  explicit RecordBytes(std::int32_t code) { Int(0, code); }

  RecordBytes& Byte(std::size_t offset, unsigned value);
  RecordBytes& Int(std::size_t offset, std::int32_t value);
  RecordBytes& Ints(std::size_t offset, std::initializer_list<std::int32_t> values);
  RecordBytes& Float(std::size_t offset, float value);
  RecordBytes& Floats(std::size_t offset, std::initializer_list<float> values);
  // With its terminator.
  RecordBytes& Text(std::size_t offset, std::string_view text);
  // That many bytes at least.
  RecordBytes& Size(std::size_t size);

  std::span<const std::byte> bytes() const { return bytes_; }

 private:
  RecordBytes& Word(std::size_t offset, std::uint32_t value);

  std::vector<std::byte> bytes_;
};

bool SameBytes(std::span<const std::byte> a, std::span<const std::byte> b);

}  // namespace qv

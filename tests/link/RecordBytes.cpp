#include "link/RecordBytes.h"

#include <algorithm>
#include <bit>

namespace qv {

RecordBytes& RecordBytes::Byte(std::size_t offset, unsigned value) {
  Size(offset + 1);
  bytes_[offset] = static_cast<std::byte>(value);
  return *this;
}

RecordBytes& RecordBytes::Int(std::size_t offset, std::int32_t value) {
  return Word(offset, static_cast<std::uint32_t>(value));
}

RecordBytes& RecordBytes::Ints(std::size_t offset, std::initializer_list<std::int32_t> values) {
  for (const std::int32_t value : values) {
    Int(offset, value);
    offset += 4;
  }
  return *this;
}

RecordBytes& RecordBytes::Float(std::size_t offset, float value) {
  return Word(offset, std::bit_cast<std::uint32_t>(value));
}

RecordBytes& RecordBytes::Floats(std::size_t offset, std::initializer_list<float> values) {
  for (const float value : values) {
    Float(offset, value);
    offset += 4;
  }
  return *this;
}

RecordBytes& RecordBytes::Text(std::size_t offset, std::string_view text) {
  for (const char c : text) Byte(offset++, static_cast<unsigned char>(c));
  return Byte(offset, 0);
}

RecordBytes& RecordBytes::Size(std::size_t size) {
  if (bytes_.size() < size) bytes_.resize(size);
  return *this;
}

// Little-endian.
RecordBytes& RecordBytes::Word(std::size_t offset, std::uint32_t value) {
  for (std::size_t i = 0; i < 4; ++i) Byte(offset + i, (value >> (8 * i)) & 0xff);
  return *this;
}

bool SameBytes(std::span<const std::byte> a, std::span<const std::byte> b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace qv

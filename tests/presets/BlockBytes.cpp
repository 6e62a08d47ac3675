#include "presets/BlockBytes.h"

#include <bit>

namespace qv {

BlockBytes& BlockBytes::Raw(std::initializer_list<int> bytes) {
  for (const int byte : bytes) bytes_.push_back(static_cast<std::byte>(byte));
  return *this;
}

BlockBytes& BlockBytes::Int(std::uint32_t value) {
  for (int shift = 0; shift < 32; shift += 8) Raw({static_cast<int>(value >> shift & 0xFF)});
  return *this;
}

BlockBytes& BlockBytes::Text(std::string_view utf8) {
  Int(static_cast<std::uint32_t>(utf8.size()));
  for (const char c : utf8) bytes_.push_back(static_cast<std::byte>(c));
  return *this;
}

BlockBytes& BlockBytes::Real(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  std::uint64_t head = 0, mantissa = 0;
  if (value != 0) {
    // The exponent's offset grows from 1023 to 16383, and the leading 1 is written out.
    head = bits >> 63 << 15 | ((bits >> 52 & 0x7FF) - 1023 + 16383);
    mantissa = 1ull << 63 | bits << 12 >> 1;
  }
  for (int shift = 8; shift >= 0; shift -= 8) Raw({static_cast<int>(head >> shift & 0xFF)});
  for (int shift = 56; shift >= 0; shift -= 8) Raw({static_cast<int>(mantissa >> shift & 0xFF)});
  return *this;
}

BlockBytes& BlockBytes::Reals(std::initializer_list<double> values) {
  for (const double value : values) Real(value);
  return *this;
}

}  // namespace qv

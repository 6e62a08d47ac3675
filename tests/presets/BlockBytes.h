#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace qv {

// Puts preset blocks together value by value, without the streams that the program uses.
class BlockBytes {
 public:
  BlockBytes& Int(std::uint32_t value);
  BlockBytes& Text(std::string_view utf8);
  // 10 bytes of extended precision, big-endian, from the bits of a normal double or 0.
  BlockBytes& Real(double value);
  BlockBytes& Reals(std::initializer_list<double> values);
  BlockBytes& Raw(std::initializer_list<int> bytes);

  const std::vector<std::byte>& bytes() const { return bytes_; }

 private:
  std::vector<std::byte> bytes_;
};

}  // namespace qv

#pragma once

#include <wx/datstrm.h>
#include <wx/mstream.h>
#include <wx/string.h>

#include <cstddef>
#include <cstdint>
#include <span>

namespace qv {

// Reads the values of a preset block, never beyond its end and never more memory than it has. A
// value that does not lie within the block whole is 0 or empty, and so are all after it.
//
// Integers are little-endian. Floats and doubles are both 10 bytes, big-endian: sign and exponent
// (16 bits, offset 16383) and a mantissa of 64 bits, as the data streams write them in their
// default mode. Infinity is kept; what is not a number comes back as infinity.
class PresetReader {
 public:
  // The block must outlive the reader.
  explicit PresetReader(std::span<const std::byte> block);

  std::int32_t ReadInt();
  std::uint32_t ReadCount();
  bool ReadBool();      // an int32; above 0 is true
  wxString ReadText();  // a byte count and UTF-8; empty if that is broken
  double ReadDouble();
  float ReadFloat();

  std::size_t Remaining() const;
  // Whether more was asked for than the block holds.
  bool IsShort() const { return short_; }

 private:
  // False at the end of the block; the rest is then given up.
  bool Has(std::size_t size);

  wxMemoryInputStream memory_;
  wxDataInputStream stream_;
  std::size_t size_;
  bool short_ = false;
};

}  // namespace qv

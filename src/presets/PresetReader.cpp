#include "presets/PresetReader.h"

#include <wx/strconv.h>

#include <cmath>
#include <limits>

namespace qv {
namespace {

constexpr std::size_t kIntSize = 4;
constexpr std::size_t kRealSize = 10;

}  // namespace

PresetReader::PresetReader(std::span<const std::byte> block)
    : memory_(block.data(), block.size()), stream_(memory_, wxConvUTF8), size_(block.size()) {}

std::size_t PresetReader::Remaining() const {
  return short_ ? 0 : size_ - static_cast<std::size_t>(memory_.TellI());
}

bool PresetReader::Has(std::size_t size) {
  if (Remaining() < size) short_ = true;
  return !short_;
}

std::uint32_t PresetReader::ReadCount() {
  return Has(kIntSize) ? stream_.Read32() : 0;
}

std::int32_t PresetReader::ReadInt() {
  return static_cast<std::int32_t>(ReadCount());
}

bool PresetReader::ReadBool() {
  return ReadInt() > 0;
}

wxString PresetReader::ReadText() {
  if (!Has(kIntSize)) return {};
  // The stream takes memory for as many bytes as the count says before it looks for them.
  const std::size_t before = static_cast<std::size_t>(memory_.TellI());
  const std::uint32_t bytes = stream_.Read32();
  if (!Has(bytes)) return {};
  memory_.SeekI(static_cast<wxFileOffset>(before));
  return stream_.ReadString();
}

double PresetReader::ReadDouble() {
  return Has(kRealSize) ? stream_.ReadDouble() : 0;
}

float PresetReader::ReadFloat() {
  const double value = ReadDouble();
  if (std::abs(value) <= std::numeric_limits<float>::max()) return static_cast<float>(value);
  return std::copysign(std::numeric_limits<float>::infinity(),
                       static_cast<float>(value > 0 ? 1 : -1));
}

}  // namespace qv

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/Require.h"
#include "presets/PathImport.h"

// Reads each input as a file with a camera path.
namespace qv {
namespace {

// Six digits with separators between, and the end of the line.
constexpr std::size_t kShortestLine = 12;

void ReadBytes(const std::vector<std::byte>& bytes) {
  const ImportedPath path = ReadPath(DecodePathText(bytes), 0.785f);
  Require(path.keys.size() <= (bytes.size() + 1) / kShortestLine, "keys have lines");
  for (std::size_t i = 0; i < path.keys.size(); ++i) {
    const CameraKey& key = path.keys[i];
    Require(key.time == static_cast<double>(i) * 0.5, "keys are half a second apart");
    Require(key.pose.position.allFinite(), "positions are finite");
    Require(std::abs(key.pose.orientation.norm() - 1) < 1e-3f, "orientations have unit length");
  }
  if (!path.fault) return;
  Require(path.fault->line >= 1 && static_cast<std::size_t>(path.fault->line) <= bytes.size(),
          "faults lie in the file");
  Require(!PathFaultText(*path.fault).empty(), "faults have a text");
}

}  // namespace
}  // namespace qv

extern "C" int LLVMFuzzerInitialize(int*, char***) {
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto* first = reinterpret_cast<const std::byte*>(data);
  qv::ReadBytes(std::vector<std::byte>(first, first + size));
  return 0;
}

#pragma once

#include <cstdint>
#include <vector>

#include "core/Vec.h"

namespace qv {

// The fixed sample directions of all renderers, drawn once from generators seeded with 1234.
struct SampleDirections {
  static constexpr int kOcclusion = 64;
  static constexpr int kGlossy = 100000;

  static const SampleDirections& Shared();

  // Unit vectors of the hemisphere about +z.
  std::vector<Vec3> occlusion;
  // Unit vectors within 12 degrees of +z.
  std::vector<Vec3> glossy;
  // Where runs of 64 neighbours in `glossy` begin: the sequence that the draws of a tile walk
  // through.
  std::vector<std::uint32_t> glossyStarts;

  // The start index of a draw; `draw` counts on without limit.
  std::uint32_t GlossyStart(std::uint32_t draw) const {
    return glossyStarts[draw % glossyStarts.size()];
  }

 private:
  SampleDirections();
};

}  // namespace qv

#pragma once

#include "render/trace/RayPacket.h"

namespace qv {

// The split of the 64 lanes into the ray library's packets: block b covers 4 columns by 2 rows of
// the tile, that is, two runs of four neighbouring lanes.
constexpr int kBlocks = kLanes / 8;
constexpr int kRun = 4;

constexpr int FirstLane(int block, int run) {
  return (block / 2 * 2 + run) * kTileSide + block % 2 * kRun;
}

static_assert(FirstLane(1, 0) == 4 && FirstLane(1, 1) == 12 && FirstLane(7, 1) == 60);

// The lane of ray i, 0 to 7, of a block.
constexpr int LaneOf(int block, int i) {
  return FirstLane(block, i / kRun) + i % kRun;
}

}  // namespace qv

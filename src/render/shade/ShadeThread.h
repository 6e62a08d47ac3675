#pragma once

#include <cstdint>

#include "render/trace/ThreadPackets.h"

namespace qv {

// What one worker thread shades with.
struct ShadeThread {
  ThreadPackets packets;
  // Where in the sequence of random start indices the next draw of this tile stands. Set for each
  // tile from its number, so that a picture does not depend on which thread took which tile.
  std::uint32_t nextDraw = 0;
};

}  // namespace qv

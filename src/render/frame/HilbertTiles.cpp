#include "render/frame/HilbertTiles.h"

#include "render/trace/RayPacket.h"

namespace qv {
namespace {

struct Step {
  std::uint8_t y;
  std::uint8_t x;
  std::uint8_t next;
};

// The curve as an automaton: in each state, for each quarter in the curve's order, where the
// quarter lies and the state inside it.
constexpr Step kCurve[4][4] = {
    {{0, 0, 1}, {0, 1, 0}, {1, 1, 0}, {1, 0, 3}},
    {{0, 0, 0}, {1, 0, 1}, {1, 1, 1}, {0, 1, 2}},
    {{1, 1, 3}, {1, 0, 2}, {0, 0, 2}, {0, 1, 1}},
    {{1, 1, 2}, {0, 1, 3}, {0, 0, 3}, {1, 0, 0}},
};

}  // namespace

HilbertTiles::HilbertTiles(int width, int height) {
  if (width < 1 || height < 1) return;
  tilesX_ = (width + kTileSide - 1) / kTileSide;
  tilesY_ = (height + kTileSide - 1) / kTileSide;
  for (std::int32_t x = tilesX_ - 1, y = tilesY_ - 1; x != 0 || y != 0; x >>= 1, y >>= 1) ++levels_;
  tileCount_ = std::int32_t{1} << 2 * levels_;
}

// Leading zero quarters swap states 0 and 1 and nothing else, so a walk over 32 digits that begins
// in state `levels & 1` reaches the first significant digit in state 0.
TilePosition HilbertTiles::TileToPosition(std::int32_t i) const {
  TilePosition position{0, 0};
  int state = 0;
  for (int level = levels_ - 1; level >= 0; --level) {
    const Step& step = kCurve[state][i >> 2 * level & 3];
    position.y = position.y << 1 | step.y;
    position.x = position.x << 1 | step.x;
    state = step.next;
  }
  return position;
}

// The curve leaves no square of 2^k tiles a side, placed at multiples of its side, before all of it
// was visited.
std::int32_t HilbertTiles::EndOfOutside(std::int32_t i, const TilePosition& p) const {
  int level = 0;
  while (level < levels_) {
    const int larger = level + 1;
    if (p.x >> larger << larger < tilesX_ && p.y >> larger << larger < tilesY_) break;
    level = larger;
  }
  return ((i >> 2 * level) + 1) << 2 * level;
}

}  // namespace qv

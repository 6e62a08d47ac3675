#pragma once

#include <cstdint>

namespace qv {

struct TilePosition {
  std::int32_t x;
  std::int32_t y;
};

// The order of the tiles of a pass: along a Hilbert curve over the smallest square of 2^levels
// tiles a side that holds the picture, so that tiles near in time are near on the screen. Positions
// outside the picture are for the caller to skip.
class HilbertTiles {
 public:
  HilbertTiles() = default;
  // Of a picture of that many pixels.
  HilbertTiles(int width, int height);

  std::int32_t TilesX() const { return tilesX_; }
  std::int32_t TilesY() const { return tilesY_; }
  std::int32_t Levels() const { return levels_; }
  // 4^levels; 0 for an empty picture.
  std::int32_t TileCount() const { return tileCount_; }
  TilePosition TileToPosition(std::int32_t i) const;
  bool Contains(const TilePosition& p) const { return p.x < tilesX_ && p.y < tilesY_; }
  // The index behind the stretch of the curve about `i`, whose position is `p`, that lies in a
  // square outside the picture. p must lie outside.
  std::int32_t EndOfOutside(std::int32_t i, const TilePosition& p) const;

 private:
  std::int32_t tilesX_ = 0;
  std::int32_t tilesY_ = 0;
  std::int32_t levels_ = 0;
  std::int32_t tileCount_ = 0;
};

}  // namespace qv

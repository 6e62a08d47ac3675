#pragma once

#include <algorithm>
#include <atomic>
#include <cstdint>

#include "render/frame/HilbertTiles.h"

namespace qv {

// Hands the tiles of a picture out to threads, each tile once, in the order of the curve.
class TileQueue {
 public:
  // Of a picture of that many pixels.
  TileQueue(int width, int height) : tiles_(width, height) {}

  const HilbertTiles& tiles() const { return tiles_; }

  // Calls work(index, position) for tiles until none is left or it returns false; what it had taken
  // together with the last one is then lost. Before each tile, and for each part of the curve
  // outside the picture, calls passed(first, end) with its indices; for such a part perhaps more
  // than once. Any number of threads at a time.
  template <class Work, class Passed>
  void Drain(const Work& work, const Passed& passed) {
    while (true) {
      const std::int32_t first = next_.fetch_add(kTilesAtOnce, std::memory_order_relaxed);
      const std::int32_t end = std::min(first + kTilesAtOnce, tiles_.TileCount());
      if (first >= end) return;
      for (std::int32_t i = first; i < end;) {
        const TilePosition position = tiles_.TileToPosition(i);
        const bool inside = tiles_.Contains(position);
        const std::int32_t behind = inside ? i + 1 : tiles_.EndOfOutside(i, position);
        passed(i, behind);
        if (!inside) {
          SkipTo(behind);
        } else if (!work(i, position)) {
          return;
        }
        i = behind;
      }
    }
  }

 private:
  // A square of two tiles a side; threads that take them one by one wait for each other's counting.
  static constexpr std::int32_t kTilesAtOnce = 4;

  void SkipTo(std::int32_t tile) {
    std::int32_t next = next_.load(std::memory_order_relaxed);
    while (next < tile && !next_.compare_exchange_weak(next, tile, std::memory_order_relaxed)) {
    }
  }

  HilbertTiles tiles_;
  // On a cache line of its own.
  alignas(64) std::atomic<std::int32_t> next_{0};
};

}  // namespace qv

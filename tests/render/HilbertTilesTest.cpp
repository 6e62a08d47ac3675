#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <thread>
#include <vector>

#include "render/frame/TileQueue.h"

namespace qv {
namespace {

// The curve written out a second time: for each state and quarter the bit of y, the bit of x and
// the next state; the walk always goes over 32 quarters, begun in state `levels & 1`.
TilePosition WalkAllQuarters(int levels, std::uint64_t i) {
  static constexpr const char* kTable[4][4] = {{"001", "010", "110", "103"},
                                               {"000", "101", "111", "012"},
                                               {"113", "102", "002", "011"},
                                               {"112", "013", "003", "100"}};
  int state = levels & 1;
  std::uint32_t x = 0;
  std::uint32_t y = 0;
  for (int group = 31; group >= 0; --group) {
    const char* row = kTable[state][i >> (2 * group) & 3];
    y = y << 1 | static_cast<std::uint32_t>(row[0] - '0');
    x = x << 1 | static_cast<std::uint32_t>(row[1] - '0');
    state = row[2] - '0';
  }
  return {static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)};
}

TEST(HilbertTiles, CountsTilesAndLevels) {
  struct Case {
    int width, height, tilesX, tilesY, levels, count;
  };
  for (const Case& c : {Case{1, 1, 1, 1, 0, 1}, Case{8, 8, 1, 1, 0, 1}, Case{9, 9, 2, 2, 1, 4},
                        Case{100, 8, 13, 1, 4, 256}, Case{1280, 720, 160, 90, 8, 65536},
                        Case{8, 2056, 1, 257, 9, 262144}, Case{0, 5, 0, 0, 0, 0}}) {
    const HilbertTiles tiles(c.width, c.height);
    EXPECT_EQ(tiles.TilesX(), c.tilesX) << c.width;
    EXPECT_EQ(tiles.TilesY(), c.tilesY) << c.height;
    EXPECT_EQ(tiles.Levels(), c.levels) << c.width;
    EXPECT_EQ(tiles.TileCount(), c.count) << c.width;
  }
}

TEST(HilbertTiles, VisitsEachTileOnceAlongNeighbours) {
  constexpr int kSizes[][2] = {{1, 1}, {9, 9}, {100, 8}, {8, 100}, {250, 130}, {1280, 720}};
  for (const auto& [width, height] : kSizes) {
    const HilbertTiles tiles(width, height);
    const std::int32_t side = 1 << tiles.Levels();
    std::vector<int> visits(static_cast<std::size_t>(tiles.TileCount()));
    int skipped = 0;
    TilePosition before{-1, 0};
    for (std::int32_t i = 0; i < tiles.TileCount(); ++i) {
      const TilePosition p = tiles.TileToPosition(i);
      ASSERT_TRUE(p.x >= 0 && p.x < side && p.y >= 0 && p.y < side) << i;
      EXPECT_EQ(std::abs(p.x - before.x) + std::abs(p.y - before.y), 1) << i;
      const TilePosition walked = WalkAllQuarters(tiles.Levels(), static_cast<std::uint64_t>(i));
      EXPECT_TRUE(p.x == walked.x && p.y == walked.y) << i;
      ++visits[static_cast<std::size_t>(p.y) * static_cast<std::size_t>(side) +
               static_cast<std::size_t>(p.x)];
      if (!tiles.Contains(p)) ++skipped;
      before = p;
    }
    for (const int count : visits) ASSERT_EQ(count, 1);
    EXPECT_EQ(skipped, tiles.TileCount() - tiles.TilesX() * tiles.TilesY());
    if (width == 100) {
      EXPECT_EQ(skipped, 243);
    }
  }
}

TEST(TileQueue, HandsOutTheTilesOfThePictureAndPassesTheRestInLargeStretches) {
  constexpr int kSizes[][2] = {{0, 5}, {1, 1}, {9, 9}, {100, 8}, {8, 100}, {250, 130}, {1280, 720}};
  for (const auto& [width, height] : kSizes) {
    TileQueue queue(width, height);
    const HilbertTiles& tiles = queue.tiles();
    std::vector<std::int32_t> expected;
    for (std::int32_t i = 0; i < tiles.TileCount(); ++i) {
      if (tiles.Contains(tiles.TileToPosition(i))) expected.push_back(i);
    }
    std::vector<std::int32_t> handedOut;
    std::int32_t passed = 0;
    std::size_t stretches = 0;
    queue.Drain(
        [&](std::int32_t i, const TilePosition& p) {
          const TilePosition known = tiles.TileToPosition(i);
          EXPECT_TRUE(p.x == known.x && p.y == known.y) << i;
          handedOut.push_back(i);
          return true;
        },
        [&](std::int32_t first, std::int32_t end) {
          EXPECT_EQ(first, passed);
          passed = end;
          ++stretches;
        });
    EXPECT_EQ(handedOut, expected) << width;
    EXPECT_EQ(passed, tiles.TileCount()) << width;
    // Of each size at most one row and one column of squares lie along the picture, and a corner.
    const int outside = 2 * (tiles.TilesX() + tiles.TilesY()) + 3 * tiles.Levels();
    EXPECT_LE(stretches, expected.size() + static_cast<std::size_t>(outside)) << width;
  }
}

TEST(TileQueue, HandsEachTileToOneOfManyThreads) {
  constexpr int kThreads = 4, kRounds = 20;
  for (int round = 0; round < kRounds; ++round) {
    TileQueue queue(1000, 420);
    std::vector<std::atomic<int>> handedOut(static_cast<std::size_t>(queue.tiles().TileCount()));
    const auto passed = [](std::int32_t, std::int32_t) {};
    const auto take = [&](std::int32_t i, const TilePosition&) {
      ++handedOut[static_cast<std::size_t>(i)];
      return true;
    };
    // One that leaves after its first tile keeps no more than its stretch from the others.
    int left = 0;
    queue.Drain([&](std::int32_t i, const TilePosition& p) { return ++left < 1 && take(i, p); },
                passed);
    EXPECT_EQ(left, 1);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t) threads.emplace_back([&] { queue.Drain(take, passed); });
    for (std::thread& thread : threads) thread.join();
    for (std::int32_t i = 0; i < queue.tiles().TileCount(); ++i) {
      const bool wanted = i >= 4 && queue.tiles().Contains(queue.tiles().TileToPosition(i));
      ASSERT_EQ(handedOut[static_cast<std::size_t>(i)], wanted ? 1 : 0) << i;
    }
  }
}

}  // namespace
}  // namespace qv

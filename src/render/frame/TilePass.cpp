#include "render/frame/TilePass.h"

#include <algorithm>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include "core/Log.h"
#include "platform/Threads.h"
#include "render/shade/ShadePacket.h"
#include "render/trace/FloatingPointMode.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

// How far apart the random draws of neighbouring tiles begin.
constexpr std::uint32_t kDrawsPerTile = 61;

// The share of `count` at the last of that many equal steps that lies from `first` to before `end`,
// if one does.
std::optional<float> LastStep(std::int32_t first, std::int32_t end, std::int32_t count,
                              std::int32_t steps) {
  const std::int32_t step = std::max(1, count / steps);
  const std::int32_t reached = (end - 1) / step * step;
  if (reached < first) return std::nullopt;
  return static_cast<float>(reached) / static_cast<float>(count);
}

}  // namespace

TilePass::TilePass(const PassSetup& setup, PacketPool& pool)
    : setup_(setup), pool_(pool), queue_(setup.target->width(), setup.target->height()) {}

void TilePass::Run(int threadCount) {
  std::vector<std::thread> workers;
  workers.reserve(static_cast<std::size_t>(threadCount));
  try {
    for (int i = 0; i < threadCount; ++i) workers.emplace_back([this, i] { Work(i); });
  } catch (const std::system_error& error) {
    Log(LogLevel::kWarning, std::string("no thread for a tile worker: ") + error.what());
  }
  // With no thread to be had the pass still comes to its end.
  if (workers.empty()) Work(0);
  for (std::thread& worker : workers) worker.join();
}

void TilePass::Work(int index) {
  platform::LowerCurrentThreadPriority();
  const FloatingPointMode mode;
  ShadeThread thread;
  pool_.Refill(index, thread.packets);
  queue_.Drain(
      [&](std::int32_t i, const TilePosition& tile) {
        if (!Abandoned() && IsWanted(tile)) TraceAndCopy(i, tile, thread);
        return !Abandoned();
      },
      [this](std::int32_t first, std::int32_t end) { Passed(first, end); });
  if (setup_.progress) setup_.progress(0);
}

void TilePass::TraceAndCopy(std::int32_t i, const TilePosition& tile, ShadeThread& thread) {
  const PacketLease packet(thread.packets);
  thread.nextDraw = static_cast<std::uint32_t>(i) * kDrawsPerTile;
  TraceTile(tile, *packet, thread);
  if (!Abandoned()) CopyTile(tile, *packet);
}

void TilePass::Passed(std::int32_t first, std::int32_t end) const {
  constexpr std::int32_t kReports = 10;
  constexpr std::int32_t kFractions = 256;
  const std::int32_t count = queue_.tiles().TileCount();
  if (setup_.progress) {
    if (const auto reached = LastStep(first, end, count, kReports)) setup_.progress(*reached);
  }
  if (setup_.fraction != nullptr) {
    if (const auto reached = LastStep(first, end, count, kFractions)) *setup_.fraction = *reached;
  }
}

bool TilePass::Abandoned() const {
  if (setup_.abandon != nullptr && setup_.abandon->load(std::memory_order_relaxed)) return true;
  if (!setup_.abortable) return false;
  const RenderState state = setup_.state->load(std::memory_order_relaxed);
  return state == RenderState::kStopping || state == RenderState::kQueued;
}

bool TilePass::IsWanted(const TilePosition& tile) const {
  if (setup_.mask == nullptr) return true;
  const int side = kTileSide / setup_.factor;
  return setup_.mask->AnyIn(side * tile.x, side * tile.y, side, side);
}

void TilePass::TraceTile(const TilePosition& tile, RayPacket& packet, ShadeThread& thread) const {
  StartPrimaryRays(setup_.target->rays, tile.x * kTileSide, tile.y * kTileSide, packet);
  TraceClosest(setup_.in->trace, packet);
  ShadePacket(*setup_.in, packet, thread, 0, false);
}

void TilePass::CopyTile(const TilePosition& tile, const RayPacket& packet) const {
  RenderTarget& target = *setup_.target;
  const int x0 = tile.x * kTileSide;
  const int y0 = tile.y * kTileSide;
  const int columns = std::min(kTileSide, target.width() - x0);
  const int rows = std::min(kTileSide, target.height() - y0);
  if (columns == kTileSide && rows == kTileSide) {
    StoreTile(packet.color, target.Row(y0) + static_cast<std::size_t>(x0) * 3,
              target.pitch() / sizeof(float));
    return;
  }
  for (int y = 0; y < rows; ++y) {
    float* to = target.Row(y0 + y) + static_cast<std::size_t>(x0) * 3;
    const int lane = y * kTileSide;
    for (int x = 0; x < columns; ++x, to += 3) {
      for (int c = 0; c < 3; ++c) to[c] = packet.color[c][lane + x];
    }
  }
}

}  // namespace qv

#pragma once

#include <atomic>
#include <functional>

#include "render/RenderModes.h"
#include "render/frame/EdgeMask.h"
#include "render/frame/RenderTarget.h"
#include "render/frame/TileQueue.h"
#include "render/shade/ShadeInputs.h"
#include "render/shade/ShadeThread.h"
#include "render/trace/ThreadPackets.h"

namespace qv {

// What one pass over a picture works on.
struct PassSetup {
  const ShadeInputs* in = nullptr;
  RenderTarget* target = nullptr;
  // Only in the antialiasing pass: the pixels of the base picture that are worth it, and samples a
  // pixel on each axis.
  const EdgeMask* mask = nullptr;
  int factor = 1;
  // Workers leave at the next tile when a stop or a new job is asked for.
  bool abortable = false;
  const std::atomic<RenderState>* state = nullptr;
  // Once true, workers leave every pass at the next tile; may be null.
  const std::atomic<bool>* abandon = nullptr;
  // Holds how much of the pass has been handed out, 0 to 1; may be null.
  std::atomic<float>* fraction = nullptr;
  // Told about now and then how far the pass is; may be empty.
  std::function<void(float)> progress;
};

// One pass: hands the tiles of the target to workers in Hilbert order.
class TilePass {
 public:
  TilePass(const PassSetup& setup, PacketPool& pool);

  // Traces with that many new threads, and waits for them.
  void Run(int threadCount);

 private:
  void Work(int index);
  void TraceAndCopy(std::int32_t i, const TilePosition& tile, ShadeThread& thread);
  // Tells that the tiles from `first` to before `end` are handed out.
  void Passed(std::int32_t first, std::int32_t end) const;
  bool Abandoned() const;
  // False for a tile without a marked pixel.
  bool IsWanted(const TilePosition& tile) const;
  void TraceTile(const TilePosition& tile, RayPacket& packet, ShadeThread& thread) const;
  void CopyTile(const TilePosition& tile, const RayPacket& packet) const;

  const PassSetup& setup_;
  PacketPool& pool_;
  TileQueue queue_;
};

}  // namespace qv

#pragma once

#include <cstddef>

#include "core/RenderCamera.h"
#include "render/geometry/RenderScene.h"

namespace qv::bench {

// What a bare loop over the ray library did.
struct BareRun {
  double seconds = 0;
  std::size_t rays = 0;
};

// The primary rays of a picture, and nothing but rtcIntersect8 on them: packets of 4 by 2 pixels,
// tiles in the engine's order, that many new threads as in the engine.
BareRun BareIntersect(const RenderScene& scene, const RenderCamera& camera, int width, int height,
                      int threads);

// The shadow rays towards a directional light from all the surfaces of that picture which face it,
// and nothing but rtcOccluded8 on them, with the engine's filter.
class BareOcclusion {
 public:
  BareOcclusion(const RenderScene& scene, const RenderCamera& camera, int width, int height,
                const Vec3& towardsLight);
  BareRun Run(int threads) const;

 private:
  struct Block {
    alignas(32) int valid[8];
    alignas(32) float x[8], y[8], z[8];
  };

  const RenderScene& scene_;
  Vec3 towardsLight_;
  float footprintScale_;
  std::vector<Block> blocks_;
  std::size_t rays_ = 0;
};

}  // namespace qv::bench

#pragma once

#include <atomic>
#include <cstddef>
#include <mutex>
#include <vector>

#include "Scenes.h"
#include "core/RenderCamera.h"
#include "render/geometry/RenderScene.h"
#include "render/trace/TraceKernels.h"

namespace qv::bench {

// What a bare loop over the ray library did.
struct BareRun {
  double seconds = 0;
  std::size_t rays = 0;
};

// A scene built for the ray library alone, and ready for rays.
class BareScene {
 public:
  explicit BareScene(const BenchScene& scene);
  ~BareScene();
  BareScene(const BareScene&) = delete;
  BareScene& operator=(const BareScene&) = delete;

  RenderScene& scene() { return scene_; }
  const RenderScene& scene() const { return scene_; }
  RTCDevice device() const { return device_; }

 private:
  RTCDevice device_;
  RenderScene scene_;
};

// The primary rays of a picture, and nothing but rtcIntersect8 on them: packets of 4 by 2 pixels,
// tiles in the engine's order, that many new threads as in the engine.
BareRun BareIntersect(const RenderScene& scene, const RenderCamera& camera, int width, int height,
                      int threads);

// The occlusion rays of a pass, taken down while it runs, and nothing but rtcOccluded8 on them,
// with the engine's filter: the same packets in the same order, with the lanes that the engine
// leaves out left out too.
class RecordedOcclusion : public TraceObserver {
 public:
  RecordedOcclusion(const RenderScene& scene, float footprintScale);

  void OnClosest(const RayPacket& packet) override;
  void OnShadow(const LaneFloats (&origin)[3], const LaneFloats (&d)[3], float tfar,
                const LaneInts& mask) override;

  // What comes later is left out.
  void Finish() { finished_ = true; }

  BareRun Run(int threads) const;

 private:
  struct Block {
    alignas(32) int valid[8];
    alignas(32) float origin[3][8];
    alignas(32) float direction[3][8];
    float tfar;
  };

  const RenderScene& scene_;
  float footprintScale_;
  std::atomic<bool> finished_{false};
  std::mutex mutex_;
  std::vector<Block> blocks_;
  std::size_t rays_ = 0;
};

// The rays of a pass that go on from where others ended, behind glass for instance, taken down
// while it runs, and nothing but rtcIntersect8 on them: the same packets in the same order.
class RecordedFollowers : public TraceObserver {
 public:
  explicit RecordedFollowers(const RenderScene& scene) : scene_(scene) {}

  void OnClosest(const RayPacket& packet) override;
  void OnShadow(const LaneFloats (&)[3], const LaneFloats (&)[3], float, const LaneInts&) override {
  }

  void Clear() { blocks_.clear(); }
  // Seconds with that many new threads.
  double Run(int threads) const;

 private:
  struct Block {
    alignas(32) int valid[8];
    alignas(32) float origin[3][8];
    alignas(32) float direction[3][8];
  };

  const RenderScene& scene_;
  std::mutex mutex_;
  std::vector<Block> blocks_;
};

}  // namespace qv::bench

#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <span>
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

// Rays of a pass, taken down packet by packet while it runs, to be traced once more by a bare loop:
// the same packets in the same order, without the lanes that the engine leaves out.
class RayRecord {
 public:
  struct Block {
    alignas(32) int valid[8];
    alignas(32) float origin[3][8];
    alignas(32) float direction[3][8];
    float tfar;
  };

  // Adds the lanes whose words in `active` are not 0; blocks without any are left out. Any thread.
  void Add(const LaneFloats (&origin)[3], const LaneFloats (&direction)[3], float tfar,
           const LaneInts& active);
  void Clear();

  // Traces all blocks with that many new threads; `trace` gets a few at a time, on each of them.
  BareRun Run(int threads, const std::function<void(std::span<const Block>)>& trace) const;

 private:
  std::mutex mutex_;
  std::vector<Block> blocks_;
  std::size_t rays_ = 0;
};

// The occlusion rays of a pass, and nothing but rtcOccluded8 on them with the engine's filter.
class RecordedOcclusion : public TraceObserver {
 public:
  RecordedOcclusion(const RenderScene& scene, float footprintScale)
      : scene_(scene), footprintScale_(footprintScale) {}

  void OnClosest(const RayPacket&) override {}
  void OnShadow(const LaneFloats (&origin)[3], const LaneFloats (&d)[3], float tfar,
                const LaneInts& mask) override;

  // What comes later is left out.
  void Finish() { finished_ = true; }

  BareRun Run(int threads) const;

 private:
  const RenderScene& scene_;
  float footprintScale_;
  std::atomic<bool> finished_{false};
  RayRecord record_;
};

// The rays of a pass that go on from where others ended, behind glass for instance, and nothing
// but rtcIntersect8 on them.
class RecordedFollowers : public TraceObserver {
 public:
  explicit RecordedFollowers(const RenderScene& scene) : scene_(scene) {}

  void OnClosest(const RayPacket& packet) override;
  void OnShadow(const LaneFloats (&)[3], const LaneFloats (&)[3], float, const LaneInts&) override {
  }

  void Clear() { record_.Clear(); }
  BareRun Run(int threads) const;

 private:
  const RenderScene& scene_;
  RayRecord record_;
};

}  // namespace qv::bench

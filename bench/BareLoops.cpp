#include "BareLoops.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/Threads.h"
#include "render/frame/PixelRays.h"
#include "render/frame/TileQueue.h"
#include "render/trace/FloatingPointMode.h"
#include "render/trace/PacketBlocks.h"
#include "render/trace/RayPacket.h"
#include "render/trace/TraceKernels.h"
#include "render/trace/TransmissionFilter.h"
#include "render/trace/VectorOps.h"

namespace qv::bench {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

void FillRays(RTCRay8& ray, float tfar) {
  for (int i = 0; i < 8; ++i) {
    ray.tnear[i] = 0;
    ray.tfar[i] = tfar;
    ray.time[i] = 0;
    ray.mask[i] = ~0u;
    ray.id[i] = static_cast<unsigned>(i);
    ray.flags[i] = 0;
  }
}

void FillRays(RTCRay8& ray, const RayRecord::Block& block) {
  FillRays(ray, block.tfar);
  std::copy_n(block.origin[0], 8, ray.org_x);
  std::copy_n(block.origin[1], 8, ray.org_y);
  std::copy_n(block.origin[2], 8, ray.org_z);
  std::copy_n(block.direction[0], 8, ray.dir_x);
  std::copy_n(block.direction[1], 8, ray.dir_y);
  std::copy_n(block.direction[2], 8, ray.dir_z);
}

template <class Work>
double Timed(int threads, const Work& work) {
  const double start = platform::NowSeconds();
  std::vector<std::thread> workers;
  workers.reserve(static_cast<std::size_t>(threads));
  for (int i = 0; i < threads; ++i) {
    workers.emplace_back([&work] {
      platform::LowerCurrentThreadPriority();
      const FloatingPointMode mode;
      work();
    });
  }
  for (std::thread& worker : workers) worker.join();
  return platform::NowSeconds() - start;
}

}  // namespace

BareScene::BareScene(const BenchScene& scene) : device_(rtcNewDevice("")), scene_(device_) {
  for (const MaterialParameters& material : scene.materials) scene_.AddMaterial(material);
  for (const BenchMesh& mesh : scene.meshes) {
    scene_.BeginStaticMesh();
    scene_.AddMeshData(mesh.vertices, mesh.triangles);
    scene_.EndMesh();
  }
  scene_.Build(nullptr);
  // An engine does so before each frame; rays do not meet a scene that was not committed.
  scene_.CommitForFrame(scene.camera.forward);
}

BareScene::~BareScene() {
  scene_.Clear();
  rtcReleaseDevice(device_);
}

BareRun BareIntersect(const RenderScene& scene, const RenderCamera& camera, int width, int height,
                      int threads) {
  const PixelRays rays = ComputePixelRays(camera, width, height);
  TileQueue queue(width, height);
  std::atomic<std::size_t> traced{0};
  BareRun run;
  run.seconds = Timed(threads, [&] {
    alignas(64) LaneFloats direction[3];
    alignas(32) const int valid[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    std::size_t count = 0;
    const auto trace = [&](std::int32_t, const TilePosition& tile) {
      TileDirections(rays, tile.x * kTileSide, tile.y * kTileSide, direction);
      NormaliseDirections(direction);
      for (int block = 0; block < 8; ++block) {
        alignas(32) RTCRayHit8 query;
        FillRays(query.ray, kInfinity);
        for (int k = 0; k < 8; ++k) {
          const int lane = LaneOf(block, k);
          query.ray.org_x[k] = rays.eye[0];
          query.ray.org_y[k] = rays.eye[1];
          query.ray.org_z[k] = rays.eye[2];
          query.ray.dir_x[k] = direction[0][lane];
          query.ray.dir_y[k] = direction[1][lane];
          query.ray.dir_z[k] = direction[2][lane];
          query.hit.geomID[k] = RTC_INVALID_GEOMETRY_ID;
          query.hit.instID[0][k] = RTC_INVALID_GEOMETRY_ID;
        }
        rtcIntersect8(valid, scene.EmbreeScene(), &context, &query);
        count += 8;
      }
      return true;
    };
    queue.Drain(trace, [](std::int32_t, std::int32_t) {});
    traced += count;
  });
  run.rays = traced;
  return run;
}

void RayRecord::Add(const LaneFloats (&origin)[3], const LaneFloats (&direction)[3], float tfar,
                    const LaneInts& active) {
  const std::lock_guard lock(mutex_);
  for (int block = 0; block < kBlocks; ++block) {
    Block out{};
    std::size_t valid = 0;
    for (int i = 0; i < 8; ++i) {
      const int lane = LaneOf(block, i);
      if (active[lane] == 0) continue;
      out.valid[i] = -1;
      ++valid;
      for (int axis = 0; axis < 3; ++axis) {
        out.origin[axis][i] = origin[axis][lane];
        out.direction[axis][i] = direction[axis][lane];
      }
    }
    if (valid == 0) continue;
    out.tfar = tfar;
    blocks_.push_back(out);
    rays_ += valid;
  }
}

void RayRecord::Clear() {
  blocks_.clear();
  rays_ = 0;
}

BareRun RayRecord::Run(int threads,
                       const std::function<void(std::span<const Block>)>& trace) const {
  constexpr std::size_t kChunk = 64;
  std::atomic<std::size_t> next{0};
  const std::span<const Block> all(blocks_);
  BareRun run;
  run.rays = rays_;
  run.seconds = Timed(threads, [&] {
    for (std::size_t first = next.fetch_add(kChunk); first < all.size();
         first = next.fetch_add(kChunk)) {
      trace(all.subspan(first, std::min(kChunk, all.size() - first)));
    }
  });
  return run;
}

void RecordedOcclusion::OnShadow(const LaneFloats (&origin)[3], const LaneFloats (&d)[3],
                                 float tfar, const LaneInts& mask) {
  if (finished_) return;
  alignas(64) LaneInts active;
  for (int lane = 0; lane < kLanes; ++lane) active[lane] = mask[lane] >= 0 ? -1 : 0;
  record_.Add(origin, d, tfar, active);
}

BareRun RecordedOcclusion::Run(int threads) const {
  return record_.Run(threads, [this](std::span<const RayRecord::Block> blocks) {
    for (const RayRecord::Block& block : blocks) {
      alignas(32) RTCRay8 ray;
      FillRays(ray, block);
      ShadowContext context;
      InitShadowContext(context, scene_, footprintScale_);
      rtcOccluded8(block.valid, scene_.EmbreeScene(), &context.context, &ray);
    }
  });
}

void RecordedFollowers::OnClosest(const RayPacket& packet) {
  alignas(64) LaneInts active;
  for (int lane = 0; lane < kLanes; ++lane) {
    // Primary rays have come no way yet.
    active[lane] = packet.geometry[lane] >= 0 && packet.distance[lane] > 0 ? -1 : 0;
  }
  record_.Add(packet.position, packet.direction, kInfinity, active);
}

BareRun RecordedFollowers::Run(int threads) const {
  return record_.Run(threads, [this](std::span<const RayRecord::Block> blocks) {
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    for (const RayRecord::Block& block : blocks) {
      alignas(32) RTCRayHit8 query;
      FillRays(query.ray, block);
      std::fill_n(query.hit.geomID, 8, RTC_INVALID_GEOMETRY_ID);
      std::fill_n(query.hit.instID[0], 8, RTC_INVALID_GEOMETRY_ID);
      rtcIntersect8(block.valid, scene_.EmbreeScene(), &context, &query);
    }
  });
}

}  // namespace qv::bench

#include "BareLoops.h"

#include <atomic>
#include <limits>
#include <thread>
#include <vector>

#include "platform/Clock.h"
#include "platform/Threads.h"
#include "render/frame/HilbertTiles.h"
#include "render/frame/PixelRays.h"
#include "render/trace/FloatingPointMode.h"
#include "render/trace/RayPacket.h"
#include "render/trace/TraceKernels.h"
#include "render/trace/TransmissionFilter.h"
#include "render/trace/VectorOps.h"

namespace qv::bench {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Pixel of ray i of block b in a tile of 8 by 8.
int ColumnOf(int block, int i) {
  return block % 2 * 4 + i % 4;
}
int RowOf(int block, int i) {
  return block / 2 * 2 + i / 4;
}

void FillRays(RTCRay8& ray) {
  for (int i = 0; i < 8; ++i) {
    ray.tnear[i] = 0;
    ray.tfar[i] = kInfinity;
    ray.time[i] = 0;
    ray.mask[i] = ~0u;
    ray.id[i] = static_cast<unsigned>(i);
    ray.flags[i] = 0;
  }
}

// The interpolated normal that shading decides by whether a surface faces the light.
Vec3 ShadingNormal(const RenderScene& scene, const RTCHit& hit) {
  const Mesh& mesh = *scene.Meshes()[hit.geomID];
  const std::uint32_t* corner = mesh.Indices() + std::size_t{hit.primID} * 3;
  const auto at = [&](int k) {
    const PaddedVec3& n = mesh.Normals()[corner[k]];
    return Vec3(n.x, n.y, n.z);
  };
  return (1 - hit.u - hit.v) * at(0) + hit.u * at(1) + hit.v * at(2);
}

template <class Work>
double Timed(int threads, const Work& work) {
  const double start = platform::NowSeconds();
  std::vector<std::thread> workers;
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

BareRun BareIntersect(const RenderScene& scene, const RenderCamera& camera, int width, int height,
                      int threads) {
  const PixelRays rays = ComputePixelRays(camera, width, height);
  const HilbertTiles tiles(width, height);
  std::atomic<std::int32_t> next{0};
  std::atomic<std::size_t> traced{0};
  BareRun run;
  run.seconds = Timed(threads, [&] {
    alignas(64) LaneFloats direction[3];
    alignas(32) const int valid[8] = {-1, -1, -1, -1, -1, -1, -1, -1};
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    std::size_t count = 0;
    for (std::int32_t i = next++; i < tiles.TileCount(); i = next++) {
      const TilePosition tile = tiles.TileToPosition(i);
      if (!tiles.Contains(tile)) continue;
      TileDirections(rays, tile.x * kTileSide, tile.y * kTileSide, direction);
      NormaliseDirections(direction);
      for (int block = 0; block < 8; ++block) {
        alignas(32) RTCRayHit8 query;
        FillRays(query.ray);
        for (int k = 0; k < 8; ++k) {
          const int lane = RowOf(block, k) * kTileSide + ColumnOf(block, k);
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
    }
    traced += count;
  });
  run.rays = traced;
  return run;
}

BareOcclusion::BareOcclusion(const RenderScene& scene, const RenderCamera& camera, int width,
                             int height, const Vec3& towardsLight)
    : scene_(scene),
      towardsLight_(towardsLight),
      footprintScale_(camera.fieldOfView / static_cast<float>(height)) {
  const PixelRays rays = ComputePixelRays(camera, width, height);
  const HilbertTiles tiles(width, height);
  for (std::int32_t t = 0; t < tiles.TileCount(); ++t) {
    const TilePosition tile = tiles.TileToPosition(t);
    if (!tiles.Contains(tile)) continue;
    for (int block = 0; block < 8; ++block) {
      Block out{};
      bool any = false;
      for (int i = 0; i < 8; ++i) {
        const Vec3 direction =
            rays.Direction(static_cast<float>(tile.x * kTileSide + ColumnOf(block, i)),
                           static_cast<float>(tile.y * kTileSide + RowOf(block, i)))
                .normalized();
        RTCRayHit query{};
        query.ray.org_x = rays.eye[0];
        query.ray.org_y = rays.eye[1];
        query.ray.org_z = rays.eye[2];
        query.ray.dir_x = direction.x();
        query.ray.dir_y = direction.y();
        query.ray.dir_z = direction.z();
        query.ray.tfar = kInfinity;
        query.ray.mask = ~0u;
        query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
        RTCIntersectContext context;
        rtcInitIntersectContext(&context);
        rtcIntersect1(scene.EmbreeScene(), &context, &query);
        if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID) continue;
        Vec3 normal = ShadingNormal(scene, query.hit);
        if (normal.dot(direction) > 0) normal = -normal;
        if (!(normal.dot(towardsLight) > 0)) continue;
        const float t0 = query.ray.tfar + kHitPullBack;
        out.valid[i] = -1;
        out.x[i] = rays.eye[0] + t0 * direction.x();
        out.y[i] = rays.eye[1] + t0 * direction.y();
        out.z[i] = rays.eye[2] + t0 * direction.z();
        any = true;
        ++rays_;
      }
      if (any) blocks_.push_back(out);
    }
  }
}

BareRun BareOcclusion::Run(int threads) const {
  constexpr std::size_t kChunk = 64;
  std::atomic<std::size_t> next{0};
  BareRun run;
  run.rays = rays_;
  run.seconds = Timed(threads, [&] {
    for (std::size_t first = next.fetch_add(kChunk); first < blocks_.size();
         first = next.fetch_add(kChunk)) {
      const std::size_t last = std::min(first + kChunk, blocks_.size());
      for (std::size_t b = first; b < last; ++b) {
        const Block& block = blocks_[b];
        alignas(32) RTCRay8 ray;
        FillRays(ray);
        for (int i = 0; i < 8; ++i) {
          ray.org_x[i] = block.x[i];
          ray.org_y[i] = block.y[i];
          ray.org_z[i] = block.z[i];
          ray.dir_x[i] = towardsLight_.x();
          ray.dir_y[i] = towardsLight_.y();
          ray.dir_z[i] = towardsLight_.z();
        }
        ShadowContext context;
        InitShadowContext(context, scene_, footprintScale_);
        rtcOccluded8(block.valid, scene_.EmbreeScene(), &context.context, &ray);
      }
    }
  });
  return run;
}

}  // namespace qv::bench

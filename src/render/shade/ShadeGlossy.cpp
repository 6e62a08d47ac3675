#include "core/Rotation.h"
#include "render/shade/LaneFill.h"
#include "render/shade/ShadePacket.h"

namespace qv {
namespace {

constexpr int kMostRounds = 6;

// What blurred reflections are traced with from wherever they start, so that they end soon.
constexpr int kGlossyDepth = 7;

// The rays of one round, as the active lanes of `rays`; false if there are none.
bool MakeRound(const RayPacket& packet, int round, const Vec3* samples, RayPacket& rays) {
  Fill(rays.t, 0);
  Fill(rays.geometry, -1);
  Copy(packet.throughput, rays.throughput);
  Copy(packet.distance, rays.distance);
  bool any = false;
  for (int lane = 0; lane < kLanes; ++lane) {
    const std::int32_t kind = packet.reflectKind[lane];
    Vec3 direction(packet.direction[0][lane], packet.direction[1][lane], packet.direction[2][lane]);
    if (kind == 1 && round == 0) {
      // A mirror needs one ray.
    } else if (kind > 1 && round <= kind - 2) {
      rays.throughput[lane] = packet.throughput[lane] / static_cast<float>(kind - 1);
      direction = (RotationBetween(Vec3::UnitZ(), direction) * samples[lane]).normalized();
    } else {
      continue;
    }
    for (int axis = 0; axis < 3; ++axis) rays.direction[axis][lane] = direction[axis];
    rays.t[lane] = kUnlimited;
    rays.geometry[lane] = 0;
    any = true;
  }
  return any;
}

}  // namespace

void ShadeGlossy(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread) {
  const PacketLease rays(thread.packets);
  for (int round = 0; round < kMostRounds; ++round) {
    const std::uint32_t start = in.directions->GlossyStart(thread.nextDraw++);
    if (!MakeRound(packet, round, &in.directions->glossy[start], *rays)) break;
    Fill(rays->color, 0);
    Fill(rays->iorTo, 1);
    Copy(packet.position, rays->position);
    TraceClosest(in.trace, *rays);
    ShadePacket(in, *rays, thread, kGlossyDepth, true);
    for (int lane = 0; lane < kLanes; ++lane) {
      if (packet.reflectKind[lane] <= 0) continue;
      for (int c = 0; c < 3; ++c) packet.color[c][lane] += rays->color[c][lane];
    }
  }
}

}  // namespace qv

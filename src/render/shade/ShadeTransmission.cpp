#include <cmath>

#include "render/shade/LaneFill.h"
#include "render/shade/ShadePacket.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

// Bends the ray of one lane at a surface; false if it is totally reflected, which ends it.
bool Refract(const RayPacket& from, RayPacket& to, int lane) {
  constexpr float kTotalReflection = 0.99999f;
  const Vec3 n(from.normal[0][lane], from.normal[1][lane], from.normal[2][lane]);
  const Vec3 view =
      -Vec3(from.direction[0][lane], from.direction[1][lane], from.direction[2][lane]).normalized();
  const float eta = from.iorFrom[lane] / from.iorTo[lane];
  const float c = n.dot(view);
  const float k = (1 - c * c) * eta * eta;
  if (k > kTotalReflection) return false;
  const Vec3 refracted = -n * std::sqrt(1 - k) - (view - n * c) * eta;
  for (int axis = 0; axis < 3; ++axis) to.direction[axis][lane] = refracted[axis];
  return true;
}

// The rays that go on behind the surfaces, as the active lanes of `through`.
void MakeTransmittedRays(const RayPacket& packet, RayPacket& through) {
  // A tenth undoes the pull-back of the hit, another tenth lies beyond the surface.
  constexpr float kBeyondSurface = 0.2f;
  Fill(through.color, 0);
  Fill(through.t, 0);
  Copy(packet.distance, through.distance);
  Copy(packet.transmitKind, through.geometry);
  Copy(packet.direction, through.direction);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.transmitKind[lane] < 0) continue;
    for (int axis = 0; axis < 3; ++axis) {
      through.position[axis][lane] =
          packet.position[axis][lane] + kBeyondSurface * packet.direction[axis][lane];
    }
    if (packet.transmitKind[lane] == 1 && !Refract(packet, through, lane)) {
      through.geometry[lane] = -1;
      through.t[lane] = -1;
    }
  }
  NormaliseDirections(through.direction);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (through.geometry[lane] < 0) continue;
    through.t[lane] = kUnlimited;
    through.iorTo[lane] = packet.iorTo[lane];
    through.throughput[lane] = (1 - packet.alpha[lane]) * packet.throughput[lane];
  }
}

}  // namespace

void ShadeTransmission(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread, int depth,
                       bool forceMirror) {
  const PacketLease through(thread.packets);
  MakeTransmittedRays(packet, *through);
  TraceClosest(in.trace, *through);
  ShadePacket(in, *through, thread, depth + 1, forceMirror);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] < 0 && through->geometry[lane] < 0) continue;
    for (int c = 0; c < 3; ++c) packet.color[c][lane] += through->color[c][lane];
  }
}

}  // namespace qv

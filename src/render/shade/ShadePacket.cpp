#include "render/shade/ShadePacket.h"

#include <algorithm>
#include <cmath>

#include "render/trace/VectorOps.h"

namespace qv {
namespace {

// A ray that left the scene takes the background's colour; the others add to their length.
void FinishRays(const ShadeInputs& in, RayPacket& packet) {
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.t[lane] > 0 && packet.geometry[lane] < 0) {
      const Vec3 sky = in.background->Sample(
          {packet.direction[0][lane], packet.direction[1][lane], packet.direction[2][lane]});
      for (int c = 0; c < 3; ++c) packet.color[c][lane] += sky[c] * packet.throughput[lane];
    } else {
      packet.distance[lane] += packet.t[lane];
    }
  }
}

void InterpolateNormals(const RenderScene& scene, RayPacket& packet) {
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] < 0) continue;
    const Mesh& mesh = *scene.Meshes()[packet.geometry[lane]];
    const std::uint32_t* corner = mesh.Indices() + std::size_t(packet.primitive[lane]) * 3;
    const PaddedVec3* normals = mesh.Normals();
    const PaddedVec3& n0 = normals[corner[0]];
    const PaddedVec3& n1 = normals[corner[1]];
    const PaddedVec3& n2 = normals[corner[2]];
    const float u = packet.hitU[lane];
    const float v = packet.hitV[lane];
    const float w = 1 - u - v;
    packet.normal[0][lane] = w * n0.x + u * n1.x + v * n2.x;
    packet.normal[1][lane] = w * n0.y + u * n1.y + v * n2.y;
    packet.normal[2][lane] = w * n0.z + u * n1.z + v * n2.z;
  }
  NormaliseNormals(packet.normal, packet.geometry);
}

void Fill(LaneInts& lanes, std::int32_t value) {
  std::fill_n(lanes, kLanes, value);
}
void Fill(LaneFloats& lanes, float value) {
  std::fill_n(lanes, kLanes, value);
}
void Copy(const LaneFloats& from, LaneFloats& to) {
  std::copy_n(from, kLanes, to);
}

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
  for (auto& channel : through.color) Fill(channel, 0);
  Fill(through.t, 0);
  Copy(packet.distance, through.distance);
  std::copy_n(packet.transmitKind, kLanes, through.geometry);
  for (int axis = 0; axis < 3; ++axis) Copy(packet.direction[axis], through.direction[axis]);
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

void ShadeTransmission(const ShadeInputs& in, RayPacket& packet, ThreadPackets& packets, int depth,
                       bool forceMirror) {
  const PacketLease through(packets);
  MakeTransmittedRays(packet, *through);
  TraceClosest(in.trace, *through);
  const bool previewPass = in.pass == PassPreview || in.pass == PassSunPreview;
  if (!previewPass || depth == 0) ShadePacket(in, *through, packets, depth + 1, forceMirror);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] < 0 && through->geometry[lane] < 0) continue;
    for (int c = 0; c < 3; ++c) packet.color[c][lane] += through->color[c][lane];
  }
}

// Turns the packet's rays into their mirror rays.
void MakeReflectedRays(RayPacket& packet) {
  constexpr float kLeastThroughput = 0.02f;
  Reflect(packet.direction, packet.normal, packet.reflectKind, packet.direction);
  Fill(packet.t, 0);
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.reflectKind[lane] < 0) {
      packet.geometry[lane] = -1;
      continue;
    }
    packet.throughput[lane] *= packet.reflectance[lane];
    if (packet.throughput[lane] >= kLeastThroughput) packet.t[lane] = kUnlimited;
  }
}

}  // namespace

void ShadePacket(const ShadeInputs& in, RayPacket& packet, ThreadPackets& packets, int depth,
                 bool forceMirror) {
  while (true) {
    FinishRays(in, packet);
    if (!AnyActive(packet.geometry)) return;
    InterpolateNormals(*in.scene, packet);
    NormaliseDirections(packet.direction);
    DotProducts(packet.direction, packet.normal, packet.geometry, packet.incidence);
    Fill(packet.hasDiffuse, -1);
    Fill(packet.hasSpecular, -1);
    Fill(packet.reflectKind, -1);
    Fill(packet.transmitKind, -1);
    FetchMaterial(in, packet, forceMirror);
    ShadeAmbient(in, packet);
    if (in.pass != PassPreview) ShadeDirect(in, packet);

    if (AnyActive(packet.transmitKind)) {
      if (depth == kMostDepth) return;
      ShadeTransmission(in, packet, packets, depth, forceMirror);
    }

    if (depth == kMostDepth || in.pass == PassPreview || in.pass == PassSunPreview) return;
    ++depth;
    if (!AnyActive(packet.reflectKind)) return;
    MakeReflectedRays(packet);
    TraceClosest(in.trace, packet);
  }
}

}  // namespace qv

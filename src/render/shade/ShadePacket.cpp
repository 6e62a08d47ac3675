#include "render/shade/ShadePacket.h"

#include "render/shade/LaneFill.h"
#include "render/trace/CubeLookup.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

// A ray that left the scene takes the background's colour; the others add to their length.
void FinishRays(const ShadeInputs& in, RayPacket& packet) {
  alignas(64) LaneInts gone;
  for (int lane = 0; lane < kLanes; ++lane) {
    const bool left = packet.t[lane] > 0 && packet.geometry[lane] < 0;
    gone[lane] = left ? 0 : -1;
    packet.distance[lane] += left ? 0.0f : packet.t[lane];
  }
  if (!AnyActive(gone)) return;
  constexpr float kWhite[3] = {1, 1, 1};
  alignas(64) LaneFloats sky[3];
  SampleCube(*in.background, packet.direction, gone, sky);
  AddScaled(packet.color, gone, 1.0f, packet.throughput, sky, kWhite);
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

// Turns the packet's rays into their mirror rays; true if one of them is to be blurred.
bool MakeReflectedRays(RayPacket& packet) {
  constexpr float kLeastThroughput = 0.02f;
  Reflect(packet.direction, packet.normal, packet.reflectKind, packet.direction);
  Fill(packet.t, 0);
  bool blurred = false;
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.reflectKind[lane] < 0) {
      packet.geometry[lane] = -1;
      continue;
    }
    packet.throughput[lane] *= packet.reflectance[lane];
    if (packet.throughput[lane] < kLeastThroughput) continue;
    packet.t[lane] = kUnlimited;
    blurred |= packet.reflectKind[lane] > 1;
  }
  return blurred;
}

void ResetSurface(RayPacket& packet) {
  Fill(packet.hasDiffuse, -1);
  Fill(packet.hasSpecular, -1);
  Fill(packet.reflectKind, -1);
  Fill(packet.transmitKind, -1);
}

}  // namespace

void ShadePacket(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread, int depth,
                 bool forceMirror) {
  const bool previewPass = in.pass == PassPreview || in.pass == PassSunPreview;
  // A preview looks through one surface only: what lies behind the next stays black.
  const int mostDepth = previewPass ? 1 : kMostDepth;
  while (true) {
    FinishRays(in, packet);
    if (!AnyActive(packet.geometry)) return;
    InterpolateNormals(*in.scene, packet);
    NormaliseDirections(packet.direction);
    DotProducts(packet.direction, packet.normal, packet.geometry, packet.incidence);
    ResetSurface(packet);
    FetchMaterial(in, packet, forceMirror);
    ShadeAmbient(in, packet, thread, depth);
    if (in.pass != PassPreview) {
      ShadeDirect(in, packet);
      if (!(in.switches.useLightmap && in.switches.lightmapHasLEM)) ShadeLEM(in, packet);
    }

    if (AnyActive(packet.transmitKind)) {
      if (depth == mostDepth) return;
      ShadeTransmission(in, packet, thread, depth, forceMirror);
    }

    if (depth == mostDepth || previewPass) return;
    ++depth;
    if (!AnyActive(packet.reflectKind)) return;
    if (MakeReflectedRays(packet)) return ShadeGlossy(in, packet, thread);
    TraceClosest(in.trace, packet);
  }
}

}  // namespace qv

#include "render/shade/LaneFill.h"
#include "render/shade/ShadePacket.h"
#include "render/trace/CubeLookup.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

constexpr float kPreviewWeight = 0.8f;
constexpr float kAmbientWeight = 0.5f;
constexpr float kWhite[3] = {1, 1, 1};
constexpr float kAmbientColor[3] = {0.8784314f, 0.9882353f, 1.0f};

// How far something may stand off and still take ambient light away, in model units.
constexpr float kOcclusionReach = 20.0f;
// Occlusion rays go out from what the eye sees and from the first surface behind or mirrored in it.
constexpr int kOcclusionDepth = 2;

bool ShownWhenStill(RenderPass pass) {
  return pass == PassFull || pass == PassAntialias;
}

// color += factor * weight * diffuse * light, each lane under a light of its own
void AddLight(const LaneInts& mask, float factor, const LaneFloats& weight,
              const LaneFloats (&light)[3], RayPacket& packet) {
  alignas(64) LaneFloats scaled;
  for (int lane = 0; lane < kLanes; ++lane) scaled[lane] = factor * weight[lane];
  AddProducts(packet.color, mask, scaled, packet.diffuse, light);
}

// The ambient light comes from where the surface faces.
void AddSkyAmbient(const ShadeInputs& in, const LaneInts& mask, float factor,
                   const LaneFloats& weight, RayPacket& packet) {
  alignas(64) LaneFloats sky[3];
  SampleCube(*in.background, packet.normal, mask, sky);
  AddLight(mask, factor, weight, sky, packet);
}

// color += factor * weight * diffuse * ambient colour
void AddAmbient(const ShadeInputs& in, const LaneInts& mask, float factor, const LaneFloats& weight,
                RayPacket& packet) {
  if (in.factors.useSkyColorForAmbient) {
    AddSkyAmbient(in, mask, factor, weight, packet);
  } else {
    AddScaled(packet.color, mask, factor, weight, packet.diffuse, kAmbientColor);
  }
}

// What each lane sees of its surroundings within reach: from 0.5, when every direction is blocked,
// to 1.
void MeasureOpenness(const ShadeInputs& in, const RayPacket& packet, RayPacket& rays) {
  LaneFloats& openness = rays.throughput;
  Fill(openness, 0.5f);
  for (const Vec3& direction : in.directions->occlusion) {
    const float v[3] = {direction.x(), direction.y(), direction.z()};
    RotateFromUp(v, packet.normal, packet.geometry, rays.lightDirection);
    Copy(packet.geometry, rays.lightMask);
    TraceVisibility(in.trace, packet.position, rays.lightDirection, kOcclusionReach, rays.lightMask,
                    rays.lightColor[0]);
    for (int lane = 0; lane < kLanes; ++lane) {
      const float visible = rays.lightMask[lane] >= 0 ? rays.lightColor[0][lane] : 0.0f;
      openness[lane] += visible * (1.0f / (2 * SampleDirections::kOcclusion));
    }
  }
}

void AddOccludedAmbient(const ShadeInputs& in, const LaneFloats& weight, RayPacket& packet,
                        ShadeThread& thread) {
  const PacketLease rays(thread.packets);
  MeasureOpenness(in, packet, *rays);
  alignas(64) LaneFloats occluded;
  Products(weight, rays->throughput, packet.geometry, occluded);
  AddAmbient(in, packet.geometry, kAmbientWeight * in.factors.ambient, occluded, packet);
}

// Baked light in place of the ambient light; a mesh without a lightmap has the whole ambient light.
void AddBakedLight(const ShadeInputs& in, const LaneFloats& weight, RayPacket& packet) {
  alignas(64) LaneInts baked;
  alignas(64) LaneInts open;
  for (int lane = 0; lane < kLanes; ++lane) {
    const std::int32_t geometry = packet.geometry[lane];
    const bool has = geometry >= 0 && in.scene->Meshes()[geometry]->LightmapCoords() != nullptr;
    baked[lane] = has ? 0 : -1;
    open[lane] = geometry >= 0 && !has ? 0 : -1;
  }
  AddAmbient(in, open, kAmbientWeight * in.factors.ambient, weight, packet);
  AddLight(baked, in.factors.ambient, weight, packet.lightmap, packet);
}

// The factor of the light panel does not dim it: a preview and a picture without occlusion are
// never dark.
void AddPlainAmbient(const ShadeInputs& in, const LaneFloats& weight, RayPacket& packet) {
  if (in.pass == PassPreview) {
    AddScaled(packet.color, packet.geometry, kPreviewWeight, weight, packet.diffuse, kWhite);
  } else {
    AddAmbient(in, packet.geometry, kAmbientWeight, weight, packet);
  }
}

}  // namespace

void ShadeAmbient(const ShadeInputs& in, RayPacket& packet, ShadeThread& thread, int depth) {
  alignas(64) LaneFloats weight;
  Products(packet.throughput, packet.alpha, packet.geometry, weight);
  if (ShownWhenStill(in.pass) && in.switches.useLightmap) {
    AddBakedLight(in, weight, packet);
  } else if (ShownWhenStill(in.pass) && in.switches.useAmbientOcclusion &&
             depth < kOcclusionDepth) {
    AddOccludedAmbient(in, weight, packet, thread);
  } else {
    AddPlainAmbient(in, weight, packet);
  }
}

}  // namespace qv

#include "render/shade/ShadePacket.h"
#include "render/trace/VectorOps.h"

namespace qv {
namespace {

constexpr float kPreviewWeight = 0.8f;
constexpr float kAmbientWeight = 0.5f;
constexpr float kWhite[3] = {1, 1, 1};
constexpr float kAmbientColor[3] = {0.8784314f, 0.9882353f, 1.0f};

// The ambient light comes from where the surface faces.
void AddSkyAmbient(const ShadeInputs& in, const LaneFloats& weight, RayPacket& packet) {
  for (int lane = 0; lane < kLanes; ++lane) {
    if (packet.geometry[lane] < 0) continue;
    const Vec3 sky = in.background->Sample(
        {packet.normal[0][lane], packet.normal[1][lane], packet.normal[2][lane]});
    for (int c = 0; c < 3; ++c) {
      packet.color[c][lane] += kAmbientWeight * weight[lane] * packet.diffuse[c][lane] * sky[c];
    }
  }
}

}  // namespace

void ShadeAmbient(const ShadeInputs& in, RayPacket& packet) {
  alignas(64) LaneFloats weight;
  Products(packet.throughput, packet.alpha, packet.geometry, weight);
  if (in.pass == PassPreview) {
    AddScaled(packet.color, packet.geometry, kPreviewWeight, weight, packet.diffuse, kWhite);
  } else if (in.factors.useSkyColorForAmbient) {
    AddSkyAmbient(in, weight, packet);
  } else {
    AddScaled(packet.color, packet.geometry, kAmbientWeight, weight, packet.diffuse, kAmbientColor);
  }
}

}  // namespace qv

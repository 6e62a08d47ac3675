#pragma once

#include <embree3/rtcore.h>

#include <memory>
#include <span>
#include <vector>

#include "render/frame/PixelRays.h"
#include "render/geometry/RenderScene.h"
#include "render/shade/ShadePacket.h"
#include "sky/CubeFaces.h"
#include "support/SceneBuilder.h"

namespace qv::test {

struct Ray {
  Vec3 origin;
  Vec3 direction;
};

// A scene with everything that shading reads, without the engine: rays are traced and shaded
// through the packet functions. The sky is black, the sun gives no light and ambient occlusion is
// off until a test says otherwise.
class TracedScene {
 public:
  explicit TracedScene(const SceneBuilder& builder, int packetWidth = 8);
  ~TracedScene();

  // The sky and sun that a renderer starts with.
  void UseStartingSky();
  void FillSky(const Vec3& color);
  void FillFace(int face, const Vec3& color);

  Vec3 Color(const Ray& ray, RenderPass pass = PassFull);
  // The colour of each ray of at most a packet.
  std::vector<Vec3> Colors(std::span<const Ray> rays, RenderPass pass);
  // The colours of a picture's pixels, row by row from the bottom.
  std::vector<Vec3> Picture(const PixelRays& rays, int width, int height, RenderPass pass);

  // A packet with these rays in its first lanes, traced; the other lanes are off.
  std::unique_ptr<RayPacket> Traced(std::span<const Ray> rays) const;

  RTCDevice device;
  RenderScene scene;
  sky::CubeFaces sky;
  ShadeInputs in;

 private:
  PacketPool pool_{1};
};

// A packet with these rays in its first lanes; the other lanes are off.
std::unique_ptr<RayPacket> PacketOf(std::span<const Ray> rays);

}  // namespace qv::test

#include "TracedScene.h"

#include "render/shade/LaneFill.h"
#include "render/trace/VectorOps.h"
#include "sky/Background.h"

namespace qv::test {
namespace {

void AddLights(const SceneBuilder& builder, RenderScene& scene) {
  for (const SceneLight& l : builder.lights) {
    switch (l.kind) {
      case SceneLight::kPoint:
        scene.AddLight(RenderLight::Point(l.color, l.position));
        break;
      case SceneLight::kSpot:
        scene.AddLight(
            RenderLight::Spot(l.color, l.position, l.direction, l.innerAngle, l.outerAngle));
        break;
      case SceneLight::kDirectional:
        scene.AddLight(RenderLight::Directional(l.color, l.direction));
        break;
    }
  }
}

}  // namespace

TracedScene::TracedScene(const SceneBuilder& builder, int packetWidth)
    : device(rtcNewDevice("")), scene(device) {
  builder.SendGeometryTo(scene);
  scene.SetSun(RenderLight::Directional(Vec3::Zero(), -Vec3::UnitZ()));
  AddLights(builder, scene);
  scene.Build(nullptr);
  scene.CommitForFrame(Vec3::UnitY());
  in.scene = &scene;
  in.background = &sky;
  in.directions = &SampleDirections::Shared();
  in.trace.device = device;
  in.trace.scene = &scene;
  in.trace.packetWidth = packetWidth;
  in.switches.useAmbientOcclusion = false;
}

TracedScene::~TracedScene() {
  scene.Clear();
  rtcReleaseDevice(device);
}

void TracedScene::UseStartingSky() {
  static const std::unique_ptr<const sky::Background> background = [] {
    auto started = std::make_unique<sky::Background>();
    started->Update();
    return started;
  }();
  scene.SetSun(RenderLight::Directional(background->sun().color, background->sun().direction));
  in.background = &background->faces();
}

void TracedScene::FillFace(int face, const Vec3& color) {
  auto& pixels = sky.pixels[static_cast<std::size_t>(face)];
  pixels.resize(std::size_t{sky::CubeFaces::kFaceSize} * sky::CubeFaces::kFaceSize * 4);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    pixels[i] = i % 4 == 3 ? 255 : static_cast<std::uint8_t>(color[2 - i % 4] * 255 + 0.5f);
  }
}

void TracedScene::FillSky(const Vec3& color) {
  for (int face = 0; face < 6; ++face) FillFace(face, color);
}

std::unique_ptr<RayPacket> PacketOf(std::span<const Ray> rays) {
  auto packet = std::make_unique<RayPacket>();
  Fill(packet->geometry, -1);
  Fill(packet->throughput, 1);
  Fill(packet->iorTo, 1);
  for (std::size_t lane = 0; lane < rays.size(); ++lane) {
    packet->geometry[lane] = 0;
    packet->t[lane] = kUnlimited;
    for (int axis = 0; axis < 3; ++axis) {
      packet->position[axis][lane] = rays[lane].origin[axis];
      packet->direction[axis][lane] = rays[lane].direction[axis];
    }
  }
  NormaliseDirections(packet->direction);
  return packet;
}

std::unique_ptr<RayPacket> TracedScene::Traced(std::span<const Ray> rays) const {
  auto packet = PacketOf(rays);
  TraceClosest(in.trace, *packet);
  return packet;
}

std::vector<Vec3> TracedScene::Colors(std::span<const Ray> rays, RenderPass pass) {
  in.pass = pass;
  ShadeThread thread;
  pool_.Refill(0, thread.packets);
  const auto packet = Traced(rays);
  ShadePacket(in, *packet, thread, 0, false);
  std::vector<Vec3> colors;
  for (std::size_t lane = 0; lane < rays.size(); ++lane) {
    colors.emplace_back(packet->color[0][lane], packet->color[1][lane], packet->color[2][lane]);
  }
  return colors;
}

Vec3 TracedScene::Color(const Ray& ray, RenderPass pass) {
  return Colors({&ray, 1}, pass).front();
}

std::vector<Vec3> TracedScene::Picture(const PixelRays& rays, int width, int height,
                                       RenderPass pass) {
  const Vec3 eye(rays.eye[0], rays.eye[1], rays.eye[2]);
  std::vector<Vec3> picture;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; x += kLanes) {
      std::vector<Ray> run;
      for (int i = x; i < std::min(width, x + kLanes); ++i) {
        run.push_back({eye, rays.Direction(static_cast<float>(i), static_cast<float>(y))});
      }
      const std::vector<Vec3> colors = Colors(run, pass);
      picture.insert(picture.end(), colors.begin(), colors.end());
    }
  }
  return picture;
}

}  // namespace qv::test

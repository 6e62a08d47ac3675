#include <cmath>
#include <numbers>
#include <vector>

#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

using Kind = SceneLight::Kind;

constexpr float kDegree = std::numbers::pi_v<float> / 180;

class LightsAndCameras : public ModelFolder {
 protected:
  // A glTF scene of one triangle 10 m wide and 10 m high, with more parts at the top of the file
  // and more nodes, all of them in the scene.
  std::filesystem::path WriteGltf(const std::string& parts, const std::vector<std::string>& nodes) {
    std::string roots = "0";
    std::string written = R"({"mesh":0,"scale":[10,10,10]})";
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      roots += "," + std::to_string(i + 1);
      written += "," + nodes[i];
    }
    return ModelFolder::WriteGltf(parts + R"(,"scenes":[{"nodes":[)" + roots + R"(]}],"nodes":[)" +
                                  written + "]");
  }

  static std::string Lights(const std::string& lights) {
    return R"("extensionsUsed":["KHR_lights_punctual"],
"extensions":{"KHR_lights_punctual":{"lights":[)" +
           lights + "]}}";
  }

  static std::string LightNode(const std::string& place, int light) {
    return R"({"translation":[)" + place + R"(],"extensions":{"KHR_lights_punctual":{"light":)" +
           std::to_string(light) + "}}}";
  }

  static const SceneLight* Find(const Scene& scene, Kind kind) {
    for (const SceneLight& light : scene.lights) {
      if (light.kind == kind) return &light;
    }
    return nullptr;
  }
};

TEST_F(LightsAndCameras, LampsKeepTheirPlacesAndRatios) {
  const auto path = WriteGltf(Lights(R"({"type":"point","color":[1,0.5,0],"intensity":800},
                                        {"type":"point","intensity":200})"),
                              {LightNode("1,2,0", 0), LightNode("2,2,0", 1)});
  const Scene scene = Load(path);
  ASSERT_EQ(scene.lights.size(), 2u);
  const SceneLight& strong = scene.lights[0];
  const SceneLight& weak = scene.lights[1];
  EXPECT_TRUE(strong.position.isApprox(Vec3(1, 0, 2) / 0.0254f, 1e-3f));
  EXPECT_NEAR(weak.color.x() / strong.color.x(), 0.25f, 1e-4f);
  EXPECT_NEAR(strong.color.y() / strong.color.x(), 0.5f, 1e-4f);
  // A white surface square to the light gets colour / distance: in a room, something between
  // half of full light and full light at two metres and a half.
  const float at = strong.color.x() / (2.5f / 0.0254f);
  EXPECT_GT(at, 0.5f);
  EXPECT_LT(at, 1);
}

TEST_F(LightsAndCameras, LampOutsideLightsTheModelFromItsDistance) {
  const auto path =
      WriteGltf(Lights(R"({"type":"point","intensity":1})"), {LightNode("5,5,1000", 0)});
  const Scene scene = Load(path);
  ASSERT_EQ(scene.lights.size(), 1u);
  const float distance = (scene.lights[0].position - scene.bounds.center()).norm();
  EXPECT_GT(scene.lights[0].color.x() / distance, 0.5f);
  EXPECT_LT(scene.lights[0].color.x() / distance, 1);
}

TEST_F(LightsAndCameras, SpotAnglesAreFromTheAxis) {
  const auto path = WriteGltf(Lights(R"({"type":"spot","intensity":1,
                                        "spot":{"innerConeAngle":0.2,"outerConeAngle":0.5}})"),
                              {LightNode("5,5,3", 0)});
  const Scene gltf = Load(path);
  const SceneLight* spot = Find(gltf, Kind::kSpot);
  ASSERT_NE(spot, nullptr);
  EXPECT_NEAR(spot->innerAngle, 0.2f, 1e-5f);
  EXPECT_NEAR(spot->outerAngle, 0.5f, 1e-5f);
  // Along the node's -z, which is the model's +y.
  EXPECT_TRUE(spot->direction.isApprox(Vec3(0, 1, 0), 1e-4f));

  // The COLLADA file states a falloff angle of 45 degrees from edge to edge.
  const Scene collada = Load(Sample("Collada/lights.dae"));
  const SceneLight* other = Find(collada, Kind::kSpot);
  ASSERT_NE(other, nullptr);
  EXPECT_NEAR(other->outerAngle, 22.5f * kDegree, 1e-4f);
  EXPECT_LE(other->innerAngle, other->outerAngle);
}

TEST_F(LightsAndCameras, DirectionalLightsDoNotOutshineTheSun) {
  const Scene duck = Load(Sample("Collada/duck.dae"));
  const SceneLight* light = Find(duck, Kind::kDirectional);
  ASSERT_NE(light, nullptr);
  EXPECT_NEAR(light->direction.norm(), 1, 1e-5f);
  EXPECT_GT(light->color.maxCoeff(), 0.1f);
  EXPECT_LT(light->color.maxCoeff(), 0.6f);
}

// The file gives the places, the horizontal fields of view and the aspect 16:9.
TEST_F(LightsAndCameras, ColladaCamerasBecomeViews) {
  const Scene scene = Load(Sample("Collada/cameras.dae"));
  ASSERT_EQ(scene.cameras.size(), 3u);
  const RenderCamera& first = scene.cameras[0].view;
  EXPECT_TRUE(first.position.isApprox(Vec3(10, 0, 0) / 0.0254f, 1e-4f));
  EXPECT_LT((first.forward - Vec3(-1, 0, 0)).norm(), 1e-4f);
  EXPECT_LT((first.up - Vec3(0, 1, 0)).norm(), 1e-4f);
  EXPECT_NEAR(first.fieldOfView, 2 * std::atan(std::tan(49.13434f / 2 * kDegree) * 9 / 16), 1e-4f);
  const RenderCamera& third = scene.cameras[2].view;
  EXPECT_TRUE(third.position.isApprox(Vec3(0, 5, 0) / 0.0254f, 1e-4f));
  EXPECT_LT((third.forward - Vec3(0, -1, 0)).norm(), 1e-4f);
}

TEST_F(LightsAndCameras, GltfCameraStatesItsVerticalAngle) {
  const auto path = WriteGltf(
      R"("cameras":[{"type":"perspective","perspective":{"aspectRatio":2,"yfov":0.5,"znear":1}}])",
      {R"({"name":"From above","camera":0,"translation":[0,3,4]})"});
  const Scene scene = Load(path);
  ASSERT_EQ(scene.cameras.size(), 1u);
  EXPECT_EQ(scene.cameras[0].name, "From above");
  EXPECT_NEAR(scene.cameras[0].view.fieldOfView, 0.5f, 1e-4f);
  EXPECT_TRUE(scene.cameras[0].view.position.isApprox(Vec3(0, -4, 3) / 0.0254f, 1e-4f));
}

}  // namespace
}  // namespace qv::host

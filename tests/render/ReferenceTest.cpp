#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <cmath>
#include <cstdio>
#include <functional>
#include <random>
#include <vector>

#include "ReferenceTracer.h"
#include "support/ImageFile.h"

// Pictures of small scenes, pixel by pixel, beside those of the scalar tracer in doubles. They may
// differ by 0.002 a channel; at one pixel in a thousand, where a ray passes within a rounding error
// of an edge, by anything.

namespace qv {
namespace {

using test::Ray;
using test::ReferenceTracer;
using test::SceneBuilder;
using test::SceneLight;
using test::SceneMesh;
using test::TracedScene;

constexpr int kWidth = 64;
constexpr int kHeight = 32;
constexpr double kTolerance = 0.002;

// Soft waves of colour, and of alpha if wanted.
std::string Waves(const std::string& name, int width, int height, bool alpha) {
  std::vector<std::uint8_t> rgba;
  const auto wave = [&](float phase) {
    return static_cast<std::uint8_t>(128 + 120 * std::sin(phase));
  };
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const float fx = 12.566371f * static_cast<float>(x) / static_cast<float>(width);
      const float fy = 18.849556f * static_cast<float>(y) / static_cast<float>(height);
      rgba.insert(rgba.end(), {wave(fx), wave(fy), wave(fx + fy + 1),
                               alpha ? wave(fx + 2 * fy) : std::uint8_t{255}});
    }
  }
  return test::WritePng(name, width, height, rgba);
}

void ScaleUvs(SceneMesh& mesh, float front, float back) {
  for (MeshVertex& vertex : mesh.vertices) {
    for (float& c : vertex.frontUv) c *= front;
    for (float& c : vertex.backUv) c *= back;
  }
}

MaterialParameters Shiny(const Vec3& diffuse, float reflectance, float glossy = 0) {
  MaterialParameters m = test::Matte(diffuse);
  m.specularColor = Vec3(0.3f, 0.25f, 0.2f);
  m.specularExponent = 15;
  m.reflectance = reflectance;
  m.glossy = glossy;
  return m;
}

MaterialParameters Glass(const Vec3& diffuse, float opacity, float refractiveIndex) {
  MaterialParameters m = Shiny(diffuse, 0);
  m.opacity = opacity;
  m.refractiveIndex = refractiveIndex;
  return m;
}

MaterialParameters Textured(const std::string& path, float bumpFactor = 0) {
  MaterialParameters m;
  m.hasTexture = true;
  m.texturePath = path;
  m.bumpFactor = bumpFactor;
  m.diffuseFactor = 0.9f;
  return m;
}

constexpr int kFloor = 0;
constexpr int kWall = 1;

// A floor and a wall with relief, bodies on both sides of each other, glass, leaves, and mirrors.
SceneBuilder Room() {
  SceneBuilder b;
  MaterialParameters tiles = Textured(Waves("tiles.png", 64, 64, false));
  tiles.specularColor = Vec3(0.2f, 0.2f, 0.2f);
  tiles.specularExponent = 20;
  const int floor = b.Material(tiles);
  const int relief = b.Material(Textured(Waves("relief.png", 48, 16, false), 0.7f));
  // Below zero there is no relief.
  const int leaf = b.Material(Textured(Waves("leaf.png", 32, 32, true), -2));
  const int red = b.Material(Vec3(0.7f, 0.2f, 0.1f));
  const int blue = b.Material(Shiny(Vec3(0.1f, 0.2f, 0.7f), 0));
  const int ball = b.Material(Shiny(Vec3(0.2f, 0.2f, 0.2f), 0.6f));
  const int block = b.Material(Glass(Vec3(0.2f, 0.5f, 0.3f), 0.15f, 1.5f));
  const int pane = b.Material(Glass(Vec3(0.4f, 0.4f, 0.5f), 0.1f, 1));
  const int mirror = b.Material(Shiny(Vec3(0.02f, 0.03f, 0.02f), 0.95f));
  const int faint = b.Material(Shiny(Vec3(0.3f, 0.3f, 0.1f), 0.13f));
  b.Floor(0, 200, floor);
  ScaleUvs(b.meshes[kFloor], 14, 3);
  b.Quad({-90, 80, 0}, {180, 0, 0}, {0, 0, 60}, relief);
  ScaleUvs(b.meshes[kWall], 2, 5);
  b.Box({-30, -20, 0}, {-8, 8, 25}, red);
  // These look away from the eye: a relief, and a texture of their own.
  ScaleUvs(b.meshes[b.Quad({-4, 20, 5}, {-24, 0, 0}, {0, 3, 28}, {blue, relief})], 1, 0.7f);
  ScaleUvs(b.meshes[b.Quad({60, 60, 0}, {-25, 0, 0}, {0, 0, 40}, {red, floor})], 1, 2.5f);
  b.Sphere({12, 12, 15}, 13, 6, ball);
  b.Box({14, -45, 0.5f}, {34, -28, 16}, block);
  b.Quad({-14, -60, 2}, {22, 4, 0}, {0, 0, 22}, leaf);
  for (int i = 0; i < 12; ++i) {
    b.Quad({-75, -30 + 3 * static_cast<float>(i), 2}, {35, 0, 0}, {0, 1, 22}, pane);
  }
  b.Quad({45, 10, 0}, {40, 0, 0}, {0, 0, 35}, mirror);
  b.Quad({40, -60, 1}, {30, 0, 0}, {0, 35, 0}, faint);
  b.Quad({40, -25, 1}, {30, 0, 0}, {0, -1, 12}, faint);
  b.lights = {SceneLight::Point(Vec3(9, 8, 6), {-20, -40, 50}),
              SceneLight::Point(Vec3(0.9f, 0.5f, 0.5f), {90, 30, 15}),
              SceneLight::Spot(Vec3(9, 9, 12), {40, -70, 60}, Vec3(-0.5f, 0.6f, -0.6f).normalized(),
                               0.25f, 0.5f),
              SceneLight::Directional(Vec3(0.15f, 0.2f, 0.25f), Vec3(0.2f, 0.9f, -0.3f))};
  return b;
}

// The eye between two mirrors.
SceneBuilder Hall() {
  SceneBuilder b;
  const int mirror = b.Material(Shiny(Vec3(0.02f, 0.03f, 0.02f), 0.95f));
  b.Quad({-400, 60, -300}, {800, 0, 0}, {0, 0, 600}, mirror);
  b.Quad({400, -140, -300}, {-800, 0, 0}, {0, 0, 600}, mirror);
  b.Box({-30, -20, 0}, {-8, 8, 25}, b.Material(Vec3(0.7f, 0.2f, 0.1f)));
  return b;
}

// The scene of a builder with a sun, an emitter and a sky of soft colours.
struct Stage {
  Stage(const SceneBuilder& builder, int packetWidth) : traced(builder, packetWidth) {
    traced.scene.SetSun(
        RenderLight::Directional(Vec3(0.6f, 0.55f, 0.5f), Vec3(0.4f, 0.5f, -0.7f).normalized()));
    const std::vector<float> panel{-10, -10, 45, 10, 5, 45, 10, -10, 45};
    traced.scene.AddLEMLight(Vec3(9, 7, 5), panel);
    traced.scene.AddLEMLight(Vec3(20, 30, 40),
                             std::vector<float>{-60, 75, 5, -60, 75, 9, -64, 75, 5});
    traced.scene.Build(nullptr);
    for (std::size_t face = 0; face < 6; ++face) {
      auto& pixels = traced.sky.pixels[face];
      pixels.resize(std::size_t{4} * sky::CubeFaces::kFaceSize * sky::CubeFaces::kFaceSize);
      std::uint8_t* at = pixels.data();
      for (int i = 0; i < sky::CubeFaces::kFaceSize * sky::CubeFaces::kFaceSize; ++i) {
        const auto column = static_cast<std::uint8_t>(i % sky::CubeFaces::kFaceSize / 8);
        const auto row = static_cast<std::uint8_t>(i / sky::CubeFaces::kFaceSize / 8);
        *at++ = static_cast<std::uint8_t>(100 + 20 * face);
        *at++ = row;
        *at++ = column;
        *at++ = 255;
      }
    }
    traced.in.factors = {0.9f, 0.8f, 1.1f, 1.2f, false};
    traced.in.switches = {.useAmbientOcclusion = true, .useLEM = true};
    RenderCamera camera;
    camera.position = Vec3(3, -125, 42);
    camera.forward = Vec3(0, 1, -0.28f).normalized();
    camera.up = Vec3(0, 0.28f, 1).normalized();
    camera.fieldOfView = 0.75f;
    rays = ComputePixelRays(camera, kWidth, kHeight);
    traced.in.footprintScale = traced.in.trace.footprintScale = camera.fieldOfView / kHeight;
  }

  Ray RayOf(int x, int y) const {
    return {Vec3(rays.eye[0], rays.eye[1], rays.eye[2]),
            rays.Direction(static_cast<float>(x), static_cast<float>(y))};
  }

  TracedScene traced;
  PixelRays rays;
};

using Colors = std::vector<Eigen::Vector3d>;

Colors ReferencePicture(ReferenceTracer& reference, const Stage& stage, RenderPass pass,
                        bool together) {
  Colors colors;
  for (int i = 0; i < kWidth * kHeight; ++i) {
    const int x = i % kWidth;
    colors.push_back(reference.Color(stage.RayOf(x, i / kWidth), pass, together ? x : 0));
  }
  return colors;
}

void ExpectAgreement(Stage& stage, RenderPass pass, bool together, const Colors& expected) {
  std::vector<Vec3> got;
  if (together) {
    got = stage.traced.Picture(stage.rays, kWidth, kHeight, pass);
  } else {
    for (int i = 0; i < kWidth * kHeight; ++i) {
      got.push_back(stage.traced.Color(stage.RayOf(i % kWidth, i / kWidth), pass));
    }
  }
  int different = 0;
  double sum = 0;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const double off = (got[i].cast<double>() - expected[i]).cwiseAbs().maxCoeff();
    sum += expected[i].sum();
    if (off <= kTolerance) continue;
    if (++different <= 4) {
      std::printf("pixel %zu %zu: %.5f %.5f %.5f instead of %.5f %.5f %.5f\n", i % kWidth,
                  i / kWidth, got[i].x(), got[i].y(), got[i].z(), expected[i].x(), expected[i].y(),
                  expected[i].z());
    }
  }
  EXPECT_LE(different, static_cast<int>(expected.size()) / 1000) << "pass " << pass;
  EXPECT_GT(sum, 0.2 * static_cast<double>(expected.size())) << "there is something to see";
}

// Both ways of tracing beside one picture of the reference.
class Reference : public testing::Test {
 protected:
  void Compare(const SceneBuilder& builder, RenderPass pass, bool together,
               const std::function<void(Stage&)>& prepare = {}) {
    Colors expected;
    for (const int packetWidth : {8, 1}) {
      Stage stage(builder, packetWidth);
      if (prepare) prepare(stage);
      if (expected.empty()) {
        ReferenceTracer reference(builder, stage.traced);
        reference.lightmaps = lightmaps_;
        expected = ReferencePicture(reference, stage, pass, together);
        for (const auto& [branch, count] : reference.visits) visits_[branch] += count;
      }
      ExpectAgreement(stage, pass, together, expected);
    }
  }

  void ExpectVisited(std::initializer_list<const char*> branches) {
    for (const char* branch : branches) EXPECT_GE(visits_[branch], 20) << branch;
  }

  std::vector<MeshLightmap> lightmaps_;
  std::map<std::string, int> visits_;
};

TEST_F(Reference, SeesTheRoomInEveryPass) {
  const SceneBuilder room = Room();
  Compare(room, PassPreview, true);
  Compare(room, PassSunPreview, true);
  Compare(room, PassFull, true);
  Compare(room, PassAntialias, true, [](Stage& stage) {
    stage.traced.in.switches.useAmbientOcclusion = stage.traced.in.switches.useLEM = false;
    stage.traced.in.factors.useSkyColorForAmbient = true;
  });
  Compare(Hall(), PassFull, true);
  ExpectVisited({"back side", "top mip levels", "between mip levels", "last mip level", "relief",
                 "relief on the back"});
  ExpectVisited({"into glass", "out of glass", "glass that does not bend", "total reflection",
                 "through an alpha texture", "depth 10 behind glass", "depth 1 in a preview"});
  ExpectVisited({"mirror", "mirror in a preview", "depth 10 in a mirror", "background",
                 "background of a faint ray"});
  ExpectVisited({"lamp", "lamp in shadow", "negligible lamp", "outside of a spot",
                 "penumbra of a spot", "highlight of a lamp", "emitter", "emitter in shadow"});
  ExpectVisited({"sun", "sun in shadow", "shadow of an alpha texture",
                 "shadow that lets light through", "highlight of the sun"});
  ExpectVisited({"plain ambient light", "ambient occlusion", "too deep for occlusion",
                 "ambient light of the sky"});
}

TEST_F(Reference, SeesBakedLightInPlaceOfTheAmbientLight) {
  std::mt19937 random(11);
  std::uniform_real_distribution<float> unit(0, 1);
  const auto page = [&](int width, int height) {
    LightmapPage made{width, height,
                      std::vector<float>(static_cast<std::size_t>(width * height) * 4)};
    for (float& c : made.texels) c = 1.5f * unit(random);
    return made;
  };
  const std::vector<LightmapPage> pages{page(16, 8), page(5, 3), {4, 4, std::vector<float>(63)}};
  // The floor's second triangle reaches the last texels; the wall's has no page.
  lightmaps_.resize(2);
  for (std::size_t mesh = 0; mesh < 2; ++mesh) {
    MeshLightmap& map = lightmaps_[mesh];
    for (int corner = 0; corner < 6; ++corner) {
      map.coords.emplace_back(unit(random), unit(random));
      map.colors.emplace_back(0.2f * unit(random), 0.1f, 0.2f * unit(random));
    }
    map.coords[3] = Vec2(1, 1);
    map.coords[4] = Vec2(0, 1);
    map.pages = mesh == 0 ? std::vector<std::int32_t>{0, 1} : std::vector<std::int32_t>{1, 3};
  }
  const SceneBuilder room = Room();
  for (const bool hasLEM : {false, true}) {
    Compare(room, PassFull, true, [&](Stage& stage) {
      stage.traced.scene.SetLightmapPages(pages);
      for (std::size_t mesh = 0; mesh < 2; ++mesh) {
        ASSERT_TRUE(stage.traced.scene.SetMeshLightmap(mesh, lightmaps_[mesh]));
      }
      stage.traced.in.switches.useLightmap = true;
      stage.traced.in.switches.lightmapHasLEM = hasLEM;
    });
  }
  ExpectVisited({"lightmap page", "no lightmap page", "baked light",
                 "ambient light beside a lightmap", "emitter", "emitters in the lightmap"});
}

SceneBuilder BlurredRoom(bool glass) {
  SceneBuilder b;
  const int one = b.Material(Shiny(Vec3(0.3f, 0.3f, 0.3f), 0.2f, 1));
  const int three = b.Material(Shiny(Vec3(0.2f, 0.3f, 0.3f), 0.5f, 2));
  const int six = b.Material(Shiny(Vec3(0.1f, 0.2f, 0.3f), 0.8f, 1));
  const int red = b.Material(Vec3(0.8f, 0.2f, 0.1f));
  b.Quad({-100, -100, 0}, {80, 0, 0}, {0, 250, 0}, one);
  b.Quad({-20, -100, 0}, {40, 0, 0}, {0, 250, 0}, three);
  b.Quad({20, -100, 0}, {80, 0, 0}, {0, 250, 0}, six);
  b.Box({-30, 0, 5}, {-5, 20, 25}, red);
  b.Box({15, 5, 3}, {40, 25, 20}, six);
  b.Quad({-60, 60, 0}, {140, 0, 0}, {0, 0, 50}, three);
  b.lights = {SceneLight::Point(Vec3(9, 8, 6), {-20, -40, 50})};
  if (glass) {
    b.Box({-15, -50, 2}, {10, -40, 20}, b.Material(Glass(Vec3(0.3f, 0.4f, 0.5f), 0.2f, 1.4f)));
    b.Sphere({-40, -30, 12}, 11, 5, b.Material(Glass(Vec3(0.5f, 0.4f, 0.5f), 0.3f, 1.2f)));
    b.Quad({35, -40, 5}, {15, 0, 0}, {0, 0, 20}, b.Material(Shiny(Vec3(0.1f, 0.1f, 0.1f), 0.7f)));
  }
  return b;
}

TEST_F(Reference, BlursReflectionsAlongTheSameDirections) {
  Compare(BlurredRoom(false), PassFull, true);
  Compare(BlurredRoom(true), PassFull, false);
  ExpectVisited({"blurred, 1 ray", "blurred, 3 rays", "blurred, 6 rays", "mirror", "into glass",
                 "out of glass"});
}

// With the packets of eight, whose colours the tests above know to be right.
TEST_F(Reference, IsMatchedByEachInstructionSet) {
  const auto use = [](std::int64_t target) {
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
  };
  for (const SceneBuilder& scene : {Room(), BlurredRoom(false)}) {
    Stage stage(scene, 8);
    stage.traced.in.factors.useSkyColorForAmbient = true;
    Colors best;
    use(0);
    for (const Vec3& color : stage.traced.Picture(stage.rays, kWidth, kHeight, PassFull)) {
      best.push_back(color.cast<double>());
    }
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets()) {
      SCOPED_TRACE(hwy::TargetName(target));
      use(target);
      ExpectAgreement(stage, PassFull, true, best);
      use(0);
    }
  }
}

}  // namespace
}  // namespace qv

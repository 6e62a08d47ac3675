// Real files, against what their own text says.
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

constexpr float kInchesPerMetre = 1 / 0.0254f;

class SampleModels : public ModelFolder {};

TEST_F(SampleModels, HouseStandsOnTheGroundThatItsFileDescribes) {
  const Scene house = Load(Sample("IFC/AC14-FZK-Haus.ifc"));
  // The block of earth reaches from (-3, -3, -1) to (15, 13, 0) metres, and all else is above it.
  EXPECT_NEAR(house.bounds.min().x(), -3 * kInchesPerMetre, 0.01f);
  EXPECT_NEAR(house.bounds.max().x(), 15 * kInchesPerMetre, 0.01f);
  EXPECT_NEAR(house.bounds.min().y(), -3 * kInchesPerMetre, 0.01f);
  EXPECT_NEAR(house.bounds.max().y(), 13 * kInchesPerMetre, 0.01f);
  EXPECT_NEAR(house.bounds.min().z(), -1 * kInchesPerMetre, 0.01f);
  EXPECT_GT(house.bounds.max().z(), 5 * kInchesPerMetre);
  EXPECT_LT(house.bounds.max().z(), 10 * kInchesPerMetre);
  // The colour of the style "Erde".
  bool hasEarth = false;
  for (const MaterialParameters& material : house.materials) {
    hasEarth |= material.diffuseColor.isApprox(Vec3(0.57254902f, 0.50196078f, 0.45490196f), 1e-4f);
  }
  EXPECT_TRUE(hasEarth);
}

TEST_F(SampleModels, BoxSharesItsVerticesWithinEachFaceOnly) {
  const Scene box = Load(Sample("glTF2/BoxTextured-glTF/BoxTextured.gltf"));
  ASSERT_EQ(box.meshes.size(), 1u);
  EXPECT_EQ(box.meshes[0].vertices.size(), 24u);
  EXPECT_EQ(box.meshes[0].triangles.size(), 12u);
  EXPECT_TRUE(box.bounds.sizes().isApprox(Vec3::Constant(kInchesPerMetre), 1e-4f));
  ASSERT_EQ(box.materials.size(), 1u);
  EXPECT_TRUE(
      SameFile(box.materials[0].texturePath, Sample("glTF2/BoxTextured-glTF/CesiumLogoFlat.png")));
  for (const MeshVertex& vertex : box.meshes[0].vertices) {
    EXPECT_EQ(vertex.frontUv[0], vertex.backUv[0]);
    EXPECT_EQ(vertex.frontUv[1], vertex.backUv[1]);
  }
  for (const MeshTriangle& triangle : box.meshes[0].triangles) {
    EXPECT_EQ(triangle.materialWord & 0xffff, triangle.materialWord >> 16);
  }
}

TEST_F(SampleModels, EmbeddedTextureIsWrittenOutAndRemovedWithTheScene) {
  std::string written;
  {
    const Scene box = Load(Sample("glTF2/BoxTextured-glTF-Binary/BoxTextured.glb"));
    ASSERT_EQ(box.materials.size(), 1u);
    written = box.materials[0].texturePath;
    EXPECT_EQ(TextOf(written), TextOf(Sample("glTF2/BoxTextured-glTF/CesiumLogoFlat.png")));
  }
  EXPECT_FALSE(written.empty());
  EXPECT_FALSE(std::filesystem::exists(written));
}

TEST_F(SampleModels, DuckIsInCentimetresAndHasItsTexture) {
  const Scene duck = Load(Sample("Collada/duck.dae"));
  // Its highest point is at y = 163.97 in the file.
  EXPECT_NEAR(duck.bounds.max().z(), 163.97f / 2.54f, 0.01f);
  EXPECT_EQ(duck.TriangleCount(), 4212u);
  ASSERT_EQ(duck.materials.size(), 1u);
  EXPECT_TRUE(SameFile(duck.materials[0].texturePath, Sample("Collada/duckCM.tga")));
  // The file's mirror is black, its highlight too.
  EXPECT_EQ(duck.materials[0].reflectance, 0);
  EXPECT_EQ(duck.materials[0].specularExponent, 0);
}

TEST_F(SampleModels, TextureOfOtherCaseIsFoundBesideTheModel) {
  const Scene cube = Load(Sample("3DS/cube_with_diffuse_texture.3DS"));
  ASSERT_EQ(cube.materials.size(), 1u);
  EXPECT_TRUE(SameFile(cube.materials[0].texturePath, Sample("3DS/test.png")));
}

TEST_F(SampleModels, CameraOfABlenderFileStandsWhereThatProgramPutsIt) {
  if (!Reads(".blend")) GTEST_SKIP();
  // The start-up scene of the program: a cube of 2 m, the camera at (7.48, -6.51, 5.34) m.
  const Scene scene = Load(Sample("BLEND/BlenderDefault_250.blend"));
  ASSERT_EQ(scene.cameras.size(), 1u);
  const Vec3 metres(7.4811f, -6.5076f, 5.3437f);
  EXPECT_TRUE(scene.cameras[0].view.position.isApprox(metres * kInchesPerMetre, 1e-3f));
  // It looks at the cube, with the right side up.
  const Vec3 toCube = -scene.cameras[0].view.position.normalized();
  EXPECT_GT(scene.cameras[0].view.forward.dot(toCube), 0.99f);
  EXPECT_GT(scene.cameras[0].view.up.z(), 0.8f);
}

}  // namespace
}  // namespace qv::host

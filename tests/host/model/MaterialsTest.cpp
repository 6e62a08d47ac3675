#include "host/model/MaterialReader.h"
#include "host/model/MaterialTable.h"
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

class Materials : public ModelFolder {
 protected:
  // The material of a one-triangle OBJ file with these lines in its library.
  SceneMaterial FromMtl(const std::string& lines) {
    Write("model.mtl", "newmtl m\n" + lines + "\n");
    return OnlyMaterial(WriteTriangle());
  }
  // The same of a glTF file.
  SceneMaterial FromGltf(const std::string& material) {
    return OnlyMaterial(
        WriteGltf(R"("scenes":[{"nodes":[0]}],"nodes":[{"mesh":0}],"materials":[)" + material + "]",
                  R"(,"material":0)"));
  }

 private:
  static SceneMaterial OnlyMaterial(const std::filesystem::path& model) {
    const Scene scene = Load(model);
    EXPECT_EQ(scene.materials.size(), 1u);
    return scene.materials.empty() ? SceneMaterial() : scene.materials[0];
  }
};

TEST_F(Materials, ObjColoursGoAsTheyStand) {
  const SceneMaterial m =
      FromMtl("Ka 0.1 0.2 0.3\nKd 0.5 0.25 0.75\nKs 0.2 0.3 0.4\nNs 50\nNi 1.5\nillum 2");
  EXPECT_TRUE(m.ambientColor.isApprox(Vec3(0.1f, 0.2f, 0.3f)));
  EXPECT_TRUE(m.diffuseColor.isApprox(Vec3(0.5f, 0.25f, 0.75f)));
  EXPECT_TRUE(m.specularColor.isApprox(Vec3(0.2f, 0.3f, 0.4f)));
  EXPECT_EQ(m.specularExponent, 50);
  EXPECT_EQ(m.refractiveIndex, 1.5f);
  EXPECT_EQ(m.diffuseFactor, 1);
  EXPECT_EQ(m.reflectance, 0);
  EXPECT_EQ(m.opacity, 1);
  EXPECT_FALSE(m.hasTexture);
}

TEST_F(Materials, HighlightGoesWithTheIlluminationModel) {
  EXPECT_EQ(FromMtl("Ks 1 1 1\nNs 50\nillum 1").specularExponent, 0);
  EXPECT_EQ(FromMtl("Ks 0 0 0\nNs 50\nillum 2").specularExponent, 0);
  EXPECT_FLOAT_EQ(FromMtl("Ks 0.5 0.5 0.5\nNs 50\nillum 3").reflectance, 0.5f);
}

TEST_F(Materials, OpacityOfZeroMeansThatNobodySetIt) {
  EXPECT_EQ(FromMtl("Kd 1 0 0\nd 0").opacity, 1);
  EXPECT_FLOAT_EQ(FromMtl("Kd 1 0 0\nd 0.3").opacity, 0.3f);
  EXPECT_FLOAT_EQ(FromMtl("Kd 1 0 0\nTr 0.25").opacity, 0.75f);
  EXPECT_EQ(FromMtl("Kd 1 0 0\nTr 1").opacity, 1);
}

TEST_F(Materials, BlackSurfaceThatGlowsShowsItsGlow) {
  EXPECT_TRUE(FromMtl("Kd 0 0 0\nKe 0 0.5 1").diffuseColor.isApprox(Vec3(0, 0.5f, 1)));
  EXPECT_TRUE(FromMtl("Kd 0.2 0 0\nKe 0 0.5 1").diffuseColor.isApprox(Vec3(0.2f, 0, 0)));
}

TEST_F(Materials, KeepTheirNameAndTheLightOfTheirOwn) {
  const SceneMaterial classic = FromMtl("Kd 0.2 0 0\nKe 0 0.5 1");
  EXPECT_TRUE(classic.emission.isApprox(Vec3(0, 0.5f, 1)));
  EXPECT_FALSE(classic.name.empty());
  // Linear 0.2140 is 0.5 on the screen (IEC 61966-2-1).
  const SceneMaterial gltf = FromGltf(R"({"name": "Lamp", "emissiveFactor": [0.214, 0, 1]})");
  EXPECT_EQ(gltf.name, "Lamp");
  EXPECT_NEAR(gltf.emission.x(), 0.5f, 1e-3f);
  EXPECT_FLOAT_EQ(gltf.emission.z(), 1);
}

TEST_F(Materials, NonsenseInNumbersIsNotPassedOn) {
  const SceneMaterial m = FromMtl("Kd nan 0 0\nKs inf 1 1\nNs nan\nNi -3\nd nan\nillum 2");
  EXPECT_TRUE(m.diffuseColor.allFinite());
  EXPECT_TRUE(m.specularColor.allFinite());
  EXPECT_EQ(m.specularExponent, 0);
  EXPECT_EQ(m.refractiveIndex, 1);
  EXPECT_EQ(m.opacity, 1);
}

// 0.214041 is the linear value of the sRGB value 0.5.
TEST_F(Materials, GltfFactorsAreLinearAndAreEncodedForTheScreen) {
  const SceneMaterial m = FromGltf(
      R"({"pbrMetallicRoughness":{"baseColorFactor":[0.214041,1,0,1],"metallicFactor":0}})");
  EXPECT_NEAR(m.diffuseColor.x(), 0.5f, 1e-3f);
  EXPECT_NEAR(m.diffuseColor.y(), 1, 1e-5f);
  EXPECT_EQ(m.diffuseColor.z(), 0);
}

TEST_F(Materials, GltfAlphaCountsByItsMode) {
  const std::string color = R"("pbrMetallicRoughness":{"baseColorFactor":[1,1,1,0.2]})";
  EXPECT_EQ(FromGltf("{" + color + "}").opacity, 1);
  EXPECT_FLOAT_EQ(FromGltf("{" + color + R"(,"alphaMode":"BLEND"})").opacity, 0.2f);
  EXPECT_EQ(FromGltf("{" + color + R"(,"alphaMode":"MASK","alphaCutoff":0.1})").opacity, 1);
}

TEST_F(Materials, ModelThatNobodyCouldSeeIsShown) {
  const std::string color = R"("pbrMetallicRoughness":{"baseColorFactor":[1,1,1,0]})";
  EXPECT_EQ(FromGltf("{" + color + R"(,"alphaMode":"BLEND"})").opacity, 1);
}

TEST_F(Materials, SmoothMetalMirrorsAndRoughMetalDoesNot) {
  const auto metal = [&](const std::string& roughness) {
    return FromGltf(R"({"pbrMetallicRoughness":{"roughnessFactor":)" + roughness + "}}");
  };
  EXPECT_GT(metal("0.1").reflectance, 0.6f);
  EXPECT_EQ(metal("0.9").reflectance, 0);
  EXPECT_EQ(metal("0.9").specularExponent, 0);
  // The smoother, the narrower the highlight.
  EXPECT_GT(metal("0.3").specularExponent, metal("0.5").specularExponent);
}

TEST_F(Materials, VertexColoursBecomeMaterials) {
  const auto path = Write("colors.ply",
                          "ply\nformat ascii 1.0\nelement vertex 6\nproperty float x\n"
                          "property float y\nproperty float z\nproperty uchar red\n"
                          "property uchar green\nproperty uchar blue\nelement face 2\n"
                          "property list uchar int vertex_indices\nend_header\n"
                          "0 0 0 255 0 0\n1 0 0 255 0 0\n0 1 0 255 0 0\n"
                          "0 0 1 0 0 255\n1 0 1 0 0 255\n0 1 1 0 0 255\n3 0 1 2\n3 3 4 5\n");
  const Scene scene = Load(path);
  ASSERT_EQ(scene.materials.size(), 2u);
  const auto& triangles = scene.meshes.at(0).triangles;
  ASSERT_EQ(triangles.size(), 2u);
  const auto colorOf = [&](const MeshTriangle& triangle) {
    return scene.materials[triangle.materialWord & 0xffff].diffuseColor;
  };
  EXPECT_TRUE(colorOf(triangles[0]).isApprox(Vec3(1, 0, 0)));
  EXPECT_TRUE(colorOf(triangles[1]).isApprox(Vec3(0, 0, 1)));
}

TEST_F(Materials, TextureWithoutCoordinatesLeavesTheColour) {
  std::filesystem::copy_file(Sample("glTF2/BoxTextured-glTF/CesiumLogoFlat.png"),
                             folder() / "wood.png");
  EXPECT_TRUE(FromMtl("Kd 1 0 0\nmap_Kd wood.png").hasTexture);
  const auto bare =
      Write("bare.obj", "mtllib model.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl m\nf 1 2 3\n");
  const Scene scene = Load(bare);
  EXPECT_FALSE(scene.materials.at(0).hasTexture);
  EXPECT_TRUE(scene.materials.at(0).diffuseColor.isApprox(Vec3(1, 0, 0)));
}

TEST_F(Materials, MissingTextureIsToldAndLeavesTheColour) {
  const SceneMaterial m = FromMtl("Kd 0 1 0\nmap_Kd gone.png");
  EXPECT_FALSE(m.hasTexture);
  EXPECT_TRUE(m.diffuseColor.isApprox(Vec3(0, 1, 0)));
  const Scene scene = Load(folder() / "model.obj");
  ASSERT_EQ(scene.warnings.size(), 1u);
  EXPECT_NE(scene.warnings[0].find("gone.png"), std::string::npos);
}

TEST_F(Materials, PathTooLongForTheLinkGetsAShortOne) {
  std::string deep;
  for (int i = 0; i < 3; ++i) deep += std::string(90, 'd') + "/";
  std::filesystem::create_directories(folder() / deep);
  std::filesystem::copy_file(Sample("glTF2/BoxTextured-glTF/CesiumLogoFlat.png"),
                             folder() / deep / "wood.png");
  Write("model.mtl", "newmtl m\nmap_Kd " + deep + "wood.png\n");
  const Scene scene = Load(WriteTriangle());
  const std::string& texture = scene.materials.at(0).texturePath;
  EXPECT_LT(texture.size(), 260u);
  // A link to the file, or a copy where no links can be made.
  EXPECT_EQ(std::filesystem::file_size(texture),
            std::filesystem::file_size(folder() / deep / "wood.png"));
}

TEST(MaterialTable, KeepsEachMaterialOnceAndReplacesWhatIsTooMuch) {
  const auto colored = [](float red, const std::string& texture = "") {
    SceneMaterial material;
    material.diffuseColor = Vec3(red, 0, 0);
    material.hasTexture = !texture.empty();
    material.texturePath = texture;
    return material;
  };
  MaterialTable table(3);
  EXPECT_EQ(table.IndexOf(colored(0)), 0u);
  EXPECT_EQ(table.IndexOf(colored(1)), 1u);
  EXPECT_EQ(table.IndexOf(colored(0)), 0u);
  EXPECT_EQ(table.IndexOf(colored(0, "wood.png")), 2u);
  EXPECT_EQ(table.IndexOf(colored(0.8f)), 1u);
  EXPECT_EQ(table.IndexOf(colored(0.1f)), 0u);
  EXPECT_EQ(table.IndexOf(colored(0.9f, "wood.png")), 2u);
  std::vector<std::string> warnings;
  EXPECT_EQ(table.Take(warnings).size(), 3u);
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_NE(warnings[0].find("3 were replaced"), std::string::npos) << warnings[0];
}

}  // namespace
}  // namespace qv::host

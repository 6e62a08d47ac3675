#include <algorithm>

#include "host/scenefile/LoadScene.h"
#include "tests/host/model/ModelFolder.h"
#include "tests/host/scenefile/ZipFile.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// A cube of two materials: "Top" above, "Rest" elsewhere; y is up.
constexpr const char* kCube = R"(mtllib cube.mtl
v 0 0 0
v 1 0 0
v 1 0 1
v 0 0 1
v 0 1 0
v 1 1 0
v 1 1 1
v 0 1 1
usemtl Rest
f 1 2 3 4
f 1 5 6 2
f 2 6 7 3
f 3 7 8 4
f 4 8 5 1
usemtl Top
f 5 8 7 6
)";
constexpr const char* kMaterials =
    "newmtl Rest\nKd 0.5 0.5 0.5\nillum 1\nnewmtl Top\nKd 1 0 0\nillum 1\n";

class SceneFiles : public ModelFolder {
 protected:
  SceneFiles() {
    Write("cube.obj", kCube);
    Write("cube.mtl", kMaterials);
  }

  LoadedScene LoadText(const std::string& fields) {
    const fs::path path =
        Write("scene.json",
              R"({"format": "quorvane scene", "version": 1, "unit": "in", )" + fields + "}");
    return LoadScene(path);
  }
  Scene Assembled(const std::string& fields) {
    LoadedScene loaded = LoadText(fields);
    EXPECT_TRUE(loaded.scene) << loaded.error;
    return loaded.scene ? std::move(*loaded.scene) : Scene();
  }

  static const SceneMaterial* Find(const Scene& scene, const std::string& name, const Vec3& color) {
    const auto found = std::find_if(
        scene.materials.begin(), scene.materials.end(), [&](const SceneMaterial& material) {
          return material.name == name && material.diffuseColor.isApprox(color);
        });
    return found == scene.materials.end() ? nullptr : &*found;
  }
};

TEST_F(SceneFiles, PutModelsWhereTheyAreWantedEachWithItsOwnMaterials) {
  const Scene scene = Assembled(R"("models": [
{"file": "cube.obj", "unit": "in", "at": [10, 0, 0], "size": {"width": 4}},
{"file": "cube.obj", "unit": "in", "at": [0, 20, 5], "turn": 90, "scale": [2, 4, 6],
 "materials": [{"name": "Top", "color": [0, 1, 0], "opacity": 0.5, "mirror": 0.25,
                "refraction": 1.5, "shininess": 30},
               {"name": "*", "bump": 0.1}]}])");
  EXPECT_TRUE(scene.bounds.min().isApprox(Vec3(-2, -2, 0)));
  EXPECT_TRUE(scene.bounds.max().isApprox(Vec3(12, 21, 11)));
  EXPECT_NE(Find(scene, "Top", Vec3(1, 0, 0)), nullptr);
  const SceneMaterial* top = Find(scene, "Top", Vec3(0, 1, 0));
  ASSERT_NE(top, nullptr);
  EXPECT_FLOAT_EQ(top->opacity, 0.5f);
  EXPECT_FLOAT_EQ(top->reflectance, 0.25f);
  EXPECT_FLOAT_EQ(top->refractiveIndex, 1.5f);
  EXPECT_FLOAT_EQ(top->specularExponent, 30);
  EXPECT_GT(top->specularColor.minCoeff(), 0);
  EXPECT_FLOAT_EQ(top->bumpFactor, 0.1f);

  // The green faces lie on the second cube, at its top.
  const auto number = static_cast<std::uint32_t>(top - scene.materials.data());
  int green = 0;
  for (const SceneMesh& mesh : scene.meshes) {
    for (const MeshTriangle& triangle : mesh.triangles) {
      if (triangle.materialWord != (number | number << 16)) continue;
      ++green;
      for (const std::int32_t vertex : triangle.vertex) {
        EXPECT_FLOAT_EQ(mesh.vertices[static_cast<std::size_t>(vertex)].position[2], 11);
        EXPECT_FLOAT_EQ(mesh.vertices[static_cast<std::size_t>(vertex)].normal[2], 1);
      }
    }
  }
  EXPECT_EQ(green, 2);
}

TEST_F(SceneFiles, LeaveOutWhatLiesInABox) {
  const std::string models = R"("models": [{"file": "cube.obj", "unit": "in", "at": [10, 0, 0],
"without": [{"from": [9, -1, )";
  EXPECT_EQ(Assembled(models + R"(0.9], "to": [11, 1, 1.1]}]}])").TriangleCount(), 10u);
  const LoadedScene none = LoadText(models + R"(0.9], "to": [10, 1, 1.1]}]}])");
  EXPECT_NE(none.error.find("models[0].without[0]: no part"), std::string::npos) << none.error;
}

TEST_F(SceneFiles, TakeModelsOutOfArchives) {
  WriteZip(folder() / "things.zip", {{"in/cube.obj", kCube}, {"in/cube.mtl", kMaterials}});
  const Scene scene = Assembled(R"("archives": {"things": "things.zip"}, "models": [
{"archive": "things", "file": "in/cube.obj"}, {"archive": "things", "file": "in/cube.obj"}])");
  EXPECT_EQ(scene.TriangleCount(), 24u);
  EXPECT_NE(Find(scene, "Top", Vec3(1, 0, 0)), nullptr);
}

TEST_F(SceneFiles, MakeShapesThatAreClosedAndFaceOutwards) {
  for (const char* kind : {"box", "cylinder", "sphere"}) {
    const Scene scene = Assembled(R"("shapes": [{"kind": ")" + std::string(kind) +
                                  R"(", "size": [2, 4, 6], "at": [1, 2, 3], "material": {}}])");
    EXPECT_TRUE(scene.bounds.min().isApprox(Vec3(0, 0, 3), 1e-4f)) << kind;
    EXPECT_TRUE(scene.bounds.max().isApprox(Vec3(2, 4, 9), 1e-4f)) << kind;
    // The volume by the divergence theorem is only right if all faces are there and look out.
    float volume = 0;
    const SceneMesh& mesh = scene.meshes.at(0);
    for (const MeshTriangle& triangle : mesh.triangles) {
      const auto corner = [&](int i) {
        return Vec3(mesh.vertices[static_cast<std::size_t>(triangle.vertex[i])].position);
      };
      volume += corner(0).dot(corner(1).cross(corner(2))) / 6;
      const Vec3 face = (corner(1) - corner(0)).cross(corner(2) - corner(0));
      const auto& vertex = mesh.vertices[static_cast<std::size_t>(triangle.vertex[0])];
      EXPECT_GT(face.dot(Vec3(vertex.normal)), 0) << kind;
    }
    const float box = 2 * 4 * 6;
    const float pi = 3.14159265f;
    const float expected = kind[0] == 'b' ? box : kind[0] == 'c' ? box * pi / 4 : box * pi / 6;
    EXPECT_NEAR(volume, expected, 0.01f * box) << kind;
  }
}

TEST_F(SceneFiles, MakeLampsOfWhatGlows) {
  const Scene scene = Assembled(R"("models": [{"file": "cube.obj", "unit": "in",
 "materials": [{"name": "Top", "glow": [1, 0.5, 0.25]}]}],
"lights": [{"kind": "lem", "name": "sky", "at": [0, 0, 9], "direction": [0, 0, -1],
            "size": [1, 1]}])");
  ASSERT_EQ(scene.areaLights.size(), 2u);
  EXPECT_EQ(scene.areaLights[0].name, "sky");
  const SceneAreaLight& lamp = scene.areaLights[1];
  EXPECT_FLOAT_EQ(lamp.emission.y() / lamp.emission.x(), 0.5f);
  for (const Vec3& corner : lamp.corners) EXPECT_NEAR(corner.z(), 1, 0.1f);
}

TEST_F(SceneFiles, SayWhichFileIsWrongAndWhere) {
  WriteZip(folder() / "things.zip", {{"in/cube.obj", kCube}});
  const std::string archives = R"("archives": {"things": "things.zip", "gone": "gone.zip"}, )";
  const auto message = [&](const std::string& fields) { return LoadText(fields).error; };
  const auto expect = [](const std::string& text, const std::string& part) {
    EXPECT_NE(text.find(part), std::string::npos) << text;
  };
  expect(message(R"("models": [{"file": "none.obj"}])"),
         "models[0].file: there is no file " + (folder() / "none.obj").string());
  expect(message(R"("models": [{"archive": "things", "file": "in/cube.obj"}])"),
         "there is no archive \"things\"");
  expect(message(archives + R"("models": [{"archive": "gone", "file": "a.obj"}])"),
         "models[0].file: there is no file " + (folder() / "gone.zip").string());
  expect(message(R"("models": [{"file": "cube.obj", "materials": [{"name": "Bottom"}]}])"),
         "models[0].materials[0].name: the model has no material \"Bottom\"; it has \"Rest\", "
         "\"Top\"");
}

}  // namespace
}  // namespace qv::host

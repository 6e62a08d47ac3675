#include <chrono>

#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

class BrokenFiles : public ModelFolder {};

TEST_F(BrokenFiles, AreRefusedWithAReason) {
  const auto start = std::chrono::steady_clock::now();
  for (const char* name :
       {"glTF2/MissingBin/BoxTextured.gltf", "glTF2/RecursiveNodes/RecursiveNodes.gltf",
        "glTF2/BoxWithInfinites-glTF-Binary/BoxWithInfinites.glb",
        "glTF2/IndexOutOfRange/AllIndicesOutOfRange.gltf", "glTF2/TestNoRootNode/NoScene.gltf",
        "glTF2/TestNoRootNode/SceneWithoutNodes.gltf", "glTF2/wrongTypes/badArray.gltf",
        "invalid/empty.obj", "invalid/malformed.obj", "invalid/OutOfMemory.off",
        "invalid/readme.txt", "OBJ/point_cloud.obj", "FBX/transparentTest.fbx", "OBJ", "no.such"}) {
    const LoadResult result = LoadModel(Sample(name));
    EXPECT_FALSE(result.scene) << name;
    EXPECT_NE(result.error.find(Sample(name).string()), std::string::npos) << result.error;
    EXPECT_GT(result.error.size(), Sample(name).string().size() + 30) << result.error;
  }
  const char* const empty = "glTF2/BoxWithInfinites-glTF-Binary/BoxWithInfinites.glb";
  EXPECT_NE(LoadModel(Sample(empty)).error.find("12 faces"), std::string::npos);
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(20));
}

// One face of six is a triangle with a corner that is not a number, one has no area.
TEST_F(BrokenFiles, KeepWhatIsSound) {
  const auto path = Write("half.obj",
                          "v 0 0 0\nv 1 0 0\nv 0 1 0\nv nan 0 0\nv 0 inf 5\nv 3 0 0\n"
                          "f 1 2 3\nf 1 2 4\nf 1 5 2\nf 1 2 6\nf 3 2 1\n");
  const Scene scene = Load(path);
  EXPECT_EQ(scene.TriangleCount(), 2u);
  ASSERT_EQ(scene.warnings.size(), 2u);
  EXPECT_EQ(scene.warnings[0].substr(0, 7), "2 faces");
  EXPECT_EQ(scene.warnings[1].substr(0, 11), "1 faces wit");
  // In metres.
  EXPECT_NEAR(scene.bounds.sizes().maxCoeff(), 39.3701f, 0.001f);
}

TEST_F(BrokenFiles, LoseOnlyTheTrianglesWithIndicesOutOfRange) {
  EXPECT_EQ(Load(Sample("glTF2/IndexOutOfRange/IndexOutOfRange.gltf")).TriangleCount(), 11u);
}

TEST_F(BrokenFiles, DoNotReachTheLinkThroughAPlaceOutsideOfFloats) {
  const auto path = Write("far.obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 1e38 0 0\nf 1 2 3\nf 1 4 3\n");
  LoadOptions options;
  options.unit = LengthUnit::kMetre;
  const Scene scene = Load(path, options);
  EXPECT_EQ(scene.TriangleCount(), 1u);
  EXPECT_LT(scene.bounds.sizes().maxCoeff(), 40);
  for (const SceneMesh& mesh : scene.meshes) {
    for (const MeshVertex& vertex : mesh.vertices) EXPECT_TRUE(PositionOf(vertex).allFinite());
  }
}

}  // namespace
}  // namespace qv::host

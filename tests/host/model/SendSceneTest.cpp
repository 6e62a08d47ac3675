#include <algorithm>

#include "host/model/SendScene.h"
#include "tests/host/model/FakeHostLink.h"
#include "tests/host/model/ModelFolder.h"

namespace qv::host {
namespace {

class Sending : public ModelFolder {
 protected:
  static std::vector<std::string> WithoutReports(std::vector<std::string> commands) {
    std::erase_if(commands, [](const std::string& command) {
      return command == "SetProgress" || command == "SetStatusMessage";
    });
    return commands;
  }
};

TEST_F(Sending, GoesInTheOrderOfASceneLoad) {
  const Scene duck = Load(Sample("Collada/duck.dae"));
  FakeHostLink link;
  const auto counts = SendScene(link, duck, {});
  ASSERT_TRUE(counts);
  EXPECT_EQ(WithoutReports(link.commands()),
            (std::vector<std::string>{"SetModelDirectory", "AddMaterial", "AddDirectionalLight",
                                      "SetLocationAndTime", "BeginStaticMesh", "AddMeshData",
                                      "EndMesh", "SceneComplete", "SetCamera"}));
  EXPECT_EQ(counts->triangles, 4212u);
  EXPECT_EQ(counts->textures, 1u);
  EXPECT_EQ(counts->lights, 1u);
}

TEST_F(Sending, SendsEachMeshOfTheHouseAndOnlyMaterialsThatItHasSent) {
  const Scene house = Load(Sample("IFC/AC14-FZK-Haus.ifc"));
  FakeHostLink link;
  const auto counts = SendScene(link, house, {});
  ASSERT_TRUE(counts);
  const auto count = [&](const char* command) {
    return static_cast<std::size_t>(
        std::count(link.commands().begin(), link.commands().end(), command));
  };
  EXPECT_EQ(count("BeginStaticMesh"), house.meshes.size());
  EXPECT_EQ(count("EndMesh"), house.meshes.size());
  EXPECT_EQ(count("AddMaterial"), house.materials.size());
  EXPECT_LT(link.highestMaterial(), house.materials.size());
  EXPECT_EQ(link.triangles(), counts->triangles);
  // The gauge fills up, in few enough steps, and is empty at the end.
  ASSERT_GT(link.progress().size(), 10u);
  EXPECT_LT(link.progress().size(), 150u);
  EXPECT_TRUE(std::is_sorted(link.progress().begin(), link.progress().end() - 1));
  EXPECT_EQ(link.progress().end()[-2], 1);
  EXPECT_EQ(link.progress().back(), 0);
}

TEST_F(Sending, LeavesLightsOutWhenAskedTo) {
  const Scene scene = Load(Sample("Collada/lights.dae"));
  SendOptions options;
  options.lights = false;
  FakeHostLink link;
  const auto counts = SendScene(link, scene, options);
  ASSERT_TRUE(counts);
  EXPECT_EQ(counts->lights, 0u);
  EXPECT_EQ(std::count(link.commands().begin(), link.commands().end(), "AddPointLight"), 0);
}

TEST_F(Sending, SendsAreaLightsUnlessToldNotTo) {
  Scene scene = Load(Sample("Collada/duck.dae"));
  scene.areaLights.resize(2);
  SendOptions options;
  for (const bool wanted : {true, false}) {
    options.areaLights = wanted;
    FakeHostLink link;
    const auto counts = SendScene(link, scene, options);
    ASSERT_TRUE(counts);
    EXPECT_EQ(counts->areaLights, wanted ? 2u : 0u);
    EXPECT_EQ(std::count(link.commands().begin(), link.commands().end(), "AddLEMLight"),
              wanted ? 2 : 0);
  }
}

TEST_F(Sending, StopsAtTheCommandThatTheViewerDoesNotAnswer) {
  const Scene scene = Load(Sample("Collada/lights.dae"));
  FakeHostLink whole;
  ASSERT_TRUE(SendScene(whole, scene, {}));
  for (std::size_t lives = 0; lives < whole.commands().size(); ++lives) {
    FakeHostLink link(lives);
    EXPECT_FALSE(SendScene(link, scene, {})) << lives;
    EXPECT_EQ(link.commands().size(), lives);
  }
}

}  // namespace
}  // namespace qv::host

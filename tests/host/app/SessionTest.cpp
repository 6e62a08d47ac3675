#include <cstring>
#include <sstream>

#include "host/app/SceneProperties.h"
#include "host/app/Session.h"
#include "tests/host/TestFolder.h"

namespace qv::host {
namespace {

LocationAndTime SomeWhen() {
  LocationAndTime when;
  when.sunRotation = 0.25f;
  when.latitude = 48;
  when.longitude = 11;
  when.year = 2024;
  when.month = 6;
  when.day = 15;
  when.hour = 14;
  when.timeZone = 1;
  return when;
}

class Sessions : public TestFolder {
 protected:
  Sessions() { session.SetPlaceAndTime(SomeWhen()); }

  std::ostringstream output;
  std::ostringstream errors;
  Console console{output, errors};
  PropertyStore properties{folder() / "model.obj", folder() / "user"};
  Session session{properties, console};
};

TEST_F(Sessions, CameraFollowsTheViewerWithItsTargetAsFarAhead) {
  session.SetCamera({Vec3(0, 0, 0), Vec3(0, 1, 0), Vec3(0, 0, 1), 0.7f, Vec3(0, 200, 0)});
  EXPECT_EQ(session.Camera().target, Vec3(0, 200, 0));
  session.CameraChanged(Vec3(10, 20, 70), Vec3(1, 0, 0), Vec3(0, 0, 1), 0.5f);
  const RenderCamera camera = session.Camera();
  EXPECT_EQ(camera.position, Vec3(10, 20, 70));
  EXPECT_EQ(camera.forward, Vec3(1, 0, 0));
  EXPECT_EQ(camera.fieldOfView, 0.5f);
  EXPECT_EQ(camera.target, Vec3(210, 20, 70));
  // 0.5 radians are 28.648 degrees.
  EXPECT_EQ(output.str(),
            "camera: eye 10.000,20.000,70.000 direction 1.000000,0.000000,0.000000 up "
            "0.000000,0.000000,1.000000 fov 28.648 target 210.000,20.000,70.000\n");
}

TEST_F(Sessions, DateFollowsTheViewerAndThePlaceStays) {
  session.DateTimeChanged(2025, 1, 2, 3, 4, 5);
  EXPECT_EQ(output.str(), "date: 2025-01-02T03:04:05\n");
  const LocationAndTime when = session.Location();
  EXPECT_EQ(when.year, 2025);
  EXPECT_EQ(when.second, 5);
  EXPECT_EQ(when.latitude, 48);
  EXPECT_EQ(when.sunRotation, 0.25f);
  EXPECT_EQ(when.timeZone, 1);
}

TEST_F(Sessions, KeepsAWishForThePropertyUntilTheViewerSetsIt) {
  const PropertyStore::Value stored{std::byte{1}}, wished{std::byte{2}}, chosen{std::byte{3}};
  session.SetProperty("background", stored);
  session.SetForSession("background", wished);
  EXPECT_EQ(session.Property("background"), wished);
  EXPECT_EQ(properties.Get("background"), stored) << "the model keeps its own";
  session.SetProperty("background", chosen);
  EXPECT_EQ(session.Property("background"), chosen);
  EXPECT_EQ(properties.Get("background"), chosen);
}

TEST_F(Sessions, PagesAreTheCamerasOfTheFile) {
  EXPECT_TRUE(session.Pages().empty());
  session.SetPages({{"K\xc3\xbc"
                     "che",
                     {Vec3(1, 2, 3), Vec3(0, 1, 0), Vec3(0, 0, 1), 0.6f, Vec3(1, 9, 3)}},
                    {"no UTF-8 \xff", {}}});
  const std::vector<HostPage> pages = session.Pages();
  ASSERT_EQ(pages.size(), 2u);
  EXPECT_EQ(pages[0].name, u"K\u00fcche");
  EXPECT_EQ(pages[0].eye, Vec3(1, 2, 3));
  EXPECT_EQ(pages[0].direction, Vec3(0, 1, 0));
  EXPECT_EQ(pages[0].fieldOfView, 0.6f);
  EXPECT_FALSE(pages[0].hasSunTime);
  EXPECT_EQ(pages[0].year, 2024);
  EXPECT_EQ(pages[0].latitude, 48);
  EXPECT_EQ(pages[1].name, u"no UTF-8 ?");
}

TEST_F(Sessions, PropertiesGoToTheStore) {
  EXPECT_FALSE(session.Property("gamma"));
  session.SetProperty("gamma", {std::byte{1}, std::byte{2}});
  EXPECT_EQ(output.str(), "property: gamma, 2 bytes\n");
  EXPECT_EQ(session.Property("gamma"), (std::vector<std::byte>{std::byte{1}, std::byte{2}}));
  EXPECT_EQ(PropertyStore(folder() / "model.obj", folder() / "user").Get("gamma"),
            session.Property("gamma"));
}

TEST_F(Sessions, ResendIsAskedForOnceEachTime) {
  EXPECT_FALSE(session.TakeResendRequest());
  session.ResendScene();
  EXPECT_TRUE(session.TakeResendRequest());
  EXPECT_FALSE(session.TakeResendRequest());
  EXPECT_FALSE(session.viewerClosed());
  session.ViewerClosed();
  EXPECT_TRUE(session.viewerClosed());
}

TEST_F(Sessions, DefaultsOfTheSceneCountUntilTheUserChangesThem) {
  SceneLook look;
  look.gamma = 1.5f;
  look.contrast = 0.25f;
  look.lightFactors.emplace();
  look.lightFactors->lem = 2;
  look.lightFactors->useSkyColorForAmbient = true;
  look.background = "second";
  // Whatever the order in which the disk has them, the viewer counts them by their names.
  for (const char* name : {"third", "first", "second"}) {
    std::filesystem::create_directories(folder() / "CubeMaps" / name);
  }
  SceneProperties properties = PropertiesOf(look, folder());
  EXPECT_TRUE(properties.warnings.empty());
  session.SetDefaults(properties.values);

  // As the link's records have them.
  const auto floats = [&](const std::string& name, std::size_t count) {
    std::vector<float> values(count);
    const auto bytes = session.Property(name).value_or(std::vector<std::byte>());
    EXPECT_GE(bytes.size(), count * sizeof(float)) << name;
    if (bytes.size() >= count * sizeof(float)) {
      std::memcpy(values.data(), bytes.data(), count * sizeof(float));
    }
    return values;
  };
  EXPECT_EQ(floats("gamma", 1), std::vector<float>({1.5f}));
  EXPECT_EQ(floats("brightness2", 2), std::vector<float>({0, 0.25f}));
  EXPECT_EQ(floats("light_factors", 4), std::vector<float>({1, 1, 1, 2}));
  EXPECT_EQ(session.Property("light_factors")->size(), 20u);
  EXPECT_EQ(session.Property("light_factors")->at(16), std::byte{1});
  EXPECT_EQ(session.Property("background"),
            std::vector<std::byte>({std::byte{8}, {}, {}, {}, std::byte{1}, {}, {}, {}}));
  EXPECT_FALSE(session.Property("eye_height"));

  session.SetProperty("gamma", {std::byte{1}});
  EXPECT_EQ(session.Property("gamma"), std::vector<std::byte>({std::byte{1}}));
  look.background = "fourth";
  properties = PropertiesOf(look, folder());
  EXPECT_FALSE(properties.values.contains("background"));
  EXPECT_EQ(properties.warnings.size(), 1u);
}

}  // namespace
}  // namespace qv::host

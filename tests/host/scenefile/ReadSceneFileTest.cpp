#include <gtest/gtest.h>

#include <numbers>
#include <utility>

#include "host/scenefile/ReadSceneFile.h"

namespace qv::host {
namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180;

std::string File(const std::string& fields) {
  return R"({"format": "quorvane scene", "version": 1)" + (fields.empty() ? "" : ", " + fields) +
         "}";
}

std::string Message(const std::string& text) {
  try {
    ReadSceneFile(text);
    return "";
  } catch (const SceneFileError& error) {
    return error.what();
  }
}

TEST(ReadSceneFile, GivesLengthsInInchesAndAnglesInRadians) {
  const SceneFile file = ReadSceneFile(File(R"(
"unit": "cm",
"archives": {"cc0": "a.zip"},
"models": [
 {"file": "m.obj", "archive": "cc0", "name": "chair", "unit": "mm", "up": "x", "at": [254, 0, -2.54],
  "turn": 90, "size": {"height": 50.8}, "lights": false,
  "materials": [{"name": "Seat", "color": "#ff8000", "opacity": 0.5, "texture": null},
                {"name": "*", "glow": [1, 0.5, 0], "blurred": true,
                 "texture": {"archive": "cc0", "file": "t.png"}}],
  "without": [{"from": [0, 0, 0], "to": [2.54, 5.08, 0]}]},
 {"file": "n.obj", "anchor": "origin", "turn": [0, -90, 0], "scale": [1, 2, 3]}],
"shapes": [{"kind": "cylinder", "size": [2.54, 5.08, 7.62], "material": {"mirror": 0.5},
            "textureLength": 25.4}],
"views": [{"name": "start", "eye": [0, 0, 0], "target": [25.4, 0, 25.4], "fov": 60}],
"place": {"latitude": -33.9, "longitude": 151.2, "timezone": 10, "north": 90,
          "time": "2023-12-31T08:09"},
"background": "meadow_noon", "eyeHeight": 127,
"lightFactors": {"lem": 2, "skyColor": true}, "image": {"gamma": 1.2})"));

  ASSERT_EQ(file.models.size(), 2u);
  const SceneFileModel& chair = file.models[0];
  EXPECT_EQ(chair.load.unit, LengthUnit::kMillimetre);
  EXPECT_TRUE(chair.at.isApprox(Vec3(100, 0, -1)));
  EXPECT_TRUE(chair.turn.isApprox(Vec3(0, 0, 90 * kDegree)));
  EXPECT_FLOAT_EQ(*chair.size.lengths[2], 20);
  ASSERT_EQ(chair.materials.size(), 2u);
  EXPECT_TRUE(chair.materials[0].color->isApprox(Vec3(1, 128 / 255.0f, 0)));
  EXPECT_TRUE(chair.materials[0].plain);
  EXPECT_TRUE(chair.without.at(0).box.max().isApprox(Vec3(1, 2, 0)));
  EXPECT_TRUE(file.models[1].byOrigin);
  EXPECT_TRUE(file.models[1].turn.isApprox(Vec3(0, -90 * kDegree, 0)));
  EXPECT_TRUE(file.shapes.at(0).size.isApprox(Vec3(1, 2, 3)));
  EXPECT_FLOAT_EQ(file.shapes[0].textureLength, 10);
  const RenderCamera& view = file.views.at(0).view;
  EXPECT_TRUE(view.forward.isApprox(Vec3(1, 0, 1).normalized()));
  EXPECT_FLOAT_EQ(view.fieldOfView, 60 * kDegree);
  EXPECT_FLOAT_EQ(*file.when.sunRotation, -90 * kDegree);
  EXPECT_EQ(file.when.time->hour, 8);
  EXPECT_FLOAT_EQ(*file.look.eyeHeight, 50);
  EXPECT_FLOAT_EQ(file.look.lightFactors->lem, 2);
}

TEST(ReadSceneFile, MakesLightsAsBrightAsWantedAtTheirDistance) {
  const SceneFile file = ReadSceneFile(File(R"("unit": "in", "lights": [
 {"kind": "point", "at": [1, 2, 3], "color": [1, 0.5, 0], "level": 0.5, "distance": 40},
 {"kind": "spot", "at": [0, 0, 0], "direction": [0, 0, -2], "outer": 40, "inner": 30},
 {"kind": "directional", "direction": [3, 0, -4], "level": 0.25},
 {"kind": "lem", "at": [0, 0, 90], "direction": [0, 0, -1], "size": [6, 4], "level": 0.6,
  "distance": 60}])"));
  ASSERT_EQ(file.lights.size(), 3u);
  // A lamp's light falls with the distance: 0.5 * 40 over 40.
  EXPECT_TRUE(file.lights[0].color.isApprox(Vec3(20, 10, 0)));
  EXPECT_FLOAT_EQ(file.lights[1].outerAngle, 40 * kDegree);
  EXPECT_FLOAT_EQ(file.lights[1].innerAngle, 30 * kDegree);
  EXPECT_TRUE(file.lights[1].direction.isApprox(Vec3(0, 0, -1)));
  EXPECT_TRUE(file.lights[2].direction.isApprox(Vec3(0.6f, 0, -0.8f)));
  EXPECT_TRUE(file.lights[2].color.isApprox(Vec3(0.25f, 0.25f, 0.25f)));
  // An area's with its square: 0.6 * 60^2 / 24.
  ASSERT_EQ(file.areaLights.size(), 1u);
  EXPECT_TRUE(file.areaLights[0].emission.isApprox(Vec3(90, 90, 90)));
  const auto& corners = file.areaLights[0].corners;
  ASSERT_EQ(corners.size(), 6u);
  for (std::size_t triangle = 0; triangle < 2; ++triangle) {
    const auto* c = &corners[3 * triangle];
    // Half the rectangle, facing down.
    EXPECT_TRUE((c[1] - c[0]).cross(c[2] - c[0]).isApprox(Vec3(0, 0, -24)));
  }
}

TEST(ReadSceneFile, TellsMistakesWithTheirPlace) {
  const std::pair<std::string, const char*> mistakes[] = {
      {"", "parse error at line 1"},
      {"{}", "the field \"format\" is missing"},
      {R"({"format": "quorvane scene", "version": 2})", "version: a newer Quorvane"},
      {"{\n\"format\": \"quorvane scene\",\n,}", "line 3"},
      {R"("unit": "cm", "unit": "m")", "the field \"unit\" is there twice"},
      {R"("modles": [])", "unknown field \"modles\"; there are format, version"},
      {R"("unit": "yd")", "unit: takes one of in, ft, m, cm, mm, not \"yd\""},
      {R"("models": [{"file": "a"}, {"name": "b"}])", "models[1]: the field \"file\" is missing"},
      {R"("models": [{"file": "a", "scale": 0}])",
       "models[0].scale: takes a number from 0.0001 to 10000, not 0"},
      {R"("models": [{"file": "a", "scale": 2, "size": {"width": 1}}])",
       "models[0].size: there is a scale already"},
      {R"("models": [{"file": "a", "at": [1, 2, 1e300]}])",
       "models[0].at: takes a list of 3 numbers"},
      {R"("models": [{"file": "a", "without": [{"from": [1, 0, 0], "to": [0, 1, 1]}]}])",
       "models[0].without[0]: \"to\" lies before \"from\""},
      {R"("lights": [{"kind": "directional", "direction": [0, 0, 0]}])",
       "lights[0].direction: takes a direction that is not zero"},
      {R"("views": [{"name": "a", "eye": [1, 1, 1], "target": [1, 1, 1]}])",
       "views[0]: eye and target are the same point"},
      {R"("place": {"time": "2023-02-29T10:00"})",
       "place.time: takes a date and a time of day that exist"}};
  for (const auto& [text, part] : mistakes) {
    const std::string message = Message(text.starts_with('"') ? File(text) : text);
    EXPECT_NE(message.find(part), std::string::npos) << text << ": " << message;
  }
}

}  // namespace
}  // namespace qv::host

#include <gtest/gtest.h>

#include <iterator>
#include <numbers>
#include <sstream>

#include "host/app/Options.h"

namespace qv::host {
namespace {

constexpr float kDegree = std::numbers::pi_v<float> / 180;

std::vector<std::string> Words(const std::string& line) {
  std::istringstream stream(line);
  return {std::istream_iterator<std::string>(stream), {}};
}

Options Parsed(const std::vector<std::string>& arguments) {
  const auto parsed = ParseOptions(arguments);
  const auto* options = std::get_if<Options>(&parsed);
  const auto* error = std::get_if<UsageError>(&parsed);
  EXPECT_NE(options, nullptr) << (error != nullptr ? error->message : "");
  return options != nullptr ? *options : Options();
}

std::string ErrorOf(const std::vector<std::string>& arguments) {
  const auto parsed = ParseOptions(arguments);
  const auto* error = std::get_if<UsageError>(&parsed);
  return error != nullptr ? error->message : "";
}

TEST(Options, AllMayBeGivenOnEitherSideOfTheModelAndInBothForms) {
  const Options options = Parsed(
      Words("--up y --unit=ft --eye=1,-2.5,3e1 model.obj --target -4,+5,6 --fov 45 "
            "--latitude=-33.9 --longitude 151.2 --time 2023-12-31T08:09:10 --timezone=10 "
            "--north 90 --no-lights --no-lem --background=meadow_noon --viewer /opt/quorvane"));
  EXPECT_EQ(options.background, "meadow_noon");
  EXPECT_EQ(options.model, "model.obj");
  EXPECT_EQ(options.load.up, UpAxis::kY);
  EXPECT_EQ(options.load.unit, LengthUnit::kFoot);
  EXPECT_EQ(options.view.eye, Vec3(1, -2.5f, 30));
  EXPECT_EQ(options.view.target, Vec3(-4, 5, 6));
  EXPECT_FLOAT_EQ(*options.view.fieldOfView, 45 * kDegree);
  const LocationAndTime when = PlaceAndTimeOf(options.when, {});
  EXPECT_FLOAT_EQ(when.latitude, -33.9f);
  EXPECT_FLOAT_EQ(when.longitude, 151.2f);
  EXPECT_EQ(when.year, 2023);
  EXPECT_EQ(when.month, 12);
  EXPECT_EQ(when.day, 31);
  EXPECT_EQ(when.hour, 8);
  EXPECT_EQ(when.minute, 9);
  EXPECT_EQ(when.second, 10);
  EXPECT_EQ(when.timeZone, 10);
  // A bearing is clockwise, the link's angle counterclockwise.
  EXPECT_FLOAT_EQ(when.sunRotation, -90 * kDegree);
  EXPECT_FALSE(options.lights);
  EXPECT_FALSE(options.areaLights);
  EXPECT_EQ(options.viewer, "/opt/quorvane");
}

TEST(Options, PlaceAndTimeComeFromTheSceneFileUnlessGiven) {
  PlaceAndTime file;
  file.latitude = 35;
  file.longitude = 139;
  file.time.emplace();
  file.time->year = 2020;
  const LocationAndTime when =
      PlaceAndTimeOf(Parsed({"s.json", "--latitude=-5", "--north=10"}).when, file);
  EXPECT_EQ(when.latitude, -5);
  EXPECT_EQ(when.longitude, 139);
  EXPECT_EQ(when.timeZone, 9);
  EXPECT_EQ(when.year, 2020);
  EXPECT_FLOAT_EQ(when.sunRotation, -10 * kDegree);
  file.timeZone = 8;
  EXPECT_EQ(PlaceAndTimeOf({}, file).timeZone, 8);
}

TEST(Options, MistakesAreNamed) {
  EXPECT_NE(ErrorOf({}).find("no model"), std::string::npos);
  EXPECT_NE(ErrorOf({"a", "b"}).find("\"b\""), std::string::npos);
  EXPECT_NE(ErrorOf({"m", "--bogus"}).find("--bogus"), std::string::npos);
  EXPECT_NE(ErrorOf({"m", "--fov"}).find("needs a value"), std::string::npos);
  for (const std::string& mistake :
       Words("--up=x --up= --unit=yd --eye=1,2 --eye=1,2,3m --target=nan,0,0 --eye=1e30,0,0 "
             "--fov=180 --latitude=91 --time=2024-02-30T12:00 --time=2024-6-1 --timezone=1.5 "
             "--viewer= --no-lights=1")) {
    const std::string error = ErrorOf({"m", mistake});
    const std::string name = mistake.substr(0, mistake.find('='));
    EXPECT_NE(error.find(name), std::string::npos) << mistake << ": " << error;
  }
}

TEST(Options, ZoneGoesByTheLongitudeUnlessGiven) {
  const auto zone = [](const std::vector<std::string>& arguments) {
    return PlaceAndTimeOf(Parsed(arguments).when, {}).timeZone;
  };
  EXPECT_EQ(zone({"m"}), 1);
  EXPECT_EQ(zone({"m", "--longitude=-71"}), -5);
  EXPECT_EQ(zone({"m", "--longitude=178"}), 12);
  EXPECT_EQ(zone({"m", "--timezone=-3", "--longitude=178"}), -3);
}

}  // namespace
}  // namespace qv::host

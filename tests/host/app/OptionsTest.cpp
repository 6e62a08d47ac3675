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

LocationAndTime When(const std::vector<std::string>& arguments) {
  return PlaceAndTimeOf(Parsed(arguments).when, {});
}

std::string ErrorOf(const std::vector<std::string>& arguments) {
  const auto parsed = ParseOptions(arguments);
  const auto* error = std::get_if<UsageError>(&parsed);
  return error != nullptr ? error->message : "";
}

TEST(Options, ModelAloneIsShownInTheAfternoonOfASummerDay) {
  const Options options = Parsed({"house.ifc"});
  EXPECT_EQ(options.model, "house.ifc");
  EXPECT_FALSE(options.load.up);
  EXPECT_FALSE(options.load.unit);
  EXPECT_FALSE(options.view.eye || options.view.target || options.view.fieldOfView);
  EXPECT_TRUE(options.lights);
  EXPECT_TRUE(options.areaLights);
  const LocationAndTime when = PlaceAndTimeOf(options.when, {});
  EXPECT_EQ(when.month, 6);
  EXPECT_EQ(when.sunRotation, 0);
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

TEST(Options, ZoneGoesByTheLongitudeUnlessGiven) {
  EXPECT_EQ(When({"m"}).timeZone, 1);
  EXPECT_EQ(When({"m", "--longitude=-71"}).timeZone, -5);
  EXPECT_EQ(When({"m", "--longitude=178"}).timeZone, 12);
  EXPECT_EQ(When({"m", "--timezone=-3", "--longitude=178"}).timeZone, -3);
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

TEST(Options, TimesWithoutSecondsStartTheMinute) {
  EXPECT_EQ(When({"m", "--time=2024-02-29T23:59"}).second, 0);
}

TEST(Options, ModelMayStartWithADashBehindTheEndOfOptions) {
  EXPECT_EQ(Parsed({"--", "--help"}).model, "--help");
}

TEST(Options, HelpAndVersionComeFirst) {
  EXPECT_TRUE(std::holds_alternative<ShowHelp>(ParseOptions({"m", "--help"})));
  EXPECT_TRUE(std::holds_alternative<ShowHelp>(ParseOptions({"-h"})));
  EXPECT_TRUE(std::holds_alternative<ShowVersion>(ParseOptions({"--version"})));
  // The text tells of every option that there is, and in what the views are.
  for (const char* word : {"--up", "--unit", "--eye", "--target", "--fov", "--latitude",
                           "--longitude", "--time", "--timezone", "--north", "--no-lights",
                           "--no-lem", "--viewer", "--help", "--version", "inches, z up"}) {
    EXPECT_NE(HelpText().find(word), std::string::npos) << word;
  }
}

TEST(Options, MistakesAreNamed) {
  EXPECT_NE(ErrorOf({}).find("no model"), std::string::npos);
  EXPECT_NE(ErrorOf({"a", "b"}).find("\"b\""), std::string::npos);
  EXPECT_NE(ErrorOf({"m", "--bogus"}).find("--bogus"), std::string::npos);
  EXPECT_NE(ErrorOf({"m", "--fov"}).find("needs a value"), std::string::npos);
  for (const std::string& mistake :
       Words("--up=x --up= --unit=yd --eye=1,2 --eye=1,2,3,4 --eye=1,,3 --eye=1,2,3m "
             "--target=nan,0,0 --target=inf,0,0 --eye=1e30,0,0 --fov=0 --fov=180 --fov=45deg "
             "--latitude=91 --longitude=-181 --time=2024-02-30T12:00 --time=2024-6-1 "
             "--time=2024-06-15_12:00 --time=2024-13-01T00:00 --time=2024-06-15T24:00 "
             "--time=1500-01-01T00:00 --timezone=1.5 --timezone=13 --north=361 --viewer= "
             "--no-lights=1")) {
    const std::string error = ErrorOf({"m", mistake});
    const std::string name = mistake.substr(0, mistake.find('='));
    EXPECT_NE(error.find(name), std::string::npos) << mistake << ": " << error;
  }
}

}  // namespace
}  // namespace qv::host

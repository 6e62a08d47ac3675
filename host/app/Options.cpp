#include "host/app/Options.h"

#include <array>
#include <cmath>
#include <map>
#include <numbers>
#include <utility>

#include "host/app/OptionValues.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180;

void SetUp(Options& options, const std::string& value) {
  if (value != "y" && value != "z") throw BadValue("y or z");
  options.load.up = value == "y" ? UpAxis::kY : UpAxis::kZ;
}

void SetUnit(Options& options, const std::string& value) {
  static const std::map<std::string, LengthUnit> units = {{"in", LengthUnit::kInch},
                                                          {"m", LengthUnit::kMetre},
                                                          {"cm", LengthUnit::kCentimetre},
                                                          {"mm", LengthUnit::kMillimetre},
                                                          {"ft", LengthUnit::kFoot}};
  const auto unit = units.find(value);
  if (unit == units.end()) throw BadValue("in, m, cm, mm or ft");
  options.load.unit = unit->second;
}

void SetEye(Options& options, const std::string& value) {
  options.view.eye = PointFrom(value);
}

void SetTarget(Options& options, const std::string& value) {
  options.view.target = PointFrom(value);
}

void SetFieldOfView(Options& options, const std::string& value) {
  const double degrees = NumberFrom(value, 1, 150);
  options.view.fieldOfView = static_cast<float>(degrees * kRadiansPerDegree);
}

void SetLatitude(Options& options, const std::string& value) {
  options.when.latitude = static_cast<float>(NumberFrom(value, -90, 90));
}

void SetLongitude(Options& options, const std::string& value) {
  options.when.longitude = static_cast<float>(NumberFrom(value, -180, 180));
}

void SetTime(Options& options, const std::string& value) {
  options.when.time.emplace();
  TakeTimeFrom(value, *options.when.time);
}

void SetTimeZone(Options& options, const std::string& value) {
  const double hours = NumberFrom(value, -12, 12);
  if (hours != std::floor(hours)) throw BadValue("a whole number of hours");
  options.when.timeZone = static_cast<int>(hours);
}

// North is given as a compass bearing in the model, clockwise; the link turns the other way.
void SetNorth(Options& options, const std::string& value) {
  options.when.sunRotation = static_cast<float>(-NumberFrom(value, -360, 360) * kRadiansPerDegree);
}

void SetViewer(Options& options, const std::string& value) {
  if (value.empty()) throw BadValue("a path");
  options.viewer = platform::PathFromUtf8(value);
}

void SetBackground(Options& options, const std::string& value) {
  if (value.empty()) throw BadValue("the name of a background");
  options.background = value;
}

struct ValueOption {
  const char* name;
  void (*set)(Options& options, const std::string& value);
};

constexpr std::array kValueOptions = std::to_array<ValueOption>({
    {"--up", SetUp},
    {"--unit", SetUnit},
    {"--eye", SetEye},
    {"--target", SetTarget},
    {"--fov", SetFieldOfView},
    {"--latitude", SetLatitude},
    {"--longitude", SetLongitude},
    {"--time", SetTime},
    {"--timezone", SetTimeZone},
    {"--north", SetNorth},
    {"--background", SetBackground},
    {"--viewer", SetViewer},
});

const ValueOption* Find(const std::string& name) {
  for (const ValueOption& option : kValueOptions) {
    if (name == option.name) return &option;
  }
  return nullptr;
}

// Why the option can't be taken; nothing if it was.
std::optional<std::string> Apply(const ValueOption& option, const std::string& value,
                                 Options& options) {
  try {
    option.set(options, value);
    return std::nullopt;
  } catch (const BadValue& bad) {
    return std::string(option.name) + " takes " + bad.what() + ", not \"" + value + "\"";
  }
}

bool IsOption(const std::string& argument) {
  return argument.size() > 1 && argument[0] == '-';
}

std::string TwoModels(const std::string& first, const std::string& second) {
  return "one model at a time: \"" + first + "\" and \"" + second + "\" were given";
}

// "--name=value" or "--name".
std::pair<std::string, std::optional<std::string>> Split(const std::string& argument) {
  const auto equals = argument.find('=');
  if (equals == std::string::npos) return {argument, std::nullopt};
  return {argument.substr(0, equals), argument.substr(equals + 1)};
}

}  // namespace

LocationAndTime DefaultPlaceAndTime() {
  LocationAndTime when;
  when.latitude = 48.1f;
  when.longitude = 11.6f;
  when.year = 2024;
  when.month = 6;
  when.day = 15;
  when.hour = 14;
  when.minute = 30;
  when.timeZone = 1;
  return when;
}

LocationAndTime PlaceAndTimeOf(const PlaceAndTime& commandLine, const PlaceAndTime& sceneFile) {
  LocationAndTime when = DefaultPlaceAndTime();
  const auto pick = [](const auto& first, const auto& second, auto otherwise) {
    return first ? *first : second.value_or(otherwise);
  };
  const LocationAndTime time = pick(commandLine.time, sceneFile.time, when);
  when.year = time.year;
  when.month = time.month;
  when.day = time.day;
  when.hour = time.hour;
  when.minute = time.minute;
  when.second = time.second;
  when.latitude = pick(commandLine.latitude, sceneFile.latitude, when.latitude);
  when.longitude = pick(commandLine.longitude, sceneFile.longitude, when.longitude);
  when.sunRotation = pick(commandLine.sunRotation, sceneFile.sunRotation, when.sunRotation);
  const auto zoneOfLongitude = static_cast<std::int32_t>(std::lround(when.longitude / 15));
  when.timeZone = pick(commandLine.timeZone, sceneFile.timeZone, zoneOfLongitude);
  return when;
}

std::string HelpText() {
  return R"(Usage: quorvane-host [OPTION...] MODEL|SCENE.json

Opens a model file (IFC, COLLADA, glTF, OBJ, 3DS, FBX, STL, ...) in the Quorvane viewer, or a scene
file (JSON) that puts several models together.

The model:
  --up y|z               the axis of the file that points up
  --unit in|m|cm|mm|ft   the length that one unit of the file stands for
                         Both are taken from the file or its format otherwise. Not for scene
                         files, which tell both for each of their models.
  --no-lights            leave out the lights of the file; the sun always shines
  --no-lem               leave out the area lights that glowing surfaces become

The first view, in the converted model's coordinates: inches, z up.
  --eye X,Y,Z            where the viewer stands
  --target X,Y,Z         where the viewer looks; with --eye alone the model's middle
  --fov DEGREES          vertical field of view, 1 to 150
                         Otherwise the file's first camera, or a view from outside.

The sun; for what is not given, a scene file has the first word:
  --latitude DEGREES     north is positive; 48.1 by default
  --longitude DEGREES    east is positive; 11.6 by default
  --time YYYY-MM-DDTHH:MM[:SS]
                         by the clock of the time zone; 2024-06-15T14:30 by default
  --timezone HOURS       east of Greenwich, -12 to 12; by the longitude by default
  --north DEGREES        where north is, clockwise from the model's y axis; 0 by default

Around the model:
  --background NAME      asphalt_morning, hills_evening, meadow_noon or another folder in
                         CubeMaps beside the viewer; ClearSky, Fine1, Fine2, Cloudy1 or
                         Cloudy2 for weather. Counts until another is chosen in the viewer;
                         as stored with the model by default.

  --viewer PATH          the viewer to start; quorvane beside this program by default
  --help                 show this help and exit
  --version              show the version and exit

What the viewer stores with a model (presets, light and image settings, background) is kept in
MODEL.quorvane.json, or below $XDG_DATA_HOME/quorvane where that can't be written. The program
ends when the viewer is closed.
)";
}

std::variant<Options, ShowHelp, ShowVersion, UsageError> ParseOptions(
    const std::vector<std::string>& arguments) {
  Options options;
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& argument = arguments[i];
    if (optionsEnded || !IsOption(argument)) {
      if (!options.model.empty())
        return UsageError{TwoModels(platform::Utf8FromPath(options.model), argument)};
      options.model = platform::PathFromUtf8(argument);
    } else if (argument == "--help" || argument == "-h") {
      return ShowHelp{};
    } else if (argument == "--version") {
      return ShowVersion{};
    } else if (argument == "--") {
      optionsEnded = true;
    } else if (argument == "--no-lights") {
      options.lights = false;
    } else if (argument == "--no-lem") {
      options.areaLights = false;
    } else {
      const auto [name, joinedValue] = Split(argument);
      const ValueOption* option = Find(name);
      if (option == nullptr) return UsageError{"unknown option " + argument};
      if (!joinedValue && i + 1 == arguments.size()) return UsageError{name + " needs a value"};
      const std::string& value = joinedValue ? *joinedValue : arguments[++i];
      if (const auto wrong = Apply(*option, value, options)) return UsageError{*wrong};
    }
  }
  if (options.model.empty()) return UsageError{"no model was given"};
  return options;
}

}  // namespace qv::host

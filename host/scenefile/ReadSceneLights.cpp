#include <cmath>
#include <numbers>

#include "host/model/AreaLights.h"
#include "host/model/Units.h"
#include "host/scenefile/ReadSceneFile.h"

namespace qv::host {
namespace {

constexpr double kRadiansPerDegree = std::numbers::pi / 180;
constexpr std::size_t kMostLights = 64;
// How bright a lamp without a level makes a white surface at its distance.
constexpr double kDefaultLevel = 0.6;
constexpr double kDefaultDistance = 2.5 / kMetresPerInch;

Vec3 ReadDirection(const JsonValue& value) {
  const Vec3 direction = value.Point(-1e6, 1e6);
  if (!(direction.norm() > 0)) value.Fail("takes a direction that is not zero");
  return direction.normalized();
}

// The colour times the level.
Vec3 ReadBrightness(const JsonFields& fields) {
  const auto color = fields.Find("color");
  const auto level = fields.Find("level");
  const double factor = level ? level->Number(0, 1000) : kDefaultLevel;
  return (color ? color->Color() : Vec3(1, 1, 1)) * static_cast<float>(factor);
}

double ReadDistance(const JsonFields& fields, double unit) {
  const auto distance = fields.Find("distance");
  return distance ? distance->Number(1e-6, kFarthestPoint / unit) * unit : kDefaultDistance;
}

SceneLight ReadPointLight(const JsonValue& value, double unit) {
  const JsonFields fields(value, {"kind", "name", "at", "color", "level", "distance"});
  SceneLight light;
  light.position = ReadPoint(fields.Get("at"), unit);
  light.color = ReadBrightness(fields) * static_cast<float>(ReadDistance(fields, unit));
  return light;
}

SceneLight ReadSpotLight(const JsonValue& value, double unit) {
  const JsonFields fields(
      value, {"kind", "name", "at", "direction", "inner", "outer", "color", "level", "distance"});
  SceneLight light;
  light.kind = SceneLight::Kind::kSpot;
  light.position = ReadPoint(fields.Get("at"), unit);
  light.direction = ReadDirection(fields.Get("direction"));
  light.color = ReadBrightness(fields) * static_cast<float>(ReadDistance(fields, unit));
  const double outer = fields.Get("outer").Number(0.5, 90);
  const auto inner = fields.Find("inner");
  light.outerAngle = static_cast<float>(outer * kRadiansPerDegree);
  light.innerAngle =
      static_cast<float>((inner ? inner->Number(0, outer) : 0.8 * outer) * kRadiansPerDegree);
  return light;
}

SceneLight ReadDirectionalLight(const JsonValue& value) {
  const JsonFields fields(value, {"kind", "name", "direction", "color", "level"});
  SceneLight light;
  light.kind = SceneLight::Kind::kDirectional;
  light.direction = ReadDirection(fields.Get("direction"));
  light.color = ReadBrightness(fields);
  return light;
}

// The first side lies level where it can.
SceneAreaLight ReadAreaLight(const JsonValue& value, double unit) {
  const JsonFields fields(
      value, {"kind", "name", "at", "direction", "size", "color", "level", "distance"});
  const Vec3 direction = ReadDirection(fields.Get("direction"));
  const std::vector<double> size = fields.Get("size").Numbers(2, 1e-4, kFarthestPoint / unit);
  const Vec3 up(0, 0, 1);
  const Vec3 level = up.cross(direction);
  const Vec3 across = level.norm() > 1e-4f ? level.normalized() : Vec3(1, 0, 0);
  const Vec3 along = direction.cross(across);
  SceneAreaLight light;
  light.corners = RectangleCorners(ReadPoint(fields.Get("at"), unit),
                                   across * static_cast<float>(size[0] * unit / 2),
                                   along * static_cast<float>(size[1] * unit / 2));
  const double distance = ReadDistance(fields, unit);
  const double area = size[0] * size[1] * unit * unit;
  light.emission = ReadBrightness(fields) * static_cast<float>(distance * distance / area);
  return light;
}

}  // namespace

void ReadLights(const JsonValue& value, double unit, SceneFile& file) {
  for (const JsonValue& element : value.List(kMostLights)) {
    const auto kind =
        JsonDictionary(element).Get("kind").OneOf({"point", "spot", "directional", "lem"});
    const auto nameField = JsonDictionary(element).Find("name");
    const std::string name = nameField ? nameField->Text() : "";
    if (kind == 3) {
      file.areaLights.push_back(ReadAreaLight(element, unit));
      file.areaLights.back().name = name;
      continue;
    }
    file.lights.push_back(kind == 0   ? ReadPointLight(element, unit)
                          : kind == 1 ? ReadSpotLight(element, unit)
                                      : ReadDirectionalLight(element));
    file.lights.back().name = name;
  }
}

}  // namespace qv::host

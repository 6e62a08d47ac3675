#include "host/scenefile/ReadSceneFile.h"

#include <array>
#include <cmath>
#include <numbers>

#include "host/model/Cameras.h"
#include "host/model/TimeText.h"
#include "host/model/Units.h"

namespace qv::host {
namespace {

constexpr const char* kFormatName = "quorvane scene";
constexpr int kFormatVersion = 1;
constexpr double kRadiansPerDegree = std::numbers::pi / 180;
constexpr std::size_t kMostThings = 10000;
constexpr std::size_t kMostMaterials = 1000;
constexpr std::size_t kMostViews = 100;

LengthUnit ReadUnit(const JsonValue& value) {
  constexpr std::array kUnits = {LengthUnit::kInch, LengthUnit::kFoot, LengthUnit::kMetre,
                                 LengthUnit::kCentimetre, LengthUnit::kMillimetre};
  return kUnits[value.OneOf({"in", "ft", "m", "cm", "mm"})];
}

double InchesPer(LengthUnit unit) {
  return MetresPer(unit) / kMetresPerInch;
}

// A number is a turn about z.
Vec3 ReadTurn(const JsonValue& value) {
  const Vec3 degrees = value.IsNumber() ? Vec3(0, 0, static_cast<float>(value.Number(-360, 360)))
                                        : value.Point(-360, 360);
  return degrees * static_cast<float>(kRadiansPerDegree);
}

// A name, or the place where none is given.
std::string ReadName(const JsonFields& fields, const std::string& place) {
  const auto name = fields.Find("name");
  return name ? name->Text() : place;
}

WantedSize ReadSize(const JsonFields& fields, double unit) {
  WantedSize wanted;
  const auto scale = fields.Find("scale");
  const auto size = fields.Find("size");
  if (scale && size) size->Fail("there is a scale already");
  if (scale && scale->IsNumber()) {
    wanted.scale = Vec3::Constant(static_cast<float>(scale->Number(1e-4, 1e4)));
  } else if (scale) {
    wanted.scale = scale->Point(1e-4, 1e4);
  }
  if (!size) return wanted;
  constexpr std::array kLengths = {"width", "depth", "height"};
  const JsonFields lengths(*size, {"width", "depth", "height"});
  bool any = false;
  for (std::size_t axis = 0; axis < 3; ++axis) {
    const auto length = lengths.Find(kLengths[axis]);
    if (!length) continue;
    any = true;
    wanted.lengths[axis] = static_cast<float>(length->Number(1e-4, kFarthestPoint / unit) * unit);
  }
  if (!any) size->Fail("takes a width, a depth or a height");
  return wanted;
}

Bounds ReadBox(const JsonValue& value, double unit) {
  const JsonFields fields(value, {"from", "to"});
  const Bounds box(ReadPoint(fields.Get("from"), unit), ReadPoint(fields.Get("to"), unit));
  if (box.isEmpty()) value.Fail("\"to\" lies before \"from\"");
  return box;
}

SceneFileModel ReadModel(const JsonValue& value, double unit) {
  const JsonFields fields(value, {"name", "file", "archive", "unit", "up", "at", "anchor", "turn",
                                  "scale", "size", "lights", "materials", "without"});
  SceneFileModel model;
  model.place = value.place();
  model.name = ReadName(fields, value.place());
  const JsonValue path = fields.Get("file");
  model.file = {"", path.Text(), path.place()};
  if (const auto archive = fields.Find("archive")) model.file.archive = archive->Text();
  if (const auto field = fields.Find("unit")) model.load.unit = ReadUnit(*field);
  if (const auto up = fields.Find("up")) {
    constexpr std::array kAxes = {UpAxis::kX, UpAxis::kY, UpAxis::kZ};
    model.load.up = kAxes[up->OneOf({"x", "y", "z"})];
  }
  model.size = ReadSize(fields, unit);
  if (const auto turn = fields.Find("turn")) model.turn = ReadTurn(*turn);
  if (const auto at = fields.Find("at")) model.at = ReadPoint(*at, unit);
  if (const auto anchor = fields.Find("anchor")) {
    model.byOrigin = anchor->OneOf({"foot", "origin"}) == 1;
  }
  if (const auto lights = fields.Find("lights")) model.lights = lights->Truth();
  if (const auto materials = fields.Find("materials")) {
    for (const JsonValue& change : materials->List(kMostMaterials)) {
      model.materials.push_back(ReadMaterialChange(change, true));
    }
  }
  if (const auto boxes = fields.Find("without")) {
    for (const JsonValue& box : boxes->List(kMostThings)) {
      model.without.push_back({ReadBox(box, unit), box.place()});
    }
  }
  return model;
}

SceneFileShape ReadShape(const JsonValue& value, double unit) {
  using Kind = SceneFileShape::Kind;
  const JsonFields fields(value,
                          {"name", "kind", "at", "size", "turn", "material", "textureLength"});
  constexpr std::array kKinds = {Kind::kBox, Kind::kPlane, Kind::kCylinder, Kind::kSphere};
  SceneFileShape shape;
  shape.name = ReadName(fields, value.place());
  shape.kind = kKinds[fields.Get("kind").OneOf({"box", "plane", "cylinder", "sphere"})];
  const bool flat = shape.kind == Kind::kPlane;
  const std::vector<double> size =
      fields.Get("size").Numbers(flat ? 2 : 3, 1e-4, kFarthestPoint / unit);
  shape.size = Vec3(static_cast<float>(size[0] * unit), static_cast<float>(size[1] * unit),
                    flat ? 0 : static_cast<float>(size[2] * unit));
  if (const auto turn = fields.Find("turn")) shape.turn = ReadTurn(*turn);
  if (const auto at = fields.Find("at")) shape.at = ReadPoint(*at, unit);
  shape.material = ReadMaterialChange(fields.Get("material"), false);
  const auto length = fields.Find("textureLength");
  shape.textureLength = static_cast<float>(
      length ? length->Number(1e-4, kFarthestPoint / unit) * unit : 1 / kMetresPerInch);
  return shape;
}

SceneCamera ReadView(const JsonValue& value, double unit) {
  const JsonFields fields(value, {"name", "eye", "target", "fov"});
  SceneCamera camera;
  camera.name = fields.Get("name").Text();
  RenderCamera& view = camera.view;
  view.position = ReadPoint(fields.Get("eye"), unit);
  view.target = ReadPoint(fields.Get("target"), unit);
  const Vec3 ahead = view.target - view.position;
  if (!(ahead.norm() > 0)) value.Fail("eye and target are the same point");
  view.forward = ahead.normalized();
  const Vec3 right = view.forward.cross(Vec3(0, 0, 1));
  if (!(right.norm() > 1e-4f)) value.Fail("the view can't be straight up or down");
  view.up = right.cross(view.forward).normalized();
  const auto fov = fields.Find("fov");
  view.fieldOfView =
      fov ? static_cast<float>(fov->Number(1, 150) * kRadiansPerDegree) : kDefaultFieldOfView;
  return camera;
}

PlaceAndTime ReadPlaceAndTime(const JsonValue& value) {
  const JsonFields fields(value, {"latitude", "longitude", "north", "timezone", "time"});
  PlaceAndTime place;
  if (const auto field = fields.Find("latitude")) {
    place.latitude = static_cast<float>(field->Number(-90, 90));
  }
  if (const auto field = fields.Find("longitude")) {
    place.longitude = static_cast<float>(field->Number(-180, 180));
  }
  // A compass bearing in the model, clockwise; the link turns the other way.
  if (const auto field = fields.Find("north")) {
    place.sunRotation = static_cast<float>(-field->Number(-360, 360) * kRadiansPerDegree);
  }
  if (const auto field = fields.Find("timezone")) place.timeZone = field->Whole(-12, 12);
  if (const auto field = fields.Find("time")) {
    place.time.emplace();
    if (const auto wrong = TakeTime(field->Text(), *place.time)) field->Fail("takes " + *wrong);
  }
  return place;
}

LightFactors ReadLightFactors(const JsonValue& value) {
  const JsonFields fields(value, {"sun", "ambient", "point", "lem", "skyColor"});
  const auto factor = [&](const char* name) {
    const auto field = fields.Find(name);
    return field ? static_cast<float>(field->Number(0, 100)) : 1.0f;
  };
  LightFactors factors{factor("sun"), factor("ambient"), factor("point"), factor("lem"), false};
  if (const auto field = fields.Find("skyColor")) factors.useSkyColorForAmbient = field->Truth();
  return factors;
}

SceneLook ReadLook(const JsonFields& fields, double unit) {
  SceneLook look;
  if (const auto field = fields.Find("background")) look.background = field->Text();
  if (const auto field = fields.Find("eyeHeight")) {
    look.eyeHeight = static_cast<float>(field->Number(0, 1000 / unit) * unit);
  }
  if (const auto field = fields.Find("lightFactors")) look.lightFactors = ReadLightFactors(*field);
  if (const auto field = fields.Find("image")) {
    const JsonFields image(*field, {"brightness", "contrast", "gamma"});
    if (const auto value = image.Find("brightness")) {
      look.brightness = static_cast<float>(value->Number(-1, 1));
    }
    if (const auto value = image.Find("contrast")) {
      look.contrast = static_cast<float>(value->Number(-1, 1));
    }
    if (const auto value = image.Find("gamma")) {
      look.gamma = static_cast<float>(value->Number(0.1, 10));
    }
  }
  return look;
}

void CheckFormat(const JsonFields& fields) {
  const JsonValue format = fields.Get("format");
  if (format.Text() != kFormatName) {
    format.Fail("takes \"" + std::string(kFormatName) + "\"; this is no scene file");
  }
  const JsonValue version = fields.Get("version");
  if (version.Whole(1, 1000000) > kFormatVersion) {
    version.Fail("a newer Quorvane wrote this; version " + std::to_string(kFormatVersion) +
                 " is the latest that is known here");
  }
}

}  // namespace

Vec3 ReadPoint(const JsonValue& value, double unit) {
  return value.Point(-kFarthestPoint / unit, kFarthestPoint / unit) * static_cast<float>(unit);
}

SceneFile ReadSceneFile(const std::string& text) {
  const nlohmann::json document = ParseJson(text);
  const JsonFields fields(JsonValue(document, ""),
                          {"format", "version", "unit", "archives", "models", "shapes", "lights",
                           "views", "place", "background", "eyeHeight", "lightFactors", "image"});
  CheckFormat(fields);
  const auto unitField = fields.Find("unit");
  const double unit = InchesPer(unitField ? ReadUnit(*unitField) : LengthUnit::kMetre);
  SceneFile file;
  if (const auto archives = fields.Find("archives")) {
    for (const auto& [name, value] : JsonDictionary(*archives).All()) {
      file.archives[name] = {"", value.Text(), value.place()};
    }
  }
  if (const auto models = fields.Find("models")) {
    for (const JsonValue& model : models->List(kMostThings)) {
      file.models.push_back(ReadModel(model, unit));
    }
  }
  if (const auto shapes = fields.Find("shapes")) {
    for (const JsonValue& shape : shapes->List(kMostThings)) {
      file.shapes.push_back(ReadShape(shape, unit));
    }
  }
  if (const auto lights = fields.Find("lights")) ReadLights(*lights, unit, file);
  if (const auto views = fields.Find("views")) {
    for (const JsonValue& view : views->List(kMostViews)) {
      file.views.push_back(ReadView(view, unit));
    }
  }
  if (const auto place = fields.Find("place")) file.when = ReadPlaceAndTime(*place);
  file.look = ReadLook(fields, unit);
  return file;
}

}  // namespace qv::host

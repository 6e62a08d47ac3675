#include "host/scenefile/ReadSceneFile.h"

namespace qv::host {
namespace {

constexpr auto kNamedFields = {"name",    "color",      "opacity",   "mirror",
                               "blurred", "refraction", "shininess", "highlight",
                               "texture", "bump",       "glow"};
constexpr auto kFields = {"color",     "opacity",   "mirror",  "blurred", "refraction",
                          "shininess", "highlight", "texture", "bump",    "glow"};

std::optional<float> FindNumber(const JsonFields& fields, const char* name, double least,
                                double greatest) {
  const auto value = fields.Find(name);
  if (!value) return std::nullopt;
  return static_cast<float>(value->Number(least, greatest));
}

std::optional<Vec3> FindColor(const JsonFields& fields, const char* name) {
  const auto value = fields.Find(name);
  if (!value) return std::nullopt;
  return value->Color();
}

}  // namespace

FileReference ReadFileReference(const JsonValue& value) {
  if (value.IsText()) return {"", value.Text(), value.place()};
  const JsonFields fields(value, {"archive", "file"});
  return {fields.Get("archive").Text(), fields.Get("file").Text(), value.place()};
}

MaterialChange ReadMaterialChange(const JsonValue& value, bool named) {
  const JsonFields fields(value, named ? kNamedFields : kFields);
  MaterialChange change;
  change.place = value.place();
  change.name = named ? fields.Get("name").Text() : "*";
  change.color = FindColor(fields, "color");
  change.opacity = FindNumber(fields, "opacity", 0, 1);
  change.mirror = FindNumber(fields, "mirror", 0, 1);
  if (const auto blurred = fields.Find("blurred")) change.blurred = blurred->Truth();
  change.refraction = FindNumber(fields, "refraction", 1, 4);
  change.shininess = FindNumber(fields, "shininess", 0, 1000);
  change.highlight = FindColor(fields, "highlight");
  change.bump = FindNumber(fields, "bump", 0, 10);
  change.glow = FindColor(fields, "glow");
  if (const auto texture = fields.Find("texture")) {
    change.plain = texture->IsNull();
    if (!change.plain) change.texture = ReadFileReference(*texture);
  }
  return change;
}

}  // namespace qv::host

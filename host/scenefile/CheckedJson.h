#pragma once

#include <cstddef>
#include <initializer_list>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/Vec.h"
#include "host/scenefile/SceneFileError.h"

namespace qv::host {

// One value of a JSON document, which knows its place there ("models[2].scale"). What asks for a
// type or a range throws a SceneFileError with the place when the value does not fit. Refers to the
// document.
class JsonValue {
 public:
  JsonValue(const nlohmann::json& value, std::string place)
      : value_(value), place_(std::move(place)) {}

  // "PLACE: what", or only what at the top.
  [[noreturn]] void Fail(const std::string& what) const;

  bool IsNumber() const { return value_.is_number(); }
  bool IsText() const { return value_.is_string(); }
  bool IsNull() const { return value_.is_null(); }

  bool Truth() const;
  double Number(double least, double greatest) const;
  int Whole(int least, int greatest) const;
  std::string Text() const;  // not empty
  // The number of the name among those.
  std::size_t OneOf(std::initializer_list<const char*> names) const;
  // `count` numbers, each within the limits.
  std::vector<double> Numbers(std::size_t count, double least, double greatest) const;
  Vec3 Point(double least, double greatest) const;
  // "#rrggbb", or three numbers from 0 to 1.
  Vec3 Color() const;
  std::vector<JsonValue> List(std::size_t most) const;

  const std::string& place() const { return place_; }

 private:
  friend class JsonFields;

  // "takes WHAT, not VALUE"
  [[noreturn]] void Refuse(const std::string& what) const;

  const nlohmann::json& value_;
  std::string place_;
};

// The fields of an object, of which all names must be known.
class JsonFields {
 public:
  JsonFields(const JsonValue& object, std::initializer_list<const char*> known);

  std::optional<JsonValue> Find(const char* name) const;
  JsonValue Get(const char* name) const;  // it must be there
  std::vector<std::pair<std::string, JsonValue>> All() const;

 protected:
  // Any names.
  explicit JsonFields(const JsonValue& object);

 private:
  std::string PlaceOf(const std::string& name) const;

  JsonValue object_;
};

// An object whose names are of the file's own choice.
class JsonDictionary : public JsonFields {
 public:
  explicit JsonDictionary(const JsonValue& object) : JsonFields(object) {}
};

// The document in a text; throws a SceneFileError that tells line and column.
nlohmann::json ParseJson(const std::string& text);

}  // namespace qv::host

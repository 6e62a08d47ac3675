#include "host/scenefile/CheckedJson.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <set>
#include <sstream>
#include <string_view>

namespace qv::host {
namespace {

using nlohmann::json;

// Of a value that a message quotes.
constexpr std::size_t kMostQuoted = 60;
// Objects and lists in each other.
constexpr int kMostDepth = 32;

std::string Written(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

std::string Quoted(const json& value) {
  std::string text = value.dump(-1, ' ', true, json::error_handler_t::replace);
  if (text.size() > kMostQuoted) text = text.substr(0, kMostQuoted) + "...";
  return text;
}

std::string Joined(std::initializer_list<const char*> names) {
  std::string text;
  for (const char* name : names) text += (text.empty() ? "" : ", ") + std::string(name);
  return text;
}

std::string Range(double least, double greatest) {
  return "from " + Written(least) + " to " + Written(greatest);
}

}  // namespace

void JsonValue::Fail(const std::string& what) const {
  throw SceneFileError(place_.empty() ? what : place_ + ": " + what);
}

void JsonValue::Refuse(const std::string& what) const {
  Fail("takes " + what + ", not " + Quoted(value_));
}

bool JsonValue::Truth() const {
  if (!value_.is_boolean()) Refuse("true or false");
  return value_.get<bool>();
}

double JsonValue::Number(double least, double greatest) const {
  const double number = value_.is_number() ? value_.get<double>() : std::nan("");
  if (!(number >= least && number <= greatest)) Refuse("a number " + Range(least, greatest));
  return number;
}

int JsonValue::Whole(int least, int greatest) const {
  const double number = value_.is_number() ? value_.get<double>() : std::nan("");
  if (!(number >= least && number <= greatest) || number != std::floor(number)) {
    Refuse("a whole number " + Range(least, greatest));
  }
  return static_cast<int>(number);
}

std::string JsonValue::Text() const {
  if (!value_.is_string() || value_.get_ref<const std::string&>().empty()) Refuse("a text");
  return value_.get<std::string>();
}

std::size_t JsonValue::OneOf(std::initializer_list<const char*> names) const {
  const auto* found = std::find_if(names.begin(), names.end(), [&](const char* name) {
    return value_.is_string() && value_.get_ref<const std::string&>() == name;
  });
  if (found == names.end()) Refuse("one of " + Joined(names));
  return static_cast<std::size_t>(found - names.begin());
}

std::vector<double> JsonValue::Numbers(std::size_t count, double least, double greatest) const {
  const std::string what =
      "a list of " + std::to_string(count) + " numbers " + Range(least, greatest);
  if (!value_.is_array() || value_.size() != count) Refuse(what);
  std::vector<double> numbers;
  for (const json& element : value_) {
    const double number = element.is_number() ? element.get<double>() : std::nan("");
    if (!(number >= least && number <= greatest)) Refuse(what);
    numbers.push_back(number);
  }
  return numbers;
}

Vec3 JsonValue::Point(double least, double greatest) const {
  const std::vector<double> numbers = Numbers(3, least, greatest);
  return Eigen::Vector3d(numbers[0], numbers[1], numbers[2]).cast<float>();
}

Vec3 JsonValue::Color() const {
  if (!value_.is_string()) return Point(0, 1);
  const std::string& text = value_.get_ref<const std::string&>();
  const bool digits = text.size() == 7 && text[0] == '#' &&
                      text.find_first_not_of("0123456789abcdefABCDEF", 1) == std::string::npos;
  if (!digits) Refuse("a colour as \"#rrggbb\" or a list of 3 numbers from 0 to 1");
  const unsigned long bytes = std::stoul(text.substr(1), nullptr, 16);
  return Vec3(static_cast<float>(bytes >> 16 & 255), static_cast<float>(bytes >> 8 & 255),
              static_cast<float>(bytes & 255)) /
         255;
}

std::vector<JsonValue> JsonValue::List(std::size_t most) const {
  if (!value_.is_array() || value_.size() > most) {
    Refuse("a list of at most " + std::to_string(most) + " elements");
  }
  std::vector<JsonValue> list;
  for (std::size_t i = 0; i < value_.size(); ++i) {
    list.emplace_back(value_[i], place_ + '[' + std::to_string(i) + ']');
  }
  return list;
}

JsonFields::JsonFields(const JsonValue& object) : object_(object) {
  if (!object.value_.is_object()) object.Refuse("an object");
}

JsonFields::JsonFields(const JsonValue& object, std::initializer_list<const char*> known)
    : JsonFields(object) {
  for (const auto& [name, value] : object.value_.items()) {
    const std::string_view view = name;
    if (std::find(known.begin(), known.end(), view) == known.end()) {
      object.Fail("unknown field \"" + name + "\"; there are " + Joined(known));
    }
  }
}

std::string JsonFields::PlaceOf(const std::string& name) const {
  return object_.place().empty() ? name : object_.place() + '.' + name;
}

std::optional<JsonValue> JsonFields::Find(const char* name) const {
  const auto found = object_.value_.find(name);
  if (found == object_.value_.end()) return std::nullopt;
  return JsonValue(*found, PlaceOf(name));
}

JsonValue JsonFields::Get(const char* name) const {
  const auto value = Find(name);
  if (!value) object_.Fail("the field \"" + std::string(name) + "\" is missing");
  return *value;
}

std::vector<std::pair<std::string, JsonValue>> JsonFields::All() const {
  std::vector<std::pair<std::string, JsonValue>> all;
  for (const auto& [name, value] : object_.value_.items()) {
    all.emplace_back(name, JsonValue(value, PlaceOf(name)));
  }
  return all;
}

json ParseJson(const std::string& text) {
  // A name that is there twice is a slip of whoever wrote the file, which the parser keeps quiet
  // about.
  std::vector<std::set<std::string>> names;
  const auto check = [&names](int depth, json::parse_event_t event, json& value) {
    if (depth > kMostDepth) throw SceneFileError("objects and lists lie too deep in each other");
    if (event == json::parse_event_t::object_start) names.emplace_back();
    if (event == json::parse_event_t::object_end) names.pop_back();
    if (event == json::parse_event_t::key &&
        !names.back().insert(value.get<std::string>()).second) {
      throw SceneFileError("the field " + Quoted(value) + " is there twice in one object");
    }
    return true;
  };
  try {
    return json::parse(text, check);
  } catch (const json::exception& error) {
    // Without the library's mark at the front.
    const std::string what = error.what();
    const auto mark = what.find("] ");
    throw SceneFileError(mark == std::string::npos ? what : what.substr(mark + 2));
  }
}

}  // namespace qv::host

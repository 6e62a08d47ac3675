#include "host/app/OptionValues.h"

#include <charconv>
#include <cmath>
#include <optional>
#include <sstream>
#include <string_view>

#include "host/model/TimeText.h"
#include "host/model/Units.h"

namespace qv::host {
namespace {

std::optional<double> ParsedNumber(std::string_view text) {
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(number)) {
    return std::nullopt;
  }
  return number;
}

std::string Written(double number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

}  // namespace

double NumberFrom(const std::string& text, double least, double greatest) {
  const auto number = ParsedNumber(text);
  if (!number || *number < least || *number > greatest) {
    throw BadValue("a number from " + Written(least) + " to " + Written(greatest));
  }
  return *number;
}

Vec3 PointFrom(const std::string& text) {
  const BadValue bad("three numbers with commas between, X,Y,Z");
  Vec3 point;
  std::string_view rest = text;
  for (int axis = 0; axis < 3; ++axis) {
    const auto comma = rest.find(',');
    if ((axis < 2) != (comma != std::string_view::npos)) throw bad;
    const auto number = ParsedNumber(rest.substr(0, comma));
    if (!number || std::abs(*number) > kFarthestPoint) throw bad;
    point[axis] = static_cast<float>(*number);
    if (axis < 2) rest.remove_prefix(comma + 1);
  }
  return point;
}

void TakeTimeFrom(const std::string& text, LocationAndTime& when) {
  if (const auto wanted = TakeTime(text, when)) throw BadValue(*wanted);
}

}  // namespace qv::host

#include "host/app/OptionValues.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string_view>

namespace qv::host {
namespace {

// Points further out than this can't be told apart in floats of an inch.
constexpr double kMaximumCoordinate = 1e7;

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

bool HasForm(std::string_view text, std::string_view form) {
  if (text.size() != form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (form[i] == '0' ? !digit : text[i] != form[i]) return false;
  }
  return true;
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
    if (!number || std::abs(*number) > kMaximumCoordinate) throw bad;
    point[axis] = static_cast<float>(*number);
    if (axis < 2) rest.remove_prefix(comma + 1);
  }
  return point;
}

void TakeTimeFrom(const std::string& text, LocationAndTime& when) {
  const bool withSeconds = HasForm(text, "0000-00-00T00:00:00");
  if (!withSeconds && !HasForm(text, "0000-00-00T00:00")) {
    throw BadValue("a time as YYYY-MM-DDTHH:MM or YYYY-MM-DDTHH:MM:SS");
  }
  const auto number = [&](std::size_t first, std::size_t count) {
    return std::stoi(text.substr(first, count));
  };
  const int year = number(0, 4);
  const int month = number(5, 2);
  const int day = number(8, 2);
  const int hour = number(11, 2);
  const int minute = number(14, 2);
  const int second = withSeconds ? number(17, 2) : 0;
  const std::chrono::year_month_day date{std::chrono::year(year),
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day))};
  if (year < 1583 || !date.ok() || hour > 23 || minute > 59 || second > 59) {
    throw BadValue("a date and a time of day that exist, from 1583 on");
  }
  when.year = year;
  when.month = month;
  when.day = day;
  when.hour = hour;
  when.minute = minute;
  when.second = second;
}

}  // namespace qv::host

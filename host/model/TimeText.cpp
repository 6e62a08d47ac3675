#include "host/model/TimeText.h"

#include <chrono>
#include <string_view>

namespace qv::host {
namespace {

bool HasForm(std::string_view text, std::string_view form) {
  if (text.size() != form.size()) return false;
  for (std::size_t i = 0; i < form.size(); ++i) {
    const bool digit = text[i] >= '0' && text[i] <= '9';
    if (form[i] == '0' ? !digit : text[i] != form[i]) return false;
  }
  return true;
}

}  // namespace

std::optional<std::string> TakeTime(const std::string& text, LocationAndTime& when) {
  const bool withSeconds = HasForm(text, "0000-00-00T00:00:00");
  if (!withSeconds && !HasForm(text, "0000-00-00T00:00")) {
    return "a time as YYYY-MM-DDTHH:MM or YYYY-MM-DDTHH:MM:SS";
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
    return "a date and a time of day that exist, from 1583 on";
  }
  when.year = year;
  when.month = month;
  when.day = day;
  when.hour = hour;
  when.minute = minute;
  when.second = second;
  return std::nullopt;
}

}  // namespace qv::host

#include "e2e/support/Looks.h"

#include <algorithm>
#include <cstdlib>

namespace qv::e2e {
namespace {

bool IsStrong(const Colour& c) {
  const auto [low, high] = std::minmax({c.red, c.green, c.blue});
  return high - low > 60;
}

// The first and last of `count` lines of which more than half is strong; `at(line, i)` gives a
// pixel of `length`.
template <class At>
std::pair<int, int> StrongRange(int count, int length, At&& at) {
  int first = count, last = -1;
  for (int line = 0; line < count; ++line) {
    int strong = 0;
    for (int i = 0; i < length; ++i) strong += IsStrong(at(line, i));
    if (strong * 2 <= length) continue;
    first = std::min(first, line);
    last = line;
  }
  return {first, last};
}

int Difference(const Colour& a, const Colour& b) {
  return std::abs(a.red - b.red) + std::abs(a.green - b.green) + std::abs(a.blue - b.blue);
}

}  // namespace

Area FindPicture(const Screenshot& shot) {
  const auto rows = StrongRange(shot.height, shot.width,
                                [&](int line, int i) -> const Colour& { return shot.At(i, line); });
  const auto columns = StrongRange(
      shot.width, shot.height, [&](int line, int i) -> const Colour& { return shot.At(line, i); });
  return {columns.first, rows.first, columns.second - columns.first + 1,
          rows.second - rows.first + 1};
}

std::vector<Point> FindTools(const Screenshot& shot, const Area& picture) {
  constexpr int kStandsOut = 60;
  constexpr int kGap = 6;
  // Rows through the pictures of the tools, clear of a menu bar above them.
  constexpr int kMiddleAbovePicture = 20;
  constexpr int kReach = 8;
  const int middle = std::max(picture.top - kMiddleAbovePicture, kReach);
  const Colour ground = shot.At(shot.width - 4, middle);
  std::vector<Point> tools;
  int first = -1, last = -1;
  const auto finish = [&] {
    if (first >= 0) tools.push_back({(first + last) / 2, middle});
    first = -1;
  };
  for (int x = 4; x < shot.width - 4; ++x) {
    bool stands = false;
    for (int y = middle - kReach; y <= middle + kReach; ++y) {
      stands = stands || Difference(shot.At(x, y), ground) > kStandsOut;
    }
    if (stands) {
      if (first < 0) first = x;
      last = x;
    } else if (first >= 0 && x - last > kGap) {
      finish();
    }
  }
  finish();
  return tools;
}

std::string NameOf(const Colour& c) {
  const auto over = [](int a, int b) { return a > 40 && a * 2 > b * 3; };
  if (over(c.red, c.green) && over(c.red, c.blue)) return "red";
  if (over(c.green, c.red) && over(c.green, c.blue)) return "green";
  if (over(c.blue, c.red) && over(c.blue, c.green)) return "blue";
  if (over(c.red, c.blue) && over(c.green, c.blue)) return "yellow";
  return std::to_string(c.red) + ' ' + std::to_string(c.green) + ' ' + std::to_string(c.blue);
}

std::vector<std::string> QuarterColours(const Screenshot& shot, const Area& picture) {
  std::vector<std::string> names;
  for (const int row : {1, 3}) {
    for (const int column : {1, 3}) {
      names.push_back(NameOf(shot.At(picture.left + picture.width * column / 4,
                                     picture.top + picture.height * row / 4)));
    }
  }
  return names;
}

}  // namespace qv::e2e

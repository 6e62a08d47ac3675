#pragma once

#include <optional>
#include <string>
#include <vector>

#include "e2e/support/ViewerWindow.h"

namespace qv::e2e {

// Where the picture of the four quarters lies in the window: the rows and columns that are mostly
// of strong colours.
Area FindPicture(const Screenshot& shot);

struct Point {
  int x = 0, y = 0;
};
// The middle of the tool with the picture "images/NAME.png" of the viewer, in the rows above
// `bottom`; enabled, disabled or pressed.
std::optional<Point> FindTool(const Screenshot& shot, int bottom, const std::string& name);

// How many white pixels there are in a part of a picture.
int CountWhite(const Screenshot& shot, const Area& part);

// "red", "green", "blue", "yellow", or the three numbers of a colour that is none of these.
std::string NameOf(const Colour& colour);

// The names of the colours in the middles of the four quarters: top left, top right, bottom left,
// bottom right.
std::vector<std::string> QuarterColours(const Screenshot& shot, const Area& picture);

}  // namespace qv::e2e

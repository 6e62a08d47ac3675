#pragma once

#include <string>
#include <vector>

#include "e2e/support/ViewerWindow.h"

namespace qv::e2e {

// Where the picture of the four quarters lies in the window: the rows and columns that are mostly
// of strong colours.
Area FindPicture(const Screenshot& shot);

// The tools, from left to right.
enum class Tool { kFlyMode, kWalkMode, kCameraLink, kSynchronizeCamera, kReloadData, kCount };

// The middles, from left to right, of what stands out from the ground of the tool bar above
// `picture`.
struct Point {
  int x = 0, y = 0;
};
std::vector<Point> FindTools(const Screenshot& shot, const Area& picture);

// "red", "green", "blue", "yellow", or the three numbers of a colour that is none of these.
std::string NameOf(const Colour& colour);

// The names of the colours in the middles of the four quarters: top left, top right, bottom left,
// bottom right.
std::vector<std::string> QuarterColours(const Screenshot& shot, const Area& picture);

}  // namespace qv::e2e

#pragma once

namespace qv {

struct PixelRectangle {
  int x = 0, y = 0, width = 0, height = 0;
  bool operator==(const PixelRectangle&) const = default;
};

// Where a picture lies inside a panel when it keeps its proportions and touches two opposite sides:
// centred, offsets and sizes truncated to whole pixels. Empty if one of the sizes is not positive.
PixelRectangle FitRectangle(int pictureWidth, int pictureHeight, int panelWidth, int panelHeight);

}  // namespace qv

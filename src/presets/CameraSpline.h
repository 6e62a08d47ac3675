#pragma once

#include <cstddef>
#include <vector>

#include "core/Vec.h"

namespace qv {

// A cubic Hermite curve through points, with the tangents of Catmull and Rom: half the way between
// the neighbours of a point, at an open end half the way to its one neighbour. A curve whose first
// point equals its last is closed.
class CameraSpline {
 public:
  explicit CameraSpline(std::vector<Vec3> points);

  // The point at `s`, 0 to 1, between point `segment` and the next. Segments count from 0; the one
  // that begins at the last point is that point alone.
  Vec3 Evaluate(std::size_t segment, float s) const;

 private:
  std::vector<Vec3> points_;
  std::vector<Vec3> tangents_;
};

}  // namespace qv

#pragma once

#include <Eigen/Geometry>

#include "core/Vec.h"

namespace qv {

// The vector with unit length; a vector of no length stays as it is.
Vec3 UnitOrZero(const Vec3& v);

// A turn of the view: by `pitch` about its right side, then by `yaw` about +z, radians, which
// brings in no roll. `forward` and `up` have unit length; where they are parallel there is no
// right side, and no pitch.
Eigen::Quaterniond Turn(const Vec3& forward, const Vec3& up, double yaw, double pitch);

// The horizontal direction, unit length or zero, that is "into the picture" for the person at the
// mouse: it stays the same on the screen while the view tilts past the vertical.
Vec3 DriveHeading(const Vec3& forward, const Vec3& up);

// The up vector of a view without roll: perpendicular to `forward`, in the vertical plane through
// it, z positive. `up` itself where `forward` is vertical.
Vec3 LevelUp(const Vec3& forward, const Vec3& up);

}  // namespace qv

#pragma once

#include <Eigen/Geometry>

#include "core/Vec.h"

namespace qv {

// The shortest rotation that takes the direction `from` to the direction `to`, neither of them
// zero; about one of the axes across where they are opposite. Not inline, since the solver behind
// it takes as long to compile as everything else of a source.
Eigen::Quaternionf RotationBetween(const Vec3& from, const Vec3& to);

}  // namespace qv

#pragma once

#include <Eigen/Core>

namespace qv {

using Vec2 = Eigen::Vector2f;
using Vec3 = Eigen::Vector3f;

}  // namespace qv

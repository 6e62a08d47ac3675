#include "core/Rotation.h"

namespace qv {

Eigen::Quaternionf RotationBetween(const Vec3& from, const Vec3& to) {
  return Eigen::Quaternionf::FromTwoVectors(from, to);
}

}  // namespace qv

#include "navigation/CameraMath.h"

#include <cmath>

namespace qv {

Vec3 UnitOrZero(const Vec3& v) {
  return v.stableNormalized();
}

Eigen::Quaterniond Turn(const Vec3& forward, const Vec3& up, double yaw, double pitch) {
  const Eigen::AngleAxisd aboutZ(yaw, Eigen::Vector3d::UnitZ());
  const Eigen::Vector3d right = forward.cross(up).cast<double>().stableNormalized();
  if (right.isZero()) return Eigen::Quaterniond(aboutZ);
  return aboutZ * Eigen::AngleAxisd(pitch, right);
}

Vec3 DriveHeading(const Vec3& forward, const Vec3& up) {
  const Vec3 a(forward.x(), forward.y(), 0);
  const Vec3 b(up.x(), up.y(), 0);
  const bool flat = a.norm() > b.norm();
  const bool looksUp = forward.z() > 0;
  const bool upright = up.z() > 0;
  // The horizontal part of "up" points backwards in a steep look upwards, and so does that of
  // "forward" in a view on its head.
  const bool backwards = looksUp ? !upright || !flat : !upright && flat;
  const Vec3 heading = UnitOrZero(flat ? a : b);
  return backwards ? Vec3(-heading) : heading;
}

Vec3 LevelUp(const Vec3& forward, const Vec3& up) {
  constexpr float kVertical = 1e-6f;
  const Vec3 f = UnitOrZero(forward);
  if (std::hypot(f.x(), f.y()) < kVertical) return up;
  return UnitOrZero(Vec3::UnitZ() - f.z() * f);
}

}  // namespace qv

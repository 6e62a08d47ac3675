#include "core/Orientation.h"

#include <algorithm>
#include <cmath>

namespace qv {
namespace {

// Nearer than this two orientations are mixed in a straight line.
constexpr float kNearlyEqual = 0.9999999f;
// Rounding leaves the squared length of a stored unit quaternion well within this.
constexpr float kUnitTolerance = 1e-3f;

// As it is where it has no length.
Vec3 Normalised(const Vec3& v) {
  const float squared = v.squaredNorm();
  return squared > 0 ? Vec3(v / std::sqrt(squared)) : v;
}

float AngleBetween(const Vec3& a, const Vec3& b) {
  return std::acos(std::clamp(a.dot(b), -1.0f, 1.0f));
}

Eigen::Quaternionf UnitOrientation(const Eigen::Quaternionf& q) {
  const float squared = q.squaredNorm();
  if (std::abs(squared - 1) <= kUnitTolerance) return q;
  if (squared > 0) return q.normalized();
  return Eigen::Quaternionf::Identity();
}

}  // namespace

Vec3 DirectionFromQuaternion(const Eigen::Quaternionf& q) {
  return q * Vec3(-1, 0, 0);
}

Vec3 UpFromQuaternion(const Eigen::Quaternionf& q) {
  return q * Vec3(0, 0, 1);
}

YawPitch YawPitchFromDirection(const Vec3& direction) {
  const Vec3 unit = Normalised(direction);
  const Vec3 horizontal = Normalised({unit.x(), unit.y(), 0});
  YawPitch angles;
  angles.yaw = AngleBetween(horizontal, {-1, 0, 0});
  if (unit.y() > 0) angles.yaw = -angles.yaw;
  angles.pitch = AngleBetween(horizontal, unit);
  if (unit.z() < 0) angles.pitch = -angles.pitch;
  return angles;
}

Eigen::Quaternionf QuaternionFromYawPitch(float yaw, float pitch) {
  const float c1 = std::cos(yaw / 2), s1 = std::sin(yaw / 2);
  const float c2 = std::cos(pitch / 2), s2 = std::sin(pitch / 2);
  return {c1 * c2, -s1 * s2, c1 * s2, s1 * c2};
}

Eigen::Quaternionf Slerp(const Eigen::Quaternionf& q0, double t, const Eigen::Quaternionf& q1) {
  const float along = static_cast<float>(t);
  const float cosine = q0.dot(q1);
  float weight0 = 1 - along, weight1 = along;
  if (std::abs(cosine) < kNearlyEqual) {
    const float angle = std::acos(std::abs(cosine));
    weight0 = std::sin((1 - along) * angle) / std::sin(angle);
    weight1 = std::sin(along * angle) / std::sin(angle);
  }
  if (cosine < 0) weight1 = -weight1;
  return Eigen::Quaternionf(weight0 * q0.coeffs() + weight1 * q1.coeffs());
}

float QuaternionAngle(const Eigen::Quaternionf& q0, const Eigen::Quaternionf& q1) {
  const Eigen::Quaternionf between = q0 * q1.conjugate();
  return 2 * std::atan2(between.vec().norm(), std::abs(between.w()));
}

RenderCamera CameraFromPose(const CameraPose& pose) {
  const Eigen::Quaternionf orientation = UnitOrientation(pose.orientation);
  RenderCamera camera;
  camera.position = pose.position;
  camera.forward = DirectionFromQuaternion(orientation);
  camera.up = UpFromQuaternion(orientation);
  camera.fieldOfView = pose.fieldOfView;
  return camera;
}

CameraPose LevelPose(const RenderCamera& camera) {
  const auto [yaw, pitch] = YawPitchFromDirection(camera.forward);
  return {camera.position, QuaternionFromYawPitch(yaw, pitch), camera.fieldOfView};
}

}  // namespace qv

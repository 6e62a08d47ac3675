#pragma once

#include <Eigen/Geometry>

#include "core/RenderCamera.h"
#include "core/Vec.h"

namespace qv {

// How a camera stands, with the orientation as a unit quaternion: the camera looks along the
// rotated axis (-1, 0, 0), and its up vector is the rotated axis (0, 0, 1).
struct CameraPose {
  Vec3 position{0, 0, 0};
  Eigen::Quaternionf orientation = Eigen::Quaternionf::Identity();
  float fieldOfView = 0;  // vertical, radians
};

// Heading and slope of a direction, in radians. Yaw turns about z, 0 along (-1, 0, 0); pitch is
// above 0 for directions that look up.
struct YawPitch {
  float yaw = 0;
  float pitch = 0;
};

Vec3 DirectionFromQuaternion(const Eigen::Quaternionf& q);
Vec3 UpFromQuaternion(const Eigen::Quaternionf& q);

// `direction` need not be of unit length. The horizontal part of a vertical direction is the zero
// vector, which is at a right angle to everything: yaw is then pi / 2, pitch pi / 2 with the sign
// of the direction's z.
YawPitch YawPitchFromDirection(const Vec3& direction);

// The orientation without roll: a turn about y by pitch, then one about z by yaw.
Eigen::Quaternionf QuaternionFromYawPitch(float yaw, float pitch);

// Between two orientations on the shorter arc (K. Shoemake, Animating rotation with quaternion
// curves, 1985). `t` runs from 0 to 1. Not renormalised.
Eigen::Quaternionf Slerp(const Eigen::Quaternionf& q0, double t, const Eigen::Quaternionf& q1);

// The angle of the rotation that leads from one orientation to the other, 0 to pi.
float QuaternionAngle(const Eigen::Quaternionf& q0, const Eigen::Quaternionf& q1);

// A camera of that pose; its target is the origin. An orientation that is far from unit length is
// brought to it, one of no length counts as none.
RenderCamera CameraFromPose(const CameraPose& pose);

// The pose of a camera, without its roll.
CameraPose LevelPose(const RenderCamera& camera);

}  // namespace qv

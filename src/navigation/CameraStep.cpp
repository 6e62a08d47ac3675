#include "navigation/CameraStep.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "navigation/CameraMath.h"

namespace qv {
namespace {

constexpr double kMostBoost = 10;
constexpr double kBoostGain = 10;   // a second, with Shift held
constexpr double kBoostDecay = 20;  // a second, without
// Steps below these are none.
constexpr float kLeastMove = 1e-5f;
constexpr double kLeastTurn = 1e-7;
constexpr float kLeastRay = 1e-7f;
// Sun time for each 100 pixels from where the button went down, a second.
constexpr double kDaysPerSecond = 182.5;
constexpr double kPartOfDayPerSecond = 0.125;
constexpr double kSunPixels = 100;

// The step in hand.
struct Motion {
  const StepInput& in;
  const SceneProbe& scene;
  StepResult& out;
  double dt;
  Vec3 forward, up;
  double yaw = 0, pitch = 0;
  Vec3 move{0, 0, 0};
};

void Boost(Motion& m) {
  double& boost = m.out.state.boost;
  if (m.in.held.shift) {
    boost = std::min(boost + kBoostGain * m.dt, kMostBoost);
  } else if (boost > 1) {
    boost = std::max(boost - kBoostDecay * m.dt, 1.0);
  }
}

void MoveSun(Motion& m) {
  const double v = (m.in.held.x - m.in.state.pressX) / kSunPixels;
  if (!m.in.held.shift) {
    m.out.days = v * kPartOfDayPerSecond * m.dt;
    return;
  }
  // Whole days only: the time of day stays.
  m.out.days = std::trunc(v * kDaysPerSecond * m.dt);
}

void Drive(Motion& m) {
  const double full = std::max(m.scene.View().frameHeight, 1) / 10.0;
  const double right = (m.in.held.x - m.in.state.pressX) / full;
  const double ahead = (m.in.state.pressY - m.in.held.y) / full;
  m.yaw = -right * kTurnSpeed * m.dt;
  const double speed = ahead * kMoveSpeed * m.out.state.boost;
  m.move += DriveHeading(m.forward, m.up) * static_cast<float>(speed * m.dt);
}

void Look(Motion& m) {
  m.yaw = -(m.in.held.x - m.in.state.lastX) * kLookPerPixel;
  m.pitch = -(m.in.held.y - m.in.state.lastY) * kLookPerPixel;
}

void Orbit(Motion& m) {
  Look(m);
  const Eigen::Vector3d arm =
      m.in.camera.position.cast<double>() - m.in.state.orbitPivot.cast<double>();
  m.move = (Turn(m.forward, m.up, m.yaw, m.pitch) * arm - arm).cast<float>();
}

void Pan(Motion& m) {
  Vec3 right, up;
  m.scene.PanVectors(m.in.state.panDistance, right, up);
  m.move = static_cast<float>(m.in.held.y - m.in.state.lastY) * up -
           static_cast<float>(m.in.held.x - m.in.state.lastX) * right;
}

void FollowMouse(Motion& m) {
  const NavigationInput& held = m.in.held;
  if (held.left && !held.right) {
    held.control ? MoveSun(m) : Drive(m);
  } else if (held.middle) {
    held.shift ? Pan(m) : Orbit(m);
  } else if (held.right && !held.left && !held.control) {
    Look(m);
  }
  m.out.state.lastX = held.x;
  m.out.state.lastY = held.y;
}

void FollowKeys(Motion& m) {
  const NavigationInput& held = m.in.held;
  const auto v = static_cast<float>(kMoveSpeed * m.out.state.boost * m.dt);
  const Vec3 ahead = UnitOrZero(Vec3(m.forward.x(), m.forward.y(), 0));
  const Vec3 left = UnitOrZero(Vec3::UnitZ().cross(m.forward));
  if (held.leftward) m.move += v * left;
  if (held.rightward) m.move -= v * left;
  if (held.forward) m.move += v * ahead;
  if (held.backward) m.move -= v * ahead;
  if (held.rise) m.move += (held.shift ? -v : v) * Vec3::UnitZ();
}

// Keeps the eye at the collision distance from what lies in its way.
void Collide(Motion& m) {
  const float length = m.move.norm();
  if (length < kLeastRay) return;
  const Vec3 way = m.move / length;
  const auto distance = m.scene.DistanceAlong(m.in.camera.position, way);
  if (!distance || *distance - length >= kCollisionDistance) return;
  const float room = *distance - kCollisionDistance;
  m.move = room < 0 ? Vec3(Vec3::Zero()) : Vec3(way * room);
}

// Where the walker comes to: on the floor below, or falling towards it.
Vec3 FollowFloor(Motion& m) {
  const Vec3& eye = m.in.camera.position;
  double& fallSpeed = m.out.state.fallSpeed;
  const auto floor = m.scene.DistanceAlong(eye + m.move, -Vec3::UnitZ());
  if (!floor) {
    fallSpeed = 0;
    return eye + m.move;
  }
  const float ground = m.move.z() + eye.z() - *floor;
  // Gravity goes with the walking speed.
  fallSpeed += m.dt * kMoveSpeed;
  m.move.z() -= static_cast<float>(m.dt * fallSpeed);
  Vec3 newEye = eye + m.move;
  if (newEye.z() - ground < m.in.eyeHeight) {
    newEye.z() = ground + m.in.eyeHeight;
    fallSpeed = 0;
  }
  return newEye;
}

Vec3 Arrive(Motion& m) {
  if (m.in.mode == NavigationMode::kFly) return m.in.camera.position + m.move;
  if (!m.in.held.shift) Collide(m);
  return FollowFloor(m);
}

}  // namespace

StepResult StepCamera(const StepInput& input, const SceneProbe& scene) {
  StepResult out{input.camera, input.state, false, 0};
  Motion m{input,
           scene,
           out,
           std::clamp(input.seconds, 0.0, kLongestStepSeconds),
           UnitOrZero(input.camera.forward),
           UnitOrZero(input.camera.up)};
  Boost(m);
  FollowMouse(m);
  FollowKeys(m);
  const Vec3 eye = Arrive(m);
  const bool moved = (eye - input.camera.position).norm() >= kLeastMove;
  const bool turned = std::abs(m.pitch) >= kLeastTurn || std::abs(m.yaw) >= kLeastTurn;
  out.render = moved || turned || input.held.redraw;
  if (moved) out.camera.position = eye;
  if (turned) {
    const Eigen::Quaterniond turn = Turn(m.forward, m.up, m.yaw, m.pitch);
    out.camera.forward = UnitOrZero((turn * m.forward.cast<double>()).cast<float>());
    out.camera.up = UnitOrZero((turn * m.up.cast<double>()).cast<float>());
  }
  return out;
}

}  // namespace qv

#include "navigation/Navigator.h"

#include <algorithm>
#include <utility>

#include "navigation/CameraMath.h"

namespace qv {
namespace {

// How far one notch of the wheel goes: a part of the way to what is under the pointer, or of the
// model's diagonal, but at least one unit.
constexpr float kWheelPartOfWay = 0.05f;
constexpr float kWheelPartOfDiagonal = 0.01f;
constexpr float kLeastWheelStep = 1.0f;

Vec3 Centre(const SceneBox& box) {
  return (box.minimum + box.maximum) / 2;
}

}  // namespace

Navigator::Navigator(const SceneProbe& scene, NavigationActions& actions)
    : scene_(scene), actions_(actions) {}

void Navigator::SetMode(NavigationMode mode) {
  mode_ = mode;
  // Who flies does not fall.
  if (mode == NavigationMode::kFly) state_.fallSpeed = 0;
}

void Navigator::Begin(double now) {
  if (std::exchange(ticking_, true)) return;
  lastTick_ = now;
  actions_.SetTicking(true);
}

void Navigator::ButtonPressed(const NavigationInput& held, bool middle, double now) {
  state_.pressX = state_.lastX = held.x;
  state_.pressY = state_.lastY = held.y;
  unsent_ = true;
  Begin(now);
  if (middle) PickPivot(held);
}

void Navigator::KeyPressed(const NavigationInput& held, double now) {
  if (!held.Moves() && !held.redraw) return;
  unsent_ = unsent_ || held.Moves();
  Begin(now);
}

void Navigator::Released(const NavigationInput& before, const NavigationInput& after, double now) {
  // What happened since the last tick still counts.
  if (ticking_) Step(before, now);
  Settle(after);
}

void Navigator::Tick(const NavigationInput& held, double now) {
  if (!ticking_) return;
  Step(held, now);
  Settle(held);
}

void Navigator::Step(const NavigationInput& held, double now) {
  const StepResult result = StepCamera({.held = held,
                                        .seconds = now - lastTick_,
                                        .camera = actions_.Camera(),
                                        .mode = mode_,
                                        .eyeHeight = actions_.EyeHeight(),
                                        .state = state_},
                                       scene_);
  lastTick_ = now;
  state_ = result.state;
  if (result.days != 0) actions_.AddDays(result.days);
  if (result.render) actions_.ShowMoving(result.camera);
}

void Navigator::Settle(const NavigationInput& held) {
  if (held.Moves()) return;
  state_.boost = 1;
  if (state_.fallSpeed == 0 && std::exchange(ticking_, false)) actions_.SetTicking(false);
  if (held.redraw) return;
  if (std::exchange(unsent_, false) && actions_.IsCameraLinked()) actions_.SendCamera();
}

void Navigator::PickPivot(const NavigationInput& held) {
  const RenderCamera camera = actions_.Camera();
  const ViewGeometry view = scene_.View();
  const PickedPoint middle = scene_.Pick(view.width / 2, view.height / 2);
  const auto bounds = scene_.Bounds();
  const float toModel = bounds ? (Centre(*bounds) - camera.position).norm() : 0;

  state_.orbitPivot =
      middle.hit ? middle.position : Vec3(camera.position + toModel * UnitOrZero(camera.forward));
  if (actions_.IsCameraLinked()) {
    if (const auto target = actions_.AskHostTarget()) state_.orbitPivot = *target;
  }
  const PickedPoint dragged = scene_.Pick(held.x, held.y);
  state_.panDistance = dragged.hit ? dragged.distance : toModel;
}

void Navigator::Wheel(int x, int y, double notches) {
  RenderCamera camera = actions_.Camera();
  const PickedPoint point = scene_.Pick(x, y);
  float step = 0;
  Vec3 way = point.direction;
  if (point.hit) {
    step = kWheelPartOfWay * point.distance;
    way = UnitOrZero(point.position - camera.position);
  } else if (const auto bounds = scene_.Bounds()) {
    step = kWheelPartOfDiagonal * (bounds->maximum - bounds->minimum).norm();
  }
  step = std::max(step, kLeastWheelStep);
  camera.position += way * step * static_cast<float>(notches);
  actions_.ShowMoving(camera);
  if (actions_.IsCameraLinked()) actions_.SendCamera();
}

void Navigator::ResetRoll() {
  RenderCamera camera = actions_.Camera();
  camera.up = LevelUp(camera.forward, camera.up);
  actions_.ShowStill(camera);
}

void Navigator::EyeHeightChanged(double now) {
  Begin(now);
}

void Navigator::Stop() {
  state_.boost = 1;
  state_.fallSpeed = 0;
  unsent_ = false;
  if (std::exchange(ticking_, false)) actions_.SetTicking(false);
}

}  // namespace qv

#pragma once

#include "core/RenderCamera.h"
#include "navigation/NavigationInput.h"
#include "navigation/SceneProbe.h"

namespace qv {

enum class NavigationMode { kFly = 0, kWalk = 1 };

constexpr float kTurnSpeed = 0.26179934f;    // radians a second at full deflection: 15 degrees
constexpr float kMoveSpeed = 50.0f;          // units a second
constexpr float kCollisionDistance = 5.0f;   // units between the eye and a wall
constexpr double kLongestStepSeconds = 0.1;  // a stall does not throw the camera further than this
constexpr double kLookPerPixel = 3.141592 / 1000;  // radians

// What motion keeps from one step to the next.
struct MotionState {
  double boost = 1;            // factor of the speed, 1 to 10
  double fallSpeed = 0;        // units a second, downwards
  int pressX = 0, pressY = 0;  // where the button went down
  int lastX = 0, lastY = 0;    // where the pointer was at the last step
  float panDistance = 0;       // how far the plane that is dragged lies from the eye
  Vec3 orbitPivot{0, 0, 0};
};

struct StepInput {
  NavigationInput held;
  double seconds = 0;  // since the last step; longer ones count as kLongestStepSeconds
  RenderCamera camera;
  NavigationMode mode = NavigationMode::kFly;
  float eyeHeight = 0;
  MotionState state;
};

struct StepResult {
  RenderCamera camera;
  MotionState state;
  bool render = false;  // the camera has changed, or a new picture was asked for
  double days = 0;      // what is to be added to the date
};

// One step of the camera. Changes nothing but what it returns.
StepResult StepCamera(const StepInput& input, const SceneProbe& scene);

}  // namespace qv

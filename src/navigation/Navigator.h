#pragma once

#include <optional>

#include "core/RenderCamera.h"
#include "navigation/CameraStep.h"
#include "navigation/NavigationInput.h"
#include "navigation/SceneProbe.h"

namespace qv {

// What navigation asks of the program around it. GUI thread only.
class NavigationActions {
 public:
  virtual ~NavigationActions() = default;

  virtual RenderCamera Camera() const = 0;  // the newest, not the one that is being rendered
  virtual float EyeHeight() const = 0;
  // Has Navigator::Tick called as often as the window's events allow, until it is switched off.
  virtual void SetTicking(bool on) = 0;

  virtual void ShowMoving(const RenderCamera& camera) = 0;  // a step of a motion
  virtual void ShowStill(const RenderCamera& camera) = 0;
  virtual void AddDays(double days) = 0;

  virtual bool IsCameraLinked() const = 0;
  // What the host's camera looks at; nothing without an answer.
  virtual std::optional<Vec3> AskHostTarget() = 0;
  virtual void SendCamera() = 0;
};

// Turns what a person does in the view into motion of the camera: it knows when a motion begins
// and ends, and what a press, the wheel and the commands do. Times are seconds of a steady clock.
//
// A motion begins with a press. When nothing is held any more the host gets one camera, if it is
// linked, even if the walker is still falling. It gets one at each turn of the wheel, and no other.
class Navigator {
 public:
  Navigator(const SceneProbe& scene, NavigationActions& actions);

  NavigationMode mode() const { return mode_; }
  void SetMode(NavigationMode mode);
  void SetOrbitPivot(const Vec3& pivot) { state_.orbitPivot = pivot; }

  // A button went down; `held` has it already. `middle` tells whether it is the middle one.
  void ButtonPressed(const NavigationInput& held, bool middle, double now);
  // A key of navigation went down, or repeats.
  void KeyPressed(const NavigationInput& held, double now);
  // A key or button was let go, or taken away.
  void Released(const NavigationInput& before, const NavigationInput& after, double now);
  void Tick(const NavigationInput& held, double now);
  // The wheel over that pixel of the view; `notches` is positive away from the person.
  void Wheel(int x, int y, double notches);
  // Levels the camera.
  void ResetRoll();
  void EyeHeightChanged(double now);
  // Ends the motion where it is and tells nobody.
  void Stop();

 private:
  void Begin(double now);
  void Step(const NavigationInput& held, double now);
  // Once nothing is held any more: tells the host, and ends the motion if no fall goes on.
  void Settle(const NavigationInput& held);
  void PickPivot(const NavigationInput& held);

  const SceneProbe& scene_;
  NavigationActions& actions_;
  NavigationMode mode_ = NavigationMode::kFly;
  MotionState state_;
  bool ticking_ = false;
  bool unsent_ = false;  // something was held that the host has not been told the end of
  double lastTick_ = 0;
};

}  // namespace qv

#pragma once

#include "core/RenderCamera.h"

namespace qv {

// What a frame of a moving camera is for, which decides how well it is rendered.
enum class StageFrame {
  kMoveStep,  // a step of the move to a view
  kMoveEnd,   // the view itself
  kPlayed,    // a frame of an animation
  kPlayEnd,   // its last key
};

// What an animation needs of the program: a clock, the renderer's camera and sun, and the event
// loop. Calls belong to the GUI thread.
class CameraStage {
 public:
  virtual ~CameraStage() = default;

  // Seconds of a steady clock.
  virtual double Now() = 0;
  // The camera that was shown last.
  virtual RenderCamera Camera() = 0;
  virtual void SetSunDate(double julianDate) = 0;
  // Asks for a frame and returns. A frame that is asked for before the last one stands replaces it.
  virtual void Show(const RenderCamera& camera, StageFrame frame) = 0;
  // True when the frame that was asked for last stands, or none will come.
  virtual bool FrameDone() = 0;
  // Lets events of the windows be handled.
  virtual void Yield() = 0;
  // The same, and a short sleep.
  virtual void Wait() = 0;
  // True while Escape is held down, and when the animation has to end for another reason.
  virtual bool StopAsked() = 0;
};

}  // namespace qv

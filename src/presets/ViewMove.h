#pragma once

#include "core/Orientation.h"
#include "presets/CameraStage.h"

namespace qv {

// The move of the camera to a view: half a second of even acceleration, a second of even speed,
// half a second of even deceleration. The field of view is the target's from the start.
class ViewMove {
 public:
  static constexpr double kSeconds = 2.0;

  ViewMove(const CameraPose& from, const CameraPose& to) : from_(from), to_(to) {}

  // `seconds` from the start, 0 to kSeconds.
  CameraPose PoseAt(double seconds) const;

  // How much of the way is done, 0 to 1.
  static float Ease(double seconds);

 private:
  CameraPose from_;
  CameraPose to_;
};

// Moves the camera of the stage to a pose, at once if `directly` is set, and shows it there. False
// if it was ended on the way: the camera then stays where it is. A pose that is no number is not
// shown.
bool MoveTo(CameraStage& stage, const CameraPose& target, bool directly);

// Asks for a frame, unless a number of the camera is not finite.
void ShowPose(CameraStage& stage, const CameraPose& pose, StageFrame frame);

// Sets the sun's date, unless it is not finite.
void SetSunDate(CameraStage& stage, double julianDate);

}  // namespace qv

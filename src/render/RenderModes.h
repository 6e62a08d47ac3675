#pragma once

#include <cstdint>

namespace qv {

// Where the frame engine stands.
enum class RenderState : std::uint32_t {
  kNone = 0,       // no job has ever been started
  kIdle = 1,       // the last job is finished
  kStopping = 2,   // stop requested
  kQueued = 3,     // a new job is queued
  kRendering = 4,  // a job is rendering
};

// The quality of one pass over the picture.
enum RenderPass : std::int32_t {
  PassPreview =
      1,  // textures and a flat ambient term only; written to the screen without image adjustment
  PassSunPreview = 2,  // first light and first LEM light, no occlusion, no reflection
  PassFull = 3,        // complete
  PassAntialias = 4,   // complete, supersampled, only tiles that touch a marked pixel
};

// The passes of one job. A pass in brackets is left at the next tile when a stop or a new job is
// asked for.
enum RenderMode : std::int32_t {
  ModePreview = 0,  // PassPreview: frames of a playing animation
  ModeMotion =
      1,  // PassPreview [PassFull] [PassAntialias]: the camera moved, the window changed its size
  ModeSunMotion =
      2,  // PassSunPreview [PassFull] [PassAntialias]: the sun's date or time is dragged
  ModeSunPreview = 3,  // PassSunPreview: frames of a playing animation
  ModeStill = 4,       // [PassFull] [PassAntialias]: changes that leave the camera where it is
  ModeFinal = 5,  // PassFull PassAntialias: capture and movie frames; one passDone, after the last
};

}  // namespace qv

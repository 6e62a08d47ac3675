#pragma once

#include <span>

#include "render/RenderModes.h"

namespace qv {

// One pass of a job.
struct PassStep {
  RenderPass pass;
  bool abortable;        // left at the next tile when a stop or a new job is asked for
  bool shownEvenIfLeft;  // composed and shown although it was left
  bool reported;         // passDone is called when it stands
};

// The passes of a mode, in order; none for a number that is no mode.
std::span<const PassStep> PassesOf(RenderMode mode);

}  // namespace qv

#pragma once

#include "render/RenderModes.h"
#include "render/geometry/RenderScene.h"
#include "render/trace/ThreadPackets.h"
#include "render/trace/TraceKernels.h"
#include "sky/CubeFaces.h"

namespace qv {

// What multiplies the kinds of light: taken over by a job when it starts.
struct LightFactorsInUse {
  float sun = 1, ambient = 1, point = 1, lem = 1;
  bool useSkyColorForAmbient = false;
};

// All that shading reads besides the packets; constant while a pass runs.
struct ShadeInputs {
  const RenderScene* scene = nullptr;
  const sky::CubeFaces* background = nullptr;
  TraceTarget trace;
  RenderPass pass = PassFull;
  LightFactorsInUse factors;
  float footprintScale = 0;  // field of view / height of the base picture
};

}  // namespace qv

#pragma once

#include "render/RenderModes.h"
#include "render/geometry/RenderScene.h"
#include "render/shade/SampleDirections.h"
#include "render/trace/TraceKernels.h"
#include "sky/CubeFaces.h"

namespace qv {

// What multiplies the kinds of light: taken over by a job when it starts.
struct LightFactorsInUse {
  float sun = 1, ambient = 1, point = 1, lem = 1;
  bool useSkyColorForAmbient = false;
};

// What the user has switched on; taken over with the factors.
struct ShadeSwitches {
  bool useAmbientOcclusion = true;
  bool useLEM = false;
};

// All that shading reads besides the packets; constant while a pass runs.
struct ShadeInputs {
  const RenderScene* scene = nullptr;
  const sky::CubeFaces* background = nullptr;
  const SampleDirections* directions = nullptr;
  TraceTarget trace;
  RenderPass pass = PassFull;
  LightFactorsInUse factors;
  ShadeSwitches switches;
  float footprintScale = 0;  // field of view / height of the base picture
};

}  // namespace qv

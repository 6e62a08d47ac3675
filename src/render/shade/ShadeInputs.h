#pragma once

#include "core/LightFactors.h"
#include "render/RenderModes.h"
#include "render/geometry/RenderScene.h"
#include "render/shade/SampleDirections.h"
#include "render/trace/TraceKernels.h"
#include "sky/CubeFaces.h"

namespace qv {

// What is switched on; taken over by a job when it starts, with the factors.
struct ShadeSwitches {
  bool useAmbientOcclusion = true;
  bool useLEM = false;
  bool useLightmap = false;     // baked light stands in for the ambient light
  bool lightmapHasLEM = false;  // and holds the light of the LEM lights
};

// All that shading reads besides the packets; constant while a pass runs.
struct ShadeInputs {
  const RenderScene* scene = nullptr;
  const sky::CubeFaces* background = nullptr;
  const SampleDirections* directions = nullptr;
  TraceTarget trace;
  RenderPass pass = PassFull;
  LightFactors factors;
  ShadeSwitches switches;
  float footprintScale = 0;  // field of view / height of the base picture
};

}  // namespace qv

#pragma once

namespace qv {

// What multiplies the kinds of light, and whether the sky colours the ambient light.
struct LightFactors {
  float sun = 1, ambient = 1, point = 1, lem = 1;
  bool useSkyColorForAmbient = false;
};

}  // namespace qv

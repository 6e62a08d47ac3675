#pragma once

#include "core/Vec.h"
#include "render/material/RenderTexture.h"

namespace qv {

// How a surface looks. Colours are linear red, green, blue.
struct RenderMaterial {
  Vec3 ambientColor{0, 0, 0};  // not read by shading
  Vec3 diffuseColor{0, 0, 0};
  Vec3 specularColor{0, 0, 0};
  float diffuseFactor = 1;     // multiplies diffuse light
  float specularExponent = 0;  // of Phong's model
  float reflectance = 0;
  float glossy = 0;  // above 0 the reflection is blurred
  float refractiveIndex = 1;
  float shadingFlag = 0;  // not read by shading
  float opacity = 1;
  bool hasTexture = false;
  RenderTexture texture;  // with hasTexture at least one mip level
  float bumpFactor = 0;
};

}  // namespace qv

#pragma once

#include <cstdint>
#include <string>

#include "core/Vec.h"

namespace qv {

// One vertex as it arrives from the host. Model units, z up.
struct MeshVertex {
  float position[3];
  float normal[3];
  float frontUv[2];
  float backUv[2];
};
static_assert(sizeof(MeshVertex) == 40);

// Three vertex numbers, local to the call that brings them, and the material word: low 16 bits the
// front material, high 16 bits, read as signed, the back material.
struct MeshTriangle {
  std::int32_t vertex[3];
  std::uint32_t materialWord;
};
static_assert(sizeof(MeshTriangle) == 16);

// The arguments of AddMaterial. Colours are linear red, green, blue.
struct MaterialParameters {
  Vec3 ambientColor{0, 0, 0};
  Vec3 diffuseColor{0, 0, 0};
  Vec3 specularColor{0, 0, 0};
  float diffuseFactor = 1;     // above 0.02 the surface takes diffuse light
  float specularExponent = 0;  // above 0.05 the surface has a highlight
  float reflectance = 0;       // above 0 the surface reflects
  float glossy = 0;            // above 0 the reflection is blurred
  float refractiveIndex = 1;
  float shadingFlag = 0;  // kept, read by no shading
  float opacity = 1;      // 1 is opaque
  bool hasTexture = false;
  std::string texturePath;  // UTF-8 on Windows, bytes of a name on Linux; only with hasTexture
  float bumpFactor = 0;     // from 0.001 on the texture also bends the normal
};

}  // namespace qv

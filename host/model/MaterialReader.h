#pragma once

#include <assimp/scene.h>

#include <Eigen/Geometry>
#include <optional>
#include <string>

#include "host/model/ModelFormat.h"
#include "host/model/Scene.h"

namespace qv::host {

// What becomes of the alpha channel of a texture file.
enum class AlphaUse {
  kBlend,   // it is the opacity
  kMask,    // opaque where it reaches the cutoff, else not there
  kIgnore,  // the surface is opaque
};

// A texture as the file names it, and what has to be done to its pixels.
struct TextureUse {
  std::string name;         // path, or the name of an embedded texture
  std::string opacityName;  // a second image that holds the opacity; empty for none
  unsigned uvChannel = 0;
  Eigen::Affine2f placement = Eigen::Affine2f::Identity();  // of the texture coordinates
  AlphaUse alpha = AlphaUse::kBlend;
  float alphaCutoff = 0.5f;
  Vec3 tint{1, 1, 1};  // multiplies the pixels, in linear light
};

struct ReadMaterial {
  SceneMaterial parameters;  // without the texture's file
  std::optional<TextureUse> texture;
};

// The material of a model file as the viewer's shading takes it.
//
// Colours: the viewer shows a value of 1 as full brightness without any transfer curve, and takes
// texture bytes as they are, so its scale is that of the screen. Colours therefore go as they
// stand, except in glTF, whose factors are linear light and are encoded as sRGB.
// The highlight is dropped for shading models that have none. An opacity under 0.01 is read as
// opaque, since several exporters write 0 for "not set"; not in glTF, where it is defined.
ReadMaterial MaterialFrom(const aiMaterial& material, const ModelFormat& format);

// The material of a mesh that names none.
SceneMaterial PlainMaterial();

// sRGB of linear light and back, per channel (IEC 61966-2-1).
float SrgbFromLinear(float linear);
float LinearFromSrgb(float encoded);

}  // namespace qv::host

#include "host/scenefile/MaterialChange.h"

namespace qv::host {
namespace {

// Of a highlight that is given no colour.
const Vec3 kPlainHighlight(0.3f, 0.3f, 0.3f);
// The viewer knows no glow: a surface shows about half of its colour by the ambient light. More
// than this would not fit into a byte of its first, flat picture, which takes 0.8 of the colour.
constexpr float kColorForGlow = 1.25f;

}  // namespace

void ChangeMaterial(const MaterialChange& change, const std::string& texturePath,
                    SceneMaterial& material) {
  if (change.color || change.plain || change.glow) {
    material.hasTexture = false;
    material.texturePath.clear();
  }
  if (change.color) material.diffuseColor = *change.color;
  if (change.opacity) material.opacity = *change.opacity;
  if (change.mirror) material.reflectance = *change.mirror;
  if (change.blurred) material.glossy = *change.blurred ? 1.0f : 0.0f;
  if (change.refraction) material.refractiveIndex = *change.refraction;
  if (change.shininess) {
    material.specularExponent = *change.shininess;
    if (material.specularColor.isZero()) material.specularColor = kPlainHighlight;
  }
  if (change.highlight) material.specularColor = *change.highlight;
  if (change.bump) material.bumpFactor = *change.bump;
  if (change.texture) {
    material.hasTexture = true;
    material.texturePath = texturePath;
  }
  if (change.glow) {
    material.emission = *change.glow;
    material.diffuseColor = *change.glow * kColorForGlow;
  }
}

}  // namespace qv::host

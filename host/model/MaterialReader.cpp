#include "host/model/MaterialReader.h"

#include <assimp/GltfMaterial.h>
#include <assimp/ObjMaterial.h>
#include <assimp/material.h>

#include <algorithm>
#include <cmath>

#include "host/model/ModelFormat.h"

namespace qv::host {
namespace {

using Family = ModelFormat::Family;

// Where exporters write 0 for "not set".
constexpr float kSmallestOpacity = 0.01f;
constexpr float kMaximumExponent = 1000;
// What is left of a surface that lets all light through, so that a pane of glass is still seen.
constexpr float kOpacityOfClearGlass = 0.15f;
constexpr float kDielectricReflectance = 0.04f;

std::optional<float> Number(const aiMaterial& material, const char* key, unsigned type,
                            unsigned index) {
  float value = 0;
  if (material.Get(key, type, index, value) != AI_SUCCESS || !std::isfinite(value)) {
    return std::nullopt;
  }
  return value;
}

std::optional<int> Integer(const aiMaterial& material, const char* key, unsigned type,
                           unsigned index) {
  int value = 0;
  if (material.Get(key, type, index, value) != AI_SUCCESS) return std::nullopt;
  return value;
}

std::string Text(const aiMaterial& material, const char* key, unsigned type, unsigned index) {
  aiString value;
  return material.Get(key, type, index, value) == AI_SUCCESS ? value.C_Str() : "";
}

struct Rgba {
  Vec3 color;
  float alpha;
};

std::optional<Rgba> Color(const aiMaterial& material, const char* key, unsigned type,
                          unsigned index) {
  aiColor4D value(0, 0, 0, 1);
  if (material.Get(key, type, index, value) != AI_SUCCESS) return std::nullopt;
  const Vec3 color(value.r, value.g, value.b);
  if (!color.allFinite()) return std::nullopt;
  return Rgba{color.cwiseMax(0.0f), std::isfinite(value.a) ? std::clamp(value.a, 0.0f, 1.0f) : 1};
}

Vec3 ColorOr(const aiMaterial& material, const char* key, unsigned type, unsigned index,
             const Vec3& other) {
  const auto color = Color(material, key, type, index);
  return color ? color->color : other;
}

Vec3 Encoded(const Vec3& linear) {
  return linear.unaryExpr([](float value) { return SrgbFromLinear(value); });
}

std::string TextureName(const aiMaterial& material, aiTextureType type) {
  return Text(material, AI_MATKEY_TEXTURE(type, 0));
}

std::optional<TextureUse> TextureOf(const aiMaterial& material, aiTextureType type) {
  TextureUse texture;
  texture.name = TextureName(material, type);
  if (texture.name.empty()) return std::nullopt;
  const int channel = Integer(material, AI_MATKEY_UVWSRC(type, 0)).value_or(0);
  texture.uvChannel = static_cast<unsigned>(std::max(channel, 0));
  return texture;
}

// glTF's texture transform (KHR_texture_transform: scaled, then turned about the origin, then
// moved, with v downwards), out of the form that the import library brings it to for turning about
// the middle, with v upwards; its own step of applying that form takes another order.
Eigen::Affine2f GltfPlacement(const aiMaterial& material, aiTextureType type) {
  aiUVTransform stored;
  if (material.Get(AI_MATKEY_UVTRANSFORM(type, 0), stored) != AI_SUCCESS) {
    return Eigen::Affine2f::Identity();
  }
  const float angle = -stored.mRotation;
  const Vec2 scale(stored.mScaling.x, stored.mScaling.y);
  const float c = std::cos(angle);
  const float s = std::sin(angle);
  const Vec2 offset(stored.mTranslation.x - 0.5f * scale.x() * (-c + s + 1),
                    -stored.mTranslation.y + 0.5f * scale.y() * (s + c - 1) + 1 - scale.y());
  Eigen::Affine2f downwards;
  downwards.linear() = Eigen::Matrix2f{{c, s}, {-s, c}} * scale.asDiagonal();
  downwards.translation() = offset;
  Eigen::Affine2f flip = Eigen::Affine2f::Identity();
  flip.linear()(1, 1) = -1;
  flip.translation().y() = 1;
  const Eigen::Affine2f placement = flip * downwards * flip;
  return placement.matrix().allFinite() ? placement : Eigen::Affine2f::Identity();
}

// What a surface shows of itself: its colour, and the texture in place of it.
struct Appearance {
  Vec3 color;
  float alpha = 1;
  std::optional<TextureUse> texture;
};

// A surface that is black but glows (COLLADA's constant shading, for one) shows its glow.
Appearance AppearanceOf(const aiMaterial& material) {
  const auto diffuse = Color(material, AI_MATKEY_COLOR_DIFFUSE);
  Appearance shown;
  shown.color = diffuse ? diffuse->color : PlainMaterial().diffuseColor;
  if (diffuse) shown.alpha = diffuse->alpha;
  shown.texture = TextureOf(material, aiTextureType_DIFFUSE);
  if (!shown.texture) shown.texture = TextureOf(material, aiTextureType_BASE_COLOR);
  if (shown.texture || (diffuse && diffuse->color.maxCoeff() > 0)) return shown;

  const Vec3 emissive = ColorOr(material, AI_MATKEY_COLOR_EMISSIVE, Vec3(0, 0, 0));
  shown.texture = TextureOf(material, aiTextureType_EMISSIVE);
  if (emissive.maxCoeff() > 0) shown.color = emissive;
  return shown;
}

// Without a texture in its place, which says more than the factor beside it.
Vec3 EmissionOf(const aiMaterial& material) {
  if (!TextureName(material, aiTextureType_EMISSIVE).empty()) return {0, 0, 0};
  const float intensity = Number(material, AI_MATKEY_EMISSIVE_INTENSITY).value_or(1);
  const Vec3 emission =
      ColorOr(material, AI_MATKEY_COLOR_EMISSIVE, Vec3(0, 0, 0)) * std::max(intensity, 0.0f);
  return emission.allFinite() ? emission : Vec3(0, 0, 0);
}

float RefractiveIndexOf(const aiMaterial& material) {
  const float index = Number(material, AI_MATKEY_REFRACTI).value_or(1);
  return index > 1 && index <= 4 ? index : 1;
}

float OpacityOf(const aiMaterial& material) {
  const float opacity = Number(material, AI_MATKEY_OPACITY).value_or(1);
  return opacity < kSmallestOpacity ? 1 : std::min(opacity, 1.0f);
}

bool HasHighlight(const aiMaterial& material, const ModelFormat& format) {
  if (format.family == Family::kObj) {
    return Integer(material, AI_MATKEY_OBJ_ILLUM).value_or(2) >= 2;
  }
  switch (Integer(material, AI_MATKEY_SHADING_MODEL).value_or(aiShadingMode_Phong)) {
    case aiShadingMode_Flat:
    case aiShadingMode_Gouraud:
    case aiShadingMode_NoShading:
      return false;
    default:
      return true;
  }
}

void SetHighlight(const aiMaterial& material, SceneMaterial& parameters) {
  float exponent = Number(material, AI_MATKEY_SHININESS).value_or(0);
  const Vec3 specular = ColorOr(material, AI_MATKEY_COLOR_SPECULAR, Vec3(0, 0, 0)) *
                        Number(material, AI_MATKEY_SHININESS_STRENGTH).value_or(1);
  if (!(exponent > 0) || !specular.allFinite() || !(specular.maxCoeff() > 0)) return;
  // Some exporters write the shininess as a part of the largest that the format's readers show.
  if (exponent <= 1) exponent *= 128;
  parameters.specularColor = specular.cwiseMin(1.0f).cwiseMax(0.0f);
  parameters.specularExponent = std::min(exponent, kMaximumExponent);
}

// The mirror's part: a number, and a colour whose absence means white. A black mirror is none.
float ReflectanceOf(const aiMaterial& material, const ModelFormat& format,
                    const SceneMaterial& parameters) {
  if (format.family == Family::kObj) {
    // The illumination models of the MTL format that trace reflections.
    const int model = Integer(material, AI_MATKEY_OBJ_ILLUM).value_or(0);
    const bool traced = model == 3 || model == 5;
    return traced ? std::min(parameters.specularColor.mean(), 1.0f) : 0;
  }
  const float amount = Number(material, AI_MATKEY_REFLECTIVITY).value_or(0);
  const Vec3 color = ColorOr(material, AI_MATKEY_COLOR_REFLECTIVE, Vec3(1, 1, 1));
  return std::clamp(amount * color.maxCoeff(), 0.0f, 1.0f);
}

// Highlight and mirror of glTF's metallic-roughness model: the peak of the normalised Blinn-Phong
// lobe of exponent 2 / roughness^4 - 2 (B. Karis, "Specular BRDF Reference", 2013), and the Phong
// exponent that gives a lobe of the same width, a quarter of it. Smooth metal mirrors.
void SetMetallicRoughness(const aiMaterial& material, const Vec3& base, SceneMaterial& parameters) {
  // With a texture the factors say nothing of the surface as a whole.
  if (!TextureName(material, aiTextureType_METALNESS).empty()) return;
  const float metallic =
      std::clamp(Number(material, AI_MATKEY_METALLIC_FACTOR).value_or(1), 0.0f, 1.0f);
  const float roughness =
      std::clamp(Number(material, AI_MATKEY_ROUGHNESS_FACTOR).value_or(1), 0.05f, 1.0f);
  const float blinn = 2 / std::pow(roughness, 4.0f) - 2;
  if (blinn < 4) return;
  const Vec3 facing = Vec3::Constant(kDielectricReflectance * (1 - metallic)) + metallic * base;
  parameters.specularColor = Encoded((facing * (blinn + 2) / 8).cwiseMin(1.0f));
  parameters.specularExponent = std::min(blinn / 4, kMaximumExponent);
  const float mirror = metallic * (1 - roughness) * (1 - roughness);
  if (mirror < 0.1f) return;
  parameters.reflectance = mirror;
  parameters.diffuseColor *= 1 - mirror;
}

// The colour of the specular-glossiness extension stands in the same place as the base colour.
ReadMaterial GltfMaterial(const aiMaterial& material) {
  ReadMaterial read;
  SceneMaterial& parameters = read.parameters;
  const Appearance shown = AppearanceOf(material);
  parameters.diffuseColor = Encoded(shown.color);
  parameters.refractiveIndex = RefractiveIndexOf(material);
  SetMetallicRoughness(material, shown.color, parameters);

  const std::string mode = Text(material, AI_MATKEY_GLTF_ALPHAMODE);
  const float cutoff = Number(material, AI_MATKEY_GLTF_ALPHACUTOFF).value_or(0.5f);
  AlphaUse alpha = AlphaUse::kIgnore;
  if (mode == "BLEND") {
    alpha = AlphaUse::kBlend;
    parameters.opacity = shown.alpha;
  } else if (mode == "MASK") {
    alpha = AlphaUse::kMask;
    if (shown.alpha < cutoff) parameters.opacity = 0;
  }
  const float transmission =
      std::clamp(Number(material, AI_MATKEY_TRANSMISSION_FACTOR).value_or(0), 0.0f, 1.0f);
  parameters.opacity *= 1 - transmission * (1 - kOpacityOfClearGlass);

  read.texture = shown.texture;
  if (read.texture) {
    read.texture->placement = GltfPlacement(material, aiTextureType_DIFFUSE);
    read.texture->alpha = alpha;
    read.texture->alphaCutoff = cutoff / std::max(shown.alpha, 1e-3f);
    read.texture->tint = shown.color.cwiseMin(1.0f);
  }
  return read;
}

ReadMaterial ClassicMaterial(const aiMaterial& material, const ModelFormat& format) {
  ReadMaterial read;
  SceneMaterial& parameters = read.parameters;
  const Appearance shown = AppearanceOf(material);
  parameters.ambientColor = ColorOr(material, AI_MATKEY_COLOR_AMBIENT, Vec3(0, 0, 0));
  parameters.diffuseColor = shown.color;
  parameters.opacity = OpacityOf(material);
  parameters.refractiveIndex = RefractiveIndexOf(material);
  if (HasHighlight(material, format)) SetHighlight(material, parameters);
  parameters.reflectance = ReflectanceOf(material, format, parameters);
  read.texture = shown.texture;
  if (read.texture) {
    read.texture->opacityName = TextureName(material, aiTextureType_OPACITY);
    // Some files name one image with an alpha channel for both.
    if (read.texture->opacityName == read.texture->name) read.texture->opacityName.clear();
  }
  return read;
}

}  // namespace

ReadMaterial MaterialFrom(const aiMaterial& material, const ModelFormat& format) {
  const bool isGltf = format.family == Family::kGltf;
  ReadMaterial read = isGltf ? GltfMaterial(material) : ClassicMaterial(material, format);
  read.parameters.name = Text(material, AI_MATKEY_NAME);
  const Vec3 emission = EmissionOf(material);
  read.parameters.emission = format.linearColors ? Encoded(emission) : emission;
  return read;
}

SceneMaterial PlainMaterial() {
  SceneMaterial parameters;
  parameters.diffuseColor = Vec3(0.8f, 0.8f, 0.8f);
  return parameters;
}

float SrgbFromLinear(float linear) {
  if (linear <= 0.0031308f) return 12.92f * linear;
  return 1.055f * std::pow(linear, 1 / 2.4f) - 0.055f;
}

float LinearFromSrgb(float encoded) {
  if (encoded <= 0.04045f) return encoded / 12.92f;
  return std::pow((encoded + 0.055f) / 1.055f, 2.4f);
}

}  // namespace qv::host

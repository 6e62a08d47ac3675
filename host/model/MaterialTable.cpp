#include "host/model/MaterialTable.h"

#include <algorithm>
#include <array>
#include <limits>

namespace qv::host {
namespace {

// All that tells materials apart, as bytes.
std::string BytesOf(const SceneMaterial& m) {
  const std::array<float, 20> numbers = {m.ambientColor.x(),
                                         m.ambientColor.y(),
                                         m.ambientColor.z(),
                                         m.diffuseColor.x(),
                                         m.diffuseColor.y(),
                                         m.diffuseColor.z(),
                                         m.specularColor.x(),
                                         m.specularColor.y(),
                                         m.specularColor.z(),
                                         m.diffuseFactor,
                                         m.specularExponent,
                                         m.reflectance,
                                         m.glossy,
                                         m.refractiveIndex,
                                         m.shadingFlag,
                                         m.opacity,
                                         m.bumpFactor,
                                         m.emission.x(),
                                         m.emission.y(),
                                         m.emission.z()};
  std::string bytes(reinterpret_cast<const char*>(numbers.data()), sizeof numbers);
  bytes += m.name;
  bytes += '\0';
  if (m.hasTexture) bytes += m.texturePath;
  return bytes;
}

float Distance(const SceneMaterial& a, const SceneMaterial& b) {
  const bool sameTexture =
      a.hasTexture == b.hasTexture && (!a.hasTexture || a.texturePath == b.texturePath);
  const float opacity = a.opacity - b.opacity;
  return (sameTexture ? 0.0f : 100.0f) + (a.diffuseColor - b.diffuseColor).squaredNorm() +
         opacity * opacity + 0.01f * (a.specularColor - b.specularColor).squaredNorm();
}

}  // namespace

std::uint32_t MaterialTable::IndexOf(const SceneMaterial& material) {
  const auto [place, isNew] =
      indexOfBytes_.try_emplace(BytesOf(material), static_cast<std::uint32_t>(materials_.size()));
  if (!isNew) return place->second;
  if (materials_.size() < limit_) {
    materials_.push_back(material);
  } else {
    place->second = NearestTo(material);
    ++replaced_;
  }
  return place->second;
}

std::uint32_t MaterialTable::NearestTo(const SceneMaterial& material) const {
  std::size_t nearest = 0;
  float least = std::numeric_limits<float>::infinity();
  for (std::size_t i = 0; i < materials_.size(); ++i) {
    const float distance = Distance(materials_[i], material);
    if (distance < least) {
      least = distance;
      nearest = i;
    }
  }
  return static_cast<std::uint32_t>(nearest);
}

std::vector<SceneMaterial> MaterialTable::Take(std::vector<std::string>& warnings) {
  // Below this a surface can't be seen.
  constexpr float kVisible = 0.01f;
  if (replaced_ > 0) {
    warnings.push_back("There are too many materials; " + std::to_string(replaced_) +
                       " were replaced by similar ones.");
  }
  const auto isVisible = [](const SceneMaterial& m) { return m.opacity >= kVisible; };
  if (std::none_of(materials_.begin(), materials_.end(), isVisible)) {
    for (SceneMaterial& material : materials_) material.opacity = 1;
    warnings.emplace_back("All materials are fully transparent; they are shown opaque.");
  }
  return std::move(materials_);
}

}  // namespace qv::host

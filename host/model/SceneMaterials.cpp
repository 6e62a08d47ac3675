#include "host/model/SceneMaterials.h"

#include <algorithm>
#include <map>
#include <span>

#include "host/model/Scene.h"

namespace qv::host {
namespace {

bool HasUv(const aiMesh& mesh, unsigned channel) {
  return channel < AI_MAX_NUMBER_OF_TEXTURECOORDS && mesh.HasTextureCoords(channel);
}

unsigned ChannelFor(const aiMesh& mesh, const TextureUse& texture) {
  return HasUv(mesh, texture.uvChannel) ? texture.uvChannel : 0;
}

}  // namespace

SceneMaterials::SceneMaterials(const aiScene& scene, const ModelFormat& format,
                               TextureFiles& textures)
    : linearColors_(format.linearColors), textures_(textures), table_(kMaximumMaterials) {
  for (const aiMaterial* material : std::span(scene.mMaterials, scene.mNumMaterials)) {
    read_.push_back(MaterialFrom(*material, format));
  }
  read_.push_back({PlainMaterial(), std::nullopt});
}

const ReadMaterial& SceneMaterials::Read(const aiMesh& mesh) const {
  return read_[std::min<std::size_t>(mesh.mMaterialIndex, read_.size() - 1)];
}

void SceneMaterials::WishCoordinates(const aiMesh& mesh, MeshWishes& wishes) const {
  const std::optional<TextureUse>& texture = Read(mesh).texture;
  if (!texture) return;
  wishes.uvChannel = ChannelFor(mesh, *texture);
  wishes.uvPlacement = texture->placement;
}

// Vertex colours take the place of the material's, but multiply it in glTF.
SceneMaterial SceneMaterials::Colored(const SceneMaterial& plain, const Vec3& color) const {
  SceneMaterial colored = plain;
  if (linearColors_) {
    const Vec3 encoded = color.unaryExpr([](float channel) { return SrgbFromLinear(channel); });
    colored.diffuseColor = plain.diffuseColor.cwiseProduct(encoded);
  } else {
    colored.diffuseColor = color;
  }
  return colored;
}

std::vector<std::uint32_t> SceneMaterials::IndicesFor(const aiMesh& mesh, const LocalMesh& local) {
  const ReadMaterial& read = Read(mesh);
  SceneMaterial parameters = read.parameters;
  if (read.texture && HasUv(mesh, ChannelFor(mesh, *read.texture))) {
    if (const auto file = textures_.FileFor(*read.texture)) {
      parameters.hasTexture = true;
      parameters.texturePath = *file;
    }
  }
  if (!local.colored || parameters.hasTexture) {
    return std::vector<std::uint32_t>(local.triangles.size(), table_.IndexOf(parameters));
  }
  std::map<std::uint16_t, std::uint32_t> indexOfColor;
  std::vector<std::uint32_t> indices;
  indices.reserve(local.triangles.size());
  for (const LocalTriangle& triangle : local.triangles) {
    const auto [place, isNew] = indexOfColor.try_emplace(triangle.color);
    if (isNew) {
      place->second = table_.IndexOf(Colored(parameters, ColorOfTriangle(triangle.color)));
    }
    indices.push_back(place->second);
  }
  return indices;
}

std::vector<SceneMaterial> SceneMaterials::Take(std::vector<std::string>& warnings) {
  return table_.Take(warnings);
}

}  // namespace qv::host

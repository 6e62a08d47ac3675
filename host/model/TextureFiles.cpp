#include "host/model/TextureFiles.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <utility>

#include "host/model/ImagePixels.h"
#include "host/model/LinkPath.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

std::string KeyOf(const TextureUse& use) {
  std::string key = use.name + '\0' + use.opacityName + '\0';
  key += std::to_string(static_cast<int>(use.alpha)) + ' ' + std::to_string(use.alphaCutoff);
  for (const float channel : use.tint) key += ' ' + std::to_string(channel);
  return key;
}

std::string SuffixFor(const aiTexture& texture) {
  std::string suffix;
  for (const char* c = texture.achFormatHint; *c != 0; ++c) {
    if (std::isalnum(static_cast<unsigned char>(*c)) == 0) return ".image";
    suffix += *c;
  }
  return suffix.empty() ? ".image" : '.' + suffix;
}

}  // namespace

TextureFiles::TextureFiles(const aiScene& scene, const fs::path& directory,
                           std::shared_ptr<TemporaryFolder> temporaryFiles,
                           std::vector<std::string>& warnings)
    : scene_(scene),
      finder_(directory),
      temporaryFiles_(std::move(temporaryFiles)),
      warnings_(warnings) {}

std::optional<std::string> TextureFiles::FileFor(const TextureUse& texture) {
  const auto [place, isNew] = fileOfUse_.try_emplace(KeyOf(texture));
  if (!isNew) return place->second;
  if (const auto path = MakeFile(texture)) place->second = LinkPath(*path, *temporaryFiles_);
  return place->second;
}

std::optional<fs::path> TextureFiles::MakeFile(const TextureUse& texture) {
  const auto source = Source(texture.name);
  if (!source) return std::nullopt;
  if (!IsReadableImage(*source)) {
    warnings_.push_back("The texture " + platform::Utf8FromPath(*source) +
                        " is no image that can be read.");
    return std::nullopt;
  }
  const bool asItIs = texture.alpha == AlphaUse::kBlend && texture.opacityName.empty() &&
                      texture.tint.minCoeff() > 0.995f;
  return asItIs ? source : Changed(*source, texture);
}

std::optional<fs::path> TextureFiles::Source(const std::string& name) {
  const auto [place, isNew] = sourceOfName_.try_emplace(name);
  if (!isNew) return place->second;
  const aiTexture* embedded = scene_.GetEmbeddedTexture(name.c_str());
  place->second = embedded != nullptr ? WriteEmbedded(*embedded) : finder_.Find(name);
  if (!place->second) warnings_.push_back("The texture " + name + " was not found.");
  return place->second;
}

std::optional<fs::path> TextureFiles::WriteEmbedded(const aiTexture& texture) {
  if (texture.pcData == nullptr || texture.mWidth == 0) return std::nullopt;
  if (texture.mHeight > 0) {
    const auto path = temporaryFiles_->NewPath(".png");
    const auto pixels = PixelsFromTexels(texture);
    return path && pixels && Save(*pixels, *path) ? path : std::nullopt;
  }
  const auto path = temporaryFiles_->NewPath(SuffixFor(texture));
  if (!path) return std::nullopt;
  std::ofstream file(*path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(texture.pcData), texture.mWidth);
  file.close();
  return file ? path : std::nullopt;
}

std::optional<fs::path> TextureFiles::Changed(const fs::path& source, const TextureUse& texture) {
  auto pixels = LoadPixels(source);
  if (!pixels) {
    warnings_.push_back("The texture " + platform::Utf8FromPath(source) + " can't be read.");
    return std::nullopt;
  }
  bool changed = Tint(*pixels, texture.tint);
  if (texture.alpha == AlphaUse::kIgnore) changed |= MakeOpaque(*pixels);
  if (texture.alpha == AlphaUse::kMask) changed |= CutAlpha(*pixels, texture.alphaCutoff);
  if (!texture.opacityName.empty()) {
    const auto opacitySource = Source(texture.opacityName);
    const auto opacity = opacitySource ? LoadPixels(*opacitySource) : std::nullopt;
    if (opacity) changed |= TakeOpacity(*pixels, *opacity);
  }
  if (!changed) return source;
  const auto path = temporaryFiles_->NewPath(".png");
  return path && Save(*pixels, *path) ? path : source;
}

}  // namespace qv::host

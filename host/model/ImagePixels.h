#pragma once

#include <assimp/texture.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "core/Vec.h"

struct FIBITMAP;

namespace qv::host {

struct ImageUnloader {
  void operator()(FIBITMAP* image) const;
};

// An image of 32 bits a pixel, with alpha.
using ImagePixels = std::unique_ptr<FIBITMAP, ImageUnloader>;

// Whether the file looks like an image of a format that the viewer reads.
bool IsReadableImage(const std::filesystem::path& path);
std::optional<ImagePixels> LoadPixels(const std::filesystem::path& path);
std::optional<ImagePixels> PixelsFromTexels(const aiTexture& texture);
// As PNG.
bool Save(const ImagePixels& pixels, const std::filesystem::path& path);

// Each tells whether it has changed anything.

// Multiplies the colours in linear light.
bool Tint(ImagePixels& pixels, const Vec3& tint);
bool MakeOpaque(ImagePixels& pixels);
// Alpha at or above the cutoff (0 to 1) becomes opaque, the rest transparent.
bool CutAlpha(ImagePixels& pixels, float cutoff);
// Takes the alpha of another image, or its brightness where it is opaque throughout; that image
// is brought to the same size.
bool TakeOpacity(ImagePixels& pixels, const ImagePixels& opacity);

}  // namespace qv::host

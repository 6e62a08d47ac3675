#include "host/model/ImagePixels.h"

#include <FreeImage.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>

#include "host/model/MaterialReader.h"
#include "imagefile/FileAccess.h"
#include "imagefile/ImageFile.h"

namespace qv::host {
namespace {

// Sides beyond this are taken for a broken header.
constexpr unsigned kMaximumSide = 32768;

template <typename Change>
void ForEachPixel(ImagePixels& pixels, Change change) {
  const unsigned width = FreeImage_GetWidth(pixels.get());
  const unsigned height = FreeImage_GetHeight(pixels.get());
  for (unsigned y = 0; y < height; ++y) {
    auto* row =
        reinterpret_cast<RGBQUAD*>(FreeImage_GetScanLine(pixels.get(), static_cast<int>(y)));
    for (unsigned x = 0; x < width; ++x) change(row[x], x, y);
  }
}

bool HasAlpha(const ImagePixels& pixels) {
  const unsigned width = FreeImage_GetWidth(pixels.get());
  for (unsigned y = 0; y < FreeImage_GetHeight(pixels.get()); ++y) {
    const auto* row =
        reinterpret_cast<const RGBQUAD*>(FreeImage_GetScanLine(pixels.get(), static_cast<int>(y)));
    const auto isClear = [](const RGBQUAD& pixel) { return pixel.rgbReserved != 255; };
    if (std::any_of(row, row + width, isClear)) return true;
  }
  return false;
}

std::array<BYTE, 256> TintedValues(float factor) {
  std::array<BYTE, 256> table;
  for (std::size_t i = 0; i < table.size(); ++i) {
    const float linear = LinearFromSrgb(static_cast<float>(i) / 255) * factor;
    table[i] = static_cast<BYTE>(std::lround(std::clamp(SrgbFromLinear(linear), 0.0f, 1.0f) * 255));
  }
  return table;
}

BYTE Brightness(const RGBQUAD& pixel) {
  // Rec. 709 weights.
  const float sum = 0.2126f * pixel.rgbRed + 0.7152f * pixel.rgbGreen + 0.0722f * pixel.rgbBlue;
  return static_cast<BYTE>(std::lround(sum));
}

}  // namespace

void ImageUnloader::operator()(FIBITMAP* image) const {
  FreeImage_Unload(image);
}

bool IsReadableImage(const std::filesystem::path& path) {
  return imagefile::IsReadable(path);
}

std::optional<ImagePixels> LoadPixels(const std::filesystem::path& path) {
  // Whoever asks tells the user what cannot be read.
  const imagefile::Complaints unheard;
  const auto size = imagefile::SizeOf(path);
  if (size && (size->width > kMaximumSide || size->height > kMaximumSide)) return std::nullopt;
  const imagefile::Bitmap loaded = imagefile::Load(path);
  if (!loaded || FreeImage_GetWidth(loaded.get()) > kMaximumSide ||
      FreeImage_GetHeight(loaded.get()) > kMaximumSide) {
    return std::nullopt;
  }
  ImagePixels pixels(imagefile::In32Bits(loaded.get()).release());
  if (!pixels) return std::nullopt;
  // Without a table or channel of transparency the conversion may leave the alpha at 0.
  if (FreeImage_IsTransparent(loaded.get()) == 0) MakeOpaque(pixels);
  return pixels;
}

std::optional<ImagePixels> PixelsFromTexels(const aiTexture& texture) {
  if (texture.mWidth > kMaximumSide || texture.mHeight > kMaximumSide) return std::nullopt;
  ImagePixels pixels(
      FreeImage_Allocate(static_cast<int>(texture.mWidth), static_cast<int>(texture.mHeight), 32));
  if (!pixels) return std::nullopt;
  ForEachPixel(pixels, [&](RGBQUAD& pixel, unsigned x, unsigned y) {
    // The texels start at the top, the rows of the image at the bottom.
    const std::size_t row = texture.mHeight - 1 - y;
    const aiTexel& texel = texture.pcData[row * texture.mWidth + x];
    pixel = {texel.b, texel.g, texel.r, texel.a};
  });
  return pixels;
}

bool Save(const ImagePixels& pixels, const std::filesystem::path& path) {
  return imagefile::Write(pixels.get(), FIF_PNG, path, PNG_Z_BEST_SPEED);
}

bool Tint(ImagePixels& pixels, const Vec3& tint) {
  if (tint.minCoeff() > 0.995f) return false;
  const auto red = TintedValues(tint.x());
  const auto green = TintedValues(tint.y());
  const auto blue = TintedValues(tint.z());
  ForEachPixel(pixels, [&](RGBQUAD& pixel, unsigned, unsigned) {
    pixel.rgbRed = red[pixel.rgbRed];
    pixel.rgbGreen = green[pixel.rgbGreen];
    pixel.rgbBlue = blue[pixel.rgbBlue];
  });
  return true;
}

bool MakeOpaque(ImagePixels& pixels) {
  if (!HasAlpha(pixels)) return false;
  ForEachPixel(pixels, [](RGBQUAD& pixel, unsigned, unsigned) { pixel.rgbReserved = 255; });
  return true;
}

bool CutAlpha(ImagePixels& pixels, float cutoff) {
  if (!HasAlpha(pixels)) return false;
  const float limit = cutoff * 255;
  ForEachPixel(pixels, [&](RGBQUAD& pixel, unsigned, unsigned) {
    pixel.rgbReserved = static_cast<float>(pixel.rgbReserved) >= limit ? 255 : 0;
  });
  return true;
}

bool TakeOpacity(ImagePixels& pixels, const ImagePixels& opacity) {
  const ImagePixels fitted(
      FreeImage_Rescale(opacity.get(), static_cast<int>(FreeImage_GetWidth(pixels.get())),
                        static_cast<int>(FreeImage_GetHeight(pixels.get())), FILTER_BILINEAR));
  if (!fitted) return false;
  const bool byAlpha = HasAlpha(opacity);
  ForEachPixel(pixels, [&](RGBQUAD& pixel, unsigned x, unsigned y) {
    const auto& mask = reinterpret_cast<const RGBQUAD*>(
        FreeImage_GetScanLine(fitted.get(), static_cast<int>(y)))[x];
    pixel.rgbReserved = byAlpha ? mask.rgbReserved : Brightness(mask);
  });
  return true;
}

}  // namespace qv::host

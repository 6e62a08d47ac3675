#include "render/material/RenderTexture.h"

#include <FreeImage.h>

#include <cstdint>
#include <new>
#include <utility>

#include "core/Log.h"
#include "imagefile/ImageFile.h"
#include "platform/PathText.h"

namespace qv {
namespace {

using imagefile::Bitmap;

TextureMip MipOf(FIBITMAP* bitmap) {
  TextureMip mip;
  mip.width = static_cast<std::int32_t>(FreeImage_GetWidth(bitmap));
  mip.height = static_cast<std::int32_t>(FreeImage_GetHeight(bitmap));
  mip.pitch = mip.width * 4;
  mip.invWidth = 1.0f / static_cast<float>(mip.width);
  mip.invHeight = 1.0f / static_cast<float>(mip.height);
  mip.pixels.resize(static_cast<std::size_t>(mip.pitch) * static_cast<std::size_t>(mip.height));
  imagefile::CopyPixels(bitmap, mip.pixels);
  return mip;
}

// Each level is made from the full image. While that is larger than usual textures are, the level
// takes its place for those that follow: from the full image all the way, an image of 16384 by
// 16384 takes more than twenty seconds.
std::vector<TextureMip> MipChainOf(FIBITMAP* full) {
  constexpr unsigned kUsualBytes = 5000 * 5000 * 4;
  Bitmap smaller;
  std::vector<TextureMip> mips;
  mips.push_back(MipOf(full));
  int width = mips.front().width / 2;
  int height = mips.front().height / 2;
  for (; width >= 1 && height >= 1; width /= 2, height /= 2) {
    FIBITMAP* source = smaller ? smaller.get() : full;
    Bitmap level(FreeImage_Rescale(source, width, height, FILTER_BOX));
    if (!level) break;
    mips.push_back(MipOf(level.get()));
    if (FreeImage_GetDIBSize(source) > kUsualBytes) smaller = std::move(level);
  }
  return mips;
}

}  // namespace

std::optional<RenderTexture> LoadTexture(const std::string& path) try {
  Bitmap bitmap = imagefile::Load(platform::PathFromUtf8(path));
  if (!bitmap) {
    Log(LogLevel::kWarning, "texture cannot be read: " + path);
    return std::nullopt;
  }
  const bool hasAlpha = FreeImage_IsTransparent(bitmap.get()) != 0;
  const Bitmap full = imagefile::In32Bits(bitmap.get());
  bitmap.reset();
  if (!full) {
    Log(LogLevel::kWarning, "texture cannot be converted to 32 bits: " + path);
    return std::nullopt;
  }
  return RenderTexture{path, hasAlpha, MipChainOf(full.get())};
} catch (const std::bad_alloc&) {
  Log(LogLevel::kWarning, "no memory for the texture " + path);
  return std::nullopt;
}

}  // namespace qv

#include "render/material/RenderTexture.h"

#include <FreeImage.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "core/ImageSize.h"
#include "core/Log.h"

namespace qv {
namespace {

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

// Nothing but the header where the kind of file allows that.
Bitmap LoadHeader(FREE_IMAGE_FORMAT format, const std::string& path) {
  if (!FreeImage_FIFSupportsNoPixels(format)) return nullptr;
  return Bitmap(FreeImage_Load(format, path.c_str(), FIF_LOAD_NOPIXELS));
}

// Offsets into a level are 32 bits wide.
bool IsTooLarge(FIBITMAP* bitmap, std::uint64_t fileBytes) {
  constexpr std::uint64_t kMostPixels = std::numeric_limits<std::int32_t>::max() / 4;
  const std::uint64_t width = FreeImage_GetWidth(bitmap);
  const std::uint64_t height = FreeImage_GetHeight(bitmap);
  return width * height > kMostPixels || !IsPlausibleImage(width, height, fileBytes);
}

// Nothing for what is no plain file: to open a pipe would wait for whoever writes to it.
Bitmap LoadBitmap(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return nullptr;
  const std::uint64_t fileBytes = std::filesystem::file_size(path, error);
  if (error) return nullptr;
  FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path.c_str(), 0);
  if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path.c_str());
  if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return nullptr;
  const Bitmap header = LoadHeader(format, path);
  if (header && IsTooLarge(header.get(), fileBytes)) return nullptr;
  Bitmap bitmap(FreeImage_Load(format, path.c_str(), 0));
  if (!bitmap || !FreeImage_HasPixels(bitmap.get()) || IsTooLarge(bitmap.get(), fileBytes)) {
    return nullptr;
  }
  return bitmap;
}

// Nothing for kinds of pixels that have no colours, such as complex numbers.
Bitmap In32Bits(FIBITMAP* bitmap) {
  if (FreeImage_GetImageType(bitmap) != FIT_UINT16)
    return Bitmap(FreeImage_ConvertTo32Bits(bitmap));
  // Grey of 16 bits goes over grey of 8.
  const Bitmap grey(FreeImage_ConvertTo8Bits(bitmap));
  return Bitmap(grey ? FreeImage_ConvertTo32Bits(grey.get()) : nullptr);
}

TextureMip MipOf(FIBITMAP* bitmap) {
  TextureMip mip;
  mip.width = static_cast<std::int32_t>(FreeImage_GetWidth(bitmap));
  mip.height = static_cast<std::int32_t>(FreeImage_GetHeight(bitmap));
  mip.pitch = mip.width * 4;
  mip.invWidth = 1.0f / static_cast<float>(mip.width);
  mip.invHeight = 1.0f / static_cast<float>(mip.height);
  mip.pixels.resize(static_cast<std::size_t>(mip.pitch) * static_cast<std::size_t>(mip.height));
  FreeImage_ConvertToRawBits(mip.pixels.data(), bitmap, mip.pitch, 32, 0xff0000, 0x00ff00, 0x0000ff,
                             TRUE);
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
  Bitmap bitmap = LoadBitmap(path);
  if (!bitmap) {
    Log(LogLevel::kWarning, "texture cannot be read: " + path);
    return std::nullopt;
  }
  const bool hasAlpha = FreeImage_IsTransparent(bitmap.get()) != 0;
  const Bitmap full = In32Bits(bitmap.get());
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

#include "render/material/RenderTexture.h"

#include <FreeImage.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

#include "core/Log.h"

namespace qv {
namespace {

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};
using Bitmap = std::unique_ptr<FIBITMAP, Unload>;

// Nothing for what is no plain file: to open a pipe would wait for whoever writes to it.
Bitmap LoadBitmap(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return nullptr;
  FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path.c_str(), 0);
  if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path.c_str());
  if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return nullptr;
  Bitmap bitmap(FreeImage_Load(format, path.c_str(), 0));
  if (!bitmap || !FreeImage_HasPixels(bitmap.get())) return nullptr;
  return bitmap;
}

// Offsets into a level are 32 bits wide.
bool IsTooLarge(FIBITMAP* bitmap) {
  const std::uint64_t pixels =
      std::uint64_t{FreeImage_GetWidth(bitmap)} * FreeImage_GetHeight(bitmap);
  return pixels > std::numeric_limits<std::int32_t>::max() / 4;
}

// Nothing for kinds of pixels that have no colours, such as complex numbers.
Bitmap In32Bits(FIBITMAP* bitmap) {
  if (IsTooLarge(bitmap)) return nullptr;
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

std::vector<TextureMip> MipChainOf(FIBITMAP* full) {
  std::vector<TextureMip> mips;
  mips.push_back(MipOf(full));
  int width = mips.front().width / 2;
  int height = mips.front().height / 2;
  for (; width >= 1 && height >= 1; width /= 2, height /= 2) {
    const Bitmap level(FreeImage_Rescale(full, width, height, FILTER_BOX));
    if (!level) break;
    mips.push_back(MipOf(level.get()));
  }
  return mips;
}

}  // namespace

std::optional<RenderTexture> LoadTexture(const std::string& path) {
  const Bitmap bitmap = LoadBitmap(path);
  if (!bitmap) {
    Log(LogLevel::kWarning, "texture cannot be read: " + path);
    return std::nullopt;
  }
  const bool hasAlpha = FreeImage_IsTransparent(bitmap.get()) != 0;
  const Bitmap full = In32Bits(bitmap.get());
  if (!full) {
    Log(LogLevel::kWarning, "texture cannot be converted to 32 bits: " + path);
    return std::nullopt;
  }
  return RenderTexture{path, hasAlpha, MipChainOf(full.get())};
}

}  // namespace qv

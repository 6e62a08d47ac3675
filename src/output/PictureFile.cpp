#include "output/PictureFile.h"

#include <FreeImage.h>

#include <cstdint>
#include <system_error>

#include "imagefile/FileAccess.h"

namespace qv {
namespace {

constexpr unsigned kBits = 24;
constexpr unsigned kRedMask = 0xFF0000, kGreenMask = 0xFF00, kBlueMask = 0xFF;

FREE_IMAGE_FORMAT FormatOf(const std::filesystem::path& file) {
  const FREE_IMAGE_FORMAT format = imagefile::FormatOfName(file);
  const bool writable = format != FIF_UNKNOWN && FreeImage_FIFSupportsWriting(format) != 0 &&
                        FreeImage_FIFSupportsExportBPP(format, kBits) != 0;
  return writable ? format : FIF_UNKNOWN;
}

}  // namespace

PictureCopy::PictureCopy(const ScreenView& picture) {
  if (picture.pixels == nullptr || picture.width < 1 || picture.height < 1) return;
  // The library takes the bytes without changing them.
  auto* bytes = const_cast<std::uint8_t*>(picture.pixels);
  bitmap_.reset(FreeImage_ConvertFromRawBits(bytes, picture.width, picture.height,
                                             static_cast<int>(picture.pitch), kBits, kRedMask,
                                             kGreenMask, kBlueMask, FALSE));
}

void PictureCopy::Unload::operator()(FIBITMAP* bitmap) const {
  FreeImage_Unload(bitmap);
}

SaveResult PictureCopy::Save(const std::filesystem::path& file) const {
  const FREE_IMAGE_FORMAT format = FormatOf(file);
  if (format == FIF_UNKNOWN) return SaveResult::kUnknownFormat;
  if (!bitmap_) return SaveResult::kFailed;
  // Beside the file, and put into its place when it is whole.
  std::filesystem::path unfinished = file;
  unfinished += ".part";
  std::error_code error;
  bool stands = imagefile::Write(bitmap_.get(), format, unfinished);
  if (stands) {
    std::filesystem::rename(unfinished, file, error);
    stands = !error;
  }
  if (!stands) std::filesystem::remove(unfinished, error);
  return stands ? SaveResult::kSaved : SaveResult::kFailed;
}

}  // namespace qv

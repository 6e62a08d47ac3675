#include "output/PictureFile.h"

#include <FreeImage.h>

#include <cstdint>
#include <fstream>
#include <string>
#include <system_error>

namespace qv {
namespace {

constexpr unsigned kBits = 24;
constexpr unsigned kRedMask = 0xFF0000, kGreenMask = 0xFF00, kBlueMask = 0xFF;

// The image library's functions on a stream. They are the reason why a failure is looked for in the
// stream: some of the library's formats do not.
std::fstream& StreamOf(fi_handle handle) {
  return *static_cast<std::fstream*>(handle);
}

unsigned DLL_CALLCONV Read(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  std::fstream& stream = StreamOf(handle);
  stream.read(static_cast<char*>(buffer), static_cast<std::streamsize>(size) * count);
  const std::streamsize got = stream.gcount();
  return size == 0 ? 0 : static_cast<unsigned>(got / size);
}

unsigned DLL_CALLCONV Write(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  std::fstream& stream = StreamOf(handle);
  stream.write(static_cast<const char*>(buffer), static_cast<std::streamsize>(size) * count);
  return stream.good() ? count : 0;
}

int DLL_CALLCONV Seek(fi_handle handle, long offset, int origin) {
  std::fstream& stream = StreamOf(handle);
  const auto from = origin == SEEK_SET   ? std::ios::beg
                    : origin == SEEK_CUR ? std::ios::cur
                                         : std::ios::end;
  stream.seekp(offset, from);
  return stream.good() ? 0 : -1;
}

long DLL_CALLCONV Tell(fi_handle handle) {
  return static_cast<long>(StreamOf(handle).tellp());
}

// By the extension alone: the rest of the name may hold letters that the library's narrow text
// cannot.
FREE_IMAGE_FORMAT FormatOf(const std::filesystem::path& file) {
  const std::u8string extension = file.extension().u8string();
  const std::string name = "picture" + std::string(extension.begin(), extension.end());
  const FREE_IMAGE_FORMAT format = FreeImage_GetFIFFromFilename(name.c_str());
  const bool writable = format != FIF_UNKNOWN && FreeImage_FIFSupportsWriting(format) != 0 &&
                        FreeImage_FIFSupportsExportBPP(format, kBits) != 0;
  return writable ? format : FIF_UNKNOWN;
}

bool WriteTo(const std::filesystem::path& file, FREE_IMAGE_FORMAT format, FIBITMAP* bitmap) {
  std::fstream stream(file, std::ios::in | std::ios::out | std::ios::trunc | std::ios::binary);
  if (!stream) return false;
  FreeImageIO io{&Read, &Write, &Seek, &Tell};
  const bool saved = FreeImage_SaveToHandle(format, bitmap, &io, &stream, 0) != 0;
  stream.close();
  return saved && stream.good();
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
  bool stands = WriteTo(unfinished, format, bitmap_.get());
  if (stands) {
    std::filesystem::rename(unfinished, file, error);
    stands = !error;
  }
  if (!stands) std::filesystem::remove(unfinished, error);
  return stands ? SaveResult::kSaved : SaveResult::kFailed;
}

}  // namespace qv

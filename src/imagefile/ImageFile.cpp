#include "imagefile/ImageFile.h"

#include <FreeImage.h>

#include <fstream>
#include <limits>
#include <system_error>

#include "core/ImageSize.h"
#include "core/Log.h"
#include "imagefile/FileAccess.h"

namespace qv::imagefile {
namespace {

thread_local Complaints* takesComplaints = nullptr;

// An open file and what kind it is.
struct OpenImage {
  std::fstream stream;
  FREE_IMAGE_FORMAT format = FIF_UNKNOWN;
};

FREE_IMAGE_FORMAT FormatOf(std::fstream& stream, const std::filesystem::path& path) {
  FreeImageIO calls = StreamCalls();
  FREE_IMAGE_FORMAT format = FreeImage_GetFileTypeFromHandle(&calls, &stream, 0);
  if (format == FIF_UNKNOWN) format = FormatOfName(path);
  if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return FIF_UNKNOWN;
  return format;
}

// Of no known kind if it is no plain file: to open a pipe would wait for whoever writes to it.
OpenImage Open(const std::filesystem::path& path) {
  OpenImage image;
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return image;
  image.stream.open(path, std::ios::in | std::ios::binary);
  if (image.stream) image.format = FormatOf(image.stream, path);
  return image;
}

Bitmap Read(OpenImage& image, int flags) {
  FreeImageIO calls = StreamCalls();
  image.stream.clear();
  image.stream.seekg(0);
  return Bitmap(FreeImage_LoadFromHandle(image.format, &calls, &image.stream, flags));
}

// Offsets to pixels are 32 bits wide; and a header that lies would cost gigabytes before the pixels
// are missed.
bool IsTooLarge(FIBITMAP* bitmap, std::uint64_t fileBytes) {
  constexpr std::uint64_t kMostPixels = std::numeric_limits<std::int32_t>::max() / 4;
  const std::uint64_t width = FreeImage_GetWidth(bitmap);
  const std::uint64_t height = FreeImage_GetHeight(bitmap);
  return width * height > kMostPixels || !IsPlausibleImage(width, height, fileBytes);
}

// Nothing but the header, where the kind of file allows that.
Bitmap ReadHeader(OpenImage& image) {
  if (!FreeImage_FIFSupportsNoPixels(image.format)) return nullptr;
  return Read(image, FIF_LOAD_NOPIXELS);
}

}  // namespace

struct ComplaintTaker {
  static void Take(FREE_IMAGE_FORMAT, const char* message) {
    if (takesComplaints == nullptr) {
      Log(LogLevel::kWarning, std::string("image: ") + message);
      return;
    }
    std::string& text = takesComplaints->text_;
    if (!text.empty()) text += ", ";
    text += message;
  }
};

namespace {

// Messages go where Complaints says, not to standard error.
void HearMessages() {
  [[maybe_unused]] static const bool heard = [] {
    FreeImage_SetOutputMessage(&ComplaintTaker::Take);
    return true;
  }();
}

}  // namespace

void Unloader::operator()(FIBITMAP* bitmap) const {
  FreeImage_Unload(bitmap);
}

Complaints::Complaints() : outer_(takesComplaints) {
  takesComplaints = this;
}

Complaints::~Complaints() {
  takesComplaints = outer_;
}

bool IsReadable(const std::filesystem::path& path) {
  HearMessages();
  return Open(path).format != FIF_UNKNOWN;
}

std::optional<Size> SizeOf(const std::filesystem::path& path) {
  HearMessages();
  OpenImage image = Open(path);
  if (image.format == FIF_UNKNOWN) return std::nullopt;
  const Bitmap head = ReadHeader(image);
  if (!head) return std::nullopt;
  return Size{FreeImage_GetWidth(head.get()), FreeImage_GetHeight(head.get())};
}

Bitmap Load(const std::filesystem::path& path) {
  HearMessages();
  OpenImage image = Open(path);
  if (image.format == FIF_UNKNOWN) return nullptr;
  std::error_code error;
  const std::uint64_t fileBytes = std::filesystem::file_size(path, error);
  if (error) return nullptr;
  const Bitmap head = ReadHeader(image);
  if (head && IsTooLarge(head.get(), fileBytes)) return nullptr;
  Bitmap bitmap = Read(image, 0);
  if (!bitmap || !FreeImage_HasPixels(bitmap.get()) || IsTooLarge(bitmap.get(), fileBytes)) {
    return nullptr;
  }
  return bitmap;
}

Bitmap In32Bits(FIBITMAP* bitmap) {
  if (FreeImage_GetImageType(bitmap) != FIT_UINT16) {
    return Bitmap(FreeImage_ConvertTo32Bits(bitmap));
  }
  // Grey of 16 bits goes over grey of 8.
  const Bitmap grey(FreeImage_ConvertTo8Bits(bitmap));
  return Bitmap(grey ? FreeImage_ConvertTo32Bits(grey.get()) : nullptr);
}

void CopyPixels(FIBITMAP* bitmap, std::span<std::uint8_t> out) {
  FreeImage_ConvertToRawBits(out.data(), bitmap, static_cast<int>(FreeImage_GetWidth(bitmap) * 4),
                             32, 0xff0000, 0x00ff00, 0x0000ff, TRUE);
}

}  // namespace qv::imagefile

#include "imagefile/ImageFile.h"

#include <FreeImage.h>

#include <filesystem>
#include <limits>
#include <system_error>

#include "core/ImageSize.h"
#include "core/Log.h"

namespace qv::imagefile {
namespace {

thread_local Complaints* takesComplaints = nullptr;

// Unknown for what is no plain file: to open a pipe would wait for whoever writes to it.
FREE_IMAGE_FORMAT FormatOf(const std::string& path) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return FIF_UNKNOWN;
  FREE_IMAGE_FORMAT format = FreeImage_GetFileType(path.c_str(), 0);
  if (format == FIF_UNKNOWN) format = FreeImage_GetFIFFromFilename(path.c_str());
  if (format == FIF_UNKNOWN || !FreeImage_FIFSupportsReading(format)) return FIF_UNKNOWN;
  return format;
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
Bitmap LoadHeader(FREE_IMAGE_FORMAT format, const std::string& path) {
  if (!FreeImage_FIFSupportsNoPixels(format)) return nullptr;
  return Bitmap(FreeImage_Load(format, path.c_str(), FIF_LOAD_NOPIXELS));
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

std::optional<Size> SizeOf(const std::string& path) {
  HearMessages();
  const FREE_IMAGE_FORMAT format = FormatOf(path);
  if (format == FIF_UNKNOWN) return std::nullopt;
  const Bitmap head = LoadHeader(format, path);
  if (!head) return std::nullopt;
  return Size{FreeImage_GetWidth(head.get()), FreeImage_GetHeight(head.get())};
}

Bitmap Load(const std::string& path) {
  HearMessages();
  const FREE_IMAGE_FORMAT format = FormatOf(path);
  if (format == FIF_UNKNOWN) return nullptr;
  std::error_code error;
  const std::uint64_t fileBytes = std::filesystem::file_size(path, error);
  if (error) return nullptr;
  const Bitmap head = LoadHeader(format, path);
  if (head && IsTooLarge(head.get(), fileBytes)) return nullptr;
  Bitmap bitmap(FreeImage_Load(format, path.c_str(), 0));
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

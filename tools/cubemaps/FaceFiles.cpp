#include "FaceFiles.h"

#include <FreeImage.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "sky/CubeMaps.h"

namespace qv::cubemaps {
namespace {

constexpr int kBestQuality = 95;
constexpr int kLeastQuality = 40;

struct Unload {
  void operator()(FIBITMAP* bitmap) const { FreeImage_Unload(bitmap); }
};

void WriteFace(const std::vector<std::uint8_t>& pixels, int size, const std::string& path,
               int quality) {
  // The library does not change what it is given here.
  auto* bytes = const_cast<std::uint8_t*>(pixels.data());
  const std::unique_ptr<FIBITMAP, Unload> wide(FreeImage_ConvertFromRawBits(
      bytes, size, size, size * 4, 32, 0xff0000, 0x00ff00, 0x0000ff, TRUE));
  const std::unique_ptr<FIBITMAP, Unload> bitmap(wide ? FreeImage_ConvertTo24Bits(wide.get())
                                                      : nullptr);
  if (!bitmap || !FreeImage_Save(FIF_JPEG, bitmap.get(), path.c_str(),
                                 quality | JPEG_OPTIMIZE | JPEG_PROGRESSIVE)) {
    throw std::runtime_error("cannot write " + path);
  }
}

}  // namespace

void WriteFaces(const std::array<std::vector<std::uint8_t>, 6>& faces, int size,
                const std::filesystem::path& folder, std::uintmax_t budget) {
  std::filesystem::create_directories(folder);
  for (int quality = kBestQuality; quality >= kLeastQuality; quality -= 3) {
    std::uintmax_t bytes = 0;
    for (std::size_t face = 0; face < faces.size(); ++face) {
      const std::filesystem::path path = folder / sky::FaceFileName(static_cast<int>(face));
      WriteFace(faces[face], size, path.string(), quality);
      bytes += std::filesystem::file_size(path);
    }
    if (bytes <= budget) return;
  }
  throw std::runtime_error("the faces of " + folder.string() + " are too large");
}

}  // namespace qv::cubemaps

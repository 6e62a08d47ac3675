#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>

struct FIBITMAP;

// Reading of image files of all kinds that FreeImage knows. All calls from any thread.
namespace qv::imagefile {

struct Unloader {
  void operator()(FIBITMAP* bitmap) const;
};
using Bitmap = std::unique_ptr<FIBITMAP, Unloader>;

// What FreeImage complains of on this thread while this object lives; nothing of it goes to the
// log then. Complaints without such an object do.
class Complaints {
 public:
  Complaints();
  ~Complaints();
  Complaints(const Complaints&) = delete;
  Complaints& operator=(const Complaints&) = delete;

  // Empty if there were none, else all of them with commas between.
  const std::string& text() const { return text_; }

 private:
  friend struct ComplaintTaker;

  Complaints* outer_;
  std::string text_;
};

struct Size {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
};

// Whether the file looks like an image that can be read.
bool IsReadable(const std::filesystem::path& path);

// What the head of the file tells of its size, without memory for the pixels. Nothing if the file
// cannot be read, or is of a kind whose head cannot be read alone.
std::optional<Size> SizeOf(const std::filesystem::path& path);

// The kind is told by the file's contents, or else by its name. Null if the file cannot be read,
// has more pixels than offsets of 32 bits can reach, or claims more than so many bytes can hold. A
// file that ends too early may give what there is of it, with a complaint.
Bitmap Load(const std::filesystem::path& path);

// Null for kinds of pixels that have no colours, such as complex numbers.
Bitmap In32Bits(FIBITMAP* bitmap);

// Blue, green, red, alpha bytes, top row first, rows without gaps. `out` takes exactly all of them.
void CopyPixels(FIBITMAP* bitmap, std::span<std::uint8_t> out);

}  // namespace qv::imagefile

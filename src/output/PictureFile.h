#pragma once

#include <filesystem>
#include <memory>

#include "render/RaytraceImpl.h"

struct FIBITMAP;

namespace qv {

enum class SaveResult {
  kSaved,
  kUnknownFormat,  // the name's extension tells no format that can be written
  kFailed,         // memory or the disk refuse; a file that was there before is as it was
};

// A copy of a picture that can be written to a file after the picture itself has changed. Any
// thread, one at a time.
class PictureCopy {
 public:
  // Without memory for it the copy is empty, and cannot be saved.
  explicit PictureCopy(const ScreenView& picture);

  // Writes it in the format that the extension of the file's name tells, through the image library.
  SaveResult Save(const std::filesystem::path& file) const;

 private:
  struct Unload {
    void operator()(FIBITMAP* bitmap) const;
  };
  std::unique_ptr<FIBITMAP, Unload> bitmap_;
};

}  // namespace qv

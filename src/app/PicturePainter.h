#pragma once

#include <wx/dc.h>

#include <memory>

#include "app/FitRectangle.h"
#include "render/RaytraceImpl.h"

namespace qv {

// Whether a pass has been rendered into the picture: a new one is black.
inline bool IsRendered(const ScreenView& picture) {
  return picture.times.base > 0 || picture.times.antialias > 0;
}

// Brings the renderer's picture to the screen. GUI thread only.
class PicturePainter {
 public:
  PicturePainter();
  ~PicturePainter();

  // A new picture stands in the renderer. False, and what is shown stays, if nothing has been
  // rendered into it since it got its size.
  bool TakePicture(const RaytraceImpl& renderer);
  // Goes on showing the present picture, whatever becomes of the renderer's, until the next
  // TakePicture.
  void KeepPicture(const RaytraceImpl& renderer);
  // The renderer's picture is not worth showing until the next TakePicture: it has got another
  // size, or is gone. Where the painter holds pixels of its own it goes on showing them.
  void RendererCleared();
  // As at the start: there is nothing to show.
  void Forget();

  // False while there is nothing that Paint could draw.
  bool HasPicture() const { return width_ > 0; }
  // The size of the picture that Paint draws.
  int width() const { return width_; }
  int height() const { return height_; }
  const PassTimes& times() const { return times_; }

  // Draws the picture into `where`, its pixels stretched without interpolation where the sizes
  // differ.
  void Paint(wxDC& dc, const PixelRectangle& where, const RaytraceImpl& renderer);

 private:
  struct Surface;
  std::unique_ptr<Surface> surface_;
  int width_ = 0;
  int height_ = 0;
  PassTimes times_;
};

}  // namespace qv

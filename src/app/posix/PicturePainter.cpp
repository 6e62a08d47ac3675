#include "app/PicturePainter.h"

#include <cairo.h>

#include "ScreenPixels.h"

namespace qv {

// The one converted copy of the picture, made when it arrives. It stays on the screen, stretched,
// while the renderer's own buffer has got another size and is not filled yet.
struct PicturePainter::Surface {
  cairo_surface_t* image = nullptr;

  ~Surface() { Release(); }

  void Release() {
    if (image) cairo_surface_destroy(image);
    image = nullptr;
  }

  bool Fit(int width, int height) {
    if (image && cairo_image_surface_get_width(image) == width &&
        cairo_image_surface_get_height(image) == height) {
      return true;
    }
    Release();
    image = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    if (cairo_surface_status(image) == CAIRO_STATUS_SUCCESS) return true;
    Release();
    return false;
  }
};

PicturePainter::PicturePainter() : surface_(std::make_unique<Surface>()) {}

PicturePainter::~PicturePainter() = default;

bool PicturePainter::TakePicture(const RaytraceImpl& renderer) {
  bool taken = false;
  renderer.ReadScreen([this, &taken](const ScreenView& picture) {
    if (!IsRendered(picture)) return;
    if (!surface_->Fit(picture.width, picture.height)) {
      Forget();
      return;
    }
    taken = true;
    width_ = picture.width;
    height_ = picture.height;
    times_ = picture.times;
    cairo_surface_flush(surface_->image);
    ExpandPicture(picture, cairo_image_surface_get_data(surface_->image),
                  static_cast<std::size_t>(cairo_image_surface_get_stride(surface_->image)));
    cairo_surface_mark_dirty(surface_->image);
  });
  return taken;
}

void PicturePainter::KeepPicture(const RaytraceImpl&) {}

void PicturePainter::RendererCleared() {}

void PicturePainter::Forget() {
  surface_->Release();
  width_ = height_ = 0;
}

void PicturePainter::Paint(wxDC& dc, const PixelRectangle& where, const RaytraceImpl&) {
  auto* cairo = static_cast<cairo_t*>(dc.GetImpl()->GetCairoContext());
  if (!cairo || !surface_->image || where.width <= 0 || where.height <= 0) return;
  cairo_save(cairo);
  cairo_translate(cairo, where.x, where.y);
  cairo_scale(cairo, static_cast<double>(where.width) / width_,
              static_cast<double>(where.height) / height_);
  cairo_set_source_surface(cairo, surface_->image, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(cairo), CAIRO_FILTER_NEAREST);
  cairo_set_operator(cairo, CAIRO_OPERATOR_SOURCE);
  cairo_rectangle(cairo, 0, 0, width_, height_);
  cairo_fill(cairo);
  cairo_restore(cairo);
}

}  // namespace qv

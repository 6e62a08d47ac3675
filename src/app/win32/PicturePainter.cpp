#include "app/PicturePainter.h"

#include <windows.h>

#include <cstdint>
#include <vector>

namespace qv {

namespace {

void StretchTo(HDC handle, const PixelRectangle& where, int width, int height,
               const std::uint8_t* pixels) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
  ::SetStretchBltMode(handle, COLORONCOLOR);
  ::StretchDIBits(handle, where.x, where.y, where.width, where.height, 0, 0, width, height, pixels,
                  &info, DIB_RGB_COLORS, SRCCOPY);
}

}  // namespace

// GDI takes the renderer's buffer as it is; a copy is held only where that is about to change.
struct PicturePainter::Surface {
  std::vector<std::uint8_t> kept;
};

PicturePainter::PicturePainter() : surface_(std::make_unique<Surface>()) {}

PicturePainter::~PicturePainter() = default;

bool PicturePainter::TakePicture(const RaytraceImpl& renderer) {
  bool taken = false;
  renderer.ReadScreen([this, &taken](const ScreenView& picture) {
    if (!IsRendered(picture)) return;
    taken = true;
    surface_->kept = {};
    width_ = picture.width;
    height_ = picture.height;
    times_ = picture.times;
  });
  return taken;
}

void PicturePainter::KeepPicture(const RaytraceImpl& renderer) {
  if (!HasPicture()) return;
  renderer.ReadScreen([this](const ScreenView& picture) {
    const std::size_t bytes = picture.pitch * static_cast<std::size_t>(picture.height);
    if (picture.width != width_ || picture.height != height_) return;
    surface_->kept.assign(picture.pixels, picture.pixels + bytes);
  });
}

void PicturePainter::RendererCleared() {
  if (surface_->kept.empty()) Forget();
}

void PicturePainter::Forget() {
  surface_->kept = {};
  width_ = height_ = 0;
}

void PicturePainter::Paint(wxDC& dc, const PixelRectangle& where, const RaytraceImpl& renderer) {
  const HDC handle = static_cast<HDC>(dc.GetHandle());
  if (!surface_->kept.empty()) {
    StretchTo(handle, where, width_, height_, surface_->kept.data());
    return;
  }
  renderer.ReadScreen([&](const ScreenView& picture) {
    if (!picture.pixels) return;
    times_ = picture.times;
    StretchTo(handle, where, picture.width, picture.height, picture.pixels);
  });
}

}  // namespace qv

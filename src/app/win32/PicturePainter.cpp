#include "app/PicturePainter.h"

#include <windows.h>

namespace qv {

// GDI takes the renderer's buffer as it is, so nothing is held here.
struct PicturePainter::Surface {};

PicturePainter::PicturePainter() = default;

PicturePainter::~PicturePainter() = default;

void PicturePainter::TakePicture(const RaytraceImpl& renderer) {
  renderer.ReadScreen([this](const ScreenView& picture) {
    width_ = picture.pixels ? picture.width : 0;
    height_ = picture.pixels ? picture.height : 0;
    times_ = picture.times;
  });
}

void PicturePainter::RendererCleared() {
  Forget();
}

void PicturePainter::Forget() {
  width_ = height_ = 0;
}

void PicturePainter::Paint(wxDC& dc, const PixelRectangle& where, const RaytraceImpl& renderer) {
  const HDC handle = static_cast<HDC>(dc.GetHandle());
  renderer.ReadScreen([&](const ScreenView& picture) {
    if (!picture.pixels) return;
    times_ = picture.times;
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    info.bmiHeader.biWidth = picture.width;
    info.bmiHeader.biHeight = picture.height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biCompression = BI_RGB;
    ::SetStretchBltMode(handle, COLORONCOLOR);
    ::StretchDIBits(handle, where.x, where.y, where.width, where.height, 0, 0, picture.width,
                    picture.height, picture.pixels, &info, DIB_RGB_COLORS, SRCCOPY);
  });
}

}  // namespace qv

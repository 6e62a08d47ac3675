#include "app/FitRectangle.h"

namespace qv {

PixelRectangle FitRectangle(int pictureWidth, int pictureHeight, int panelWidth, int panelHeight) {
  if (pictureWidth <= 0 || pictureHeight <= 0 || panelWidth <= 0 || panelHeight <= 0) return {};
  // Products instead of quotients, so that equal proportions are found equal.
  const double panelAcross = static_cast<double>(panelWidth) * pictureHeight;
  const double pictureAcross = static_cast<double>(pictureWidth) * panelHeight;

  PixelRectangle fit{0, 0, panelWidth, panelHeight};
  if (panelAcross > pictureAcross) {
    const double width = pictureAcross / pictureHeight;
    fit.width = static_cast<int>(width);
    fit.x = static_cast<int>((panelWidth - width) * 0.5);
  } else {
    const double height = static_cast<double>(pictureHeight) * panelWidth / pictureWidth;
    fit.height = static_cast<int>(height);
    fit.y = static_cast<int>((panelHeight - height) * 0.5);
  }
  return fit;
}

}  // namespace qv

#include "WindowPlace.h"

namespace qv {

void WindowPlace::Put(const wxRect& normal, bool maximized) {
  window_.SetSize(normal);
  if (maximized) window_.Maximize();
}

}  // namespace qv

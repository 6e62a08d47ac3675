#include "ui/Images.h"

#include <wx/bitmap.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/log.h>

namespace qv {
namespace {

wxBitmap EmptySquare(const wxSize& size) {
  wxImage image(size);
  image.InitAlpha();
  for (int y = 0; y < size.y; ++y) {
    for (int x = 0; x < size.x; ++x) image.SetAlpha(x, y, 0);
  }
  return wxBitmap(image);
}

}  // namespace

wxBitmapBundle LoadToolImage(const wxString& name, const wxSize& size) {
  const wxLogNull silence;
  if (wxFileName::FileExists("images/" + name + ".png")) {
    const wxBitmapBundle bundle = wxBitmapBundle::FromFiles("images", name);
    if (bundle.IsOk()) return bundle;
  }
  return wxBitmapBundle::FromBitmap(EmptySquare(size));
}

wxIconBundle LoadIcons(const wxString& path) {
  const wxLogNull silence;
  wxIconBundle icons;
  if (wxFileName::FileExists(path)) icons.AddIcon(path);
  return icons;
}

}  // namespace qv

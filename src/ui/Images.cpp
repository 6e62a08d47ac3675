#include "ui/Images.h"

#include <wx/bitmap.h>
#include <wx/filename.h>
#include <wx/image.h>
#include <wx/log.h>
#include <wx/settings.h>
#include <wx/vector.h>

namespace qv {
namespace {

const char* const kScaleSuffixes[] = {"", "@1.5x", "@2x"};

wxBitmap EmptySquare(const wxSize& size) {
  wxImage image(size);
  image.InitAlpha();
  for (int y = 0; y < size.y; ++y) {
    for (int x = 0; x < size.x; ++x) image.SetAlpha(x, y, 0);
  }
  return wxBitmap(image);
}

// One picture in all scales that are there.
wxBitmapBundle LoadScales(const wxString& folder, const wxString& name) {
  wxVector<wxBitmap> bitmaps;
  for (const char* suffix : kScaleSuffixes) {
    const wxString path = folder + '/' + name + suffix + ".png";
    if (!wxFileName::FileExists(path)) continue;
    const wxBitmap bitmap(path, wxBITMAP_TYPE_PNG);
    if (bitmap.IsOk()) bitmaps.push_back(bitmap);
  }
  return wxBitmapBundle::FromBitmaps(bitmaps);
}

// A picture in two palettes; which of them is shown is decided anew whenever it is asked for.
class TwoPalettes : public wxBitmapBundleImpl {
 public:
  TwoPalettes(const wxBitmapBundle& light, const wxBitmapBundle& dark)
      : light_(light), dark_(dark) {}

  wxSize GetDefaultSize() const override { return light_.GetDefaultSize(); }
  wxSize GetPreferredBitmapSizeAtScale(double scale) const override {
    return Shown().GetPreferredBitmapSizeAtScale(scale);
  }
  wxBitmap GetBitmap(const wxSize& size) override { return Shown().GetBitmap(size); }

 private:
  const wxBitmapBundle& Shown() const {
    return wxSystemSettings::GetAppearance().IsUsingDarkBackground() ? dark_ : light_;
  }

  wxBitmapBundle light_;
  wxBitmapBundle dark_;
};

}  // namespace

wxBitmapBundle LoadToolImage(const wxString& name, const wxSize& size) {
  const wxLogNull silence;
  const wxBitmapBundle light = LoadScales("images", name);
  if (!light.IsOk()) return wxBitmapBundle::FromBitmap(EmptySquare(size));
  const wxBitmapBundle dark = LoadScales("images/dark", name);
  if (!dark.IsOk()) return light;
  return wxBitmapBundle::FromImpl(new TwoPalettes(light, dark));
}

wxIconBundle LoadIcons(const wxString& path) {
  const wxLogNull silence;
  wxIconBundle icons;
  if (wxFileName::FileExists(path)) icons.AddIcon(path);
  return icons;
}

}  // namespace qv

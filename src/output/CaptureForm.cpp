#include "output/CaptureForm.h"

#include <wx/filename.h>
#include <wx/intl.h>

#include <limits>

namespace qv {
namespace {

constexpr char kFormatKey[] = "/CaptureImageDialog/Format";
constexpr char kSizeKey[] = "/CaptureImageDialog/Size";
constexpr char kWidthKey[] = "/CaptureImageDialog/Width";
constexpr char kHeightKey[] = "/CaptureImageDialog/Height";
constexpr long kDefaultWidth = 640;
constexpr long kDefaultHeight = 480;
constexpr long kOwnSize = 1;
constexpr int kSmallestSide = 2;

std::optional<int> ToSide(const wxString& text) {
  long value = 0;
  if (!text.ToLong(&value, 10) || value > std::numeric_limits<int>::max() ||
      value < std::numeric_limits<int>::min()) {
    return std::nullopt;
  }
  return static_cast<int>(value);
}

}  // namespace

CaptureForm::CaptureForm(const wxConfigBase& settings)
    : ownSize(settings.ReadLong(kSizeKey, 0) == kOwnSize),
      width(wxString::Format("%d", static_cast<int>(settings.ReadLong(kWidthKey, kDefaultWidth)))),
      height(
          wxString::Format("%d", static_cast<int>(settings.ReadLong(kHeightKey, kDefaultHeight)))) {
  const long stored = settings.ReadLong(kFormatKey, 0);
  if (stored >= 0 && stored < static_cast<long>(Filters().size()))
    format = static_cast<int>(stored);
}

wxArrayString CaptureForm::Filters() {
  wxArrayString filters;
  filters.Add(_("JPEG (*.jpg)|*.jpg"));
  filters.Add(_("PNG (*.png)|*.png"));
  filters.Add(_("BMP (*.bmp)|*.bmp"));
  return filters;
}

wxArrayString CaptureForm::FormatNames() {
  wxArrayString names = Filters();
  for (wxString& name : names) name = name.BeforeFirst('|');
  return names;
}

std::optional<CaptureRequest> CaptureForm::GetSettings(const wxSize& view) const {
  const wxString filter = Filters()[static_cast<std::size_t>(format)];
  if (!ownSize) return CaptureRequest{filter, view.x, view.y};
  const std::optional<int> columns = ToSide(width);
  const std::optional<int> rows = ToSide(height);
  if (!columns || !rows) return std::nullopt;
  return CaptureRequest{filter, *columns, *rows};
}

std::optional<wxString> CaptureForm::Accept(const wxSize& view, wxConfigBase& settings) const {
  const std::optional<CaptureRequest> request = GetSettings(view);
  if (!request) return _("Invalid parameters.");
  if (ownSize) {
    if (request->width < kSmallestSide || request->height < kSmallestSide) {
      return _("Width and Height must be larger than 2.");
    }
    settings.Write(kWidthKey, static_cast<long>(request->width));
    settings.Write(kHeightKey, static_cast<long>(request->height));
  }
  settings.Write(kSizeKey, ownSize ? kOwnSize : 0L);
  settings.Write(kFormatKey, static_cast<long>(format));
  return std::nullopt;
}

wxString CompleteFileName(const wxString& name, const wxString& filter) {
  if (!wxFileName(name).GetExt().empty()) return name;
  const wxString stem = name.EndsWith(".") ? name.BeforeLast('.') : name;
  return stem + filter.AfterLast('*');
}

}  // namespace qv

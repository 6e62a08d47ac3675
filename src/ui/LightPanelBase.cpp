#include "ui/LightPanelBase.h"

#include <wx/panel.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

#include <algorithm>

#include "ui/Images.h"

namespace qv {
namespace {

constexpr int kMargin = 10;
constexpr int kGap = 6;
constexpr int kSliderWidth = 120;
constexpr int kLongestNumber = 4;
constexpr int kColumns = 3;

wxStaticText* MakeHeading(wxWindow* ground, const wxString& text) {
  auto* heading = new wxStaticText(ground, wxID_ANY, text);
  heading->SetFont(heading->GetFont().Bold());
  return heading;
}

}  // namespace

_LightPanel::_LightPanel(wxWindow* parent, std::span<const Row> lights, std::span<const Row> image)
    : FloatingFrame(parent, _("Lighting/Image settings")) {
  auto* ground = new wxPanel(this);
  const int margin = FromDIP(kMargin);
  const int gap = FromDIP(kGap);
  int labelWidth = 0;
  for (const auto rows : {lights, image}) {
    for (const Row& row : rows) {
      labelWidth = std::max(labelWidth, ground->GetTextExtent(row.label).x);
    }
  }

  auto* all = new wxBoxSizer(wxVERTICAL);
  const wxSizerFlags wide = wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, margin);
  all->Add(MakeNames(ground), wxSizerFlags().Expand().Border(wxALL, margin));
  all->Add(MakeHeading(ground, _("Light Intensity:")), wide);
  all->AddSpacer(gap);
  all->Add(MakeRows(ground, lights, labelWidth), wide);
  all->AddSpacer(gap);
  useSkyColor_ = new wxCheckBox(ground, wxID_ANY, _("Use sky color for the ambient light"));
  all->Add(useSkyColor_, wxSizerFlags().Border(wxLEFT | wxRIGHT, margin));
  all->AddSpacer(margin);
  all->Add(MakeHeading(ground, _("Image:")), wide);
  all->AddSpacer(gap);
  all->Add(MakeRows(ground, image, labelWidth), wide);
  all->AddStretchSpacer();
  resetAll_ = new wxButton(ground, wxID_ANY, _("Reset All"));
  all->Add(resetAll_, wxSizerFlags().Right().Border(wxALL, margin));
  ground->SetSizer(all);

  auto* whole = new wxBoxSizer(wxVERTICAL);
  whole->Add(ground, wxSizerFlags(1).Expand());
  SetSizerAndFit(whole);
}

wxSizer* _LightPanel::MakeNames(wxWindow* ground) {
  names_ = new wxComboBox(ground, wxID_ANY);
  const auto button = [ground](const char* picture, const wxString& help) {
    auto* made = new wxBitmapButton(ground, wxID_ANY, LoadToolImage(picture, kSmallImageSize));
    made->SetToolTip(help);
    made->SetName(help);
    return made;
  };
  save_ = button("SaveSmall", _("Keep these settings under the name"));
  delete_ = button("DeleteSmall", _("Delete the settings of that name"));
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  const wxSizerFlags behind = wxSizerFlags().CentreVertical().Border(wxLEFT, FromDIP(kGap));
  row->Add(names_, wxSizerFlags(1).CentreVertical());
  row->Add(save_, behind);
  row->Add(delete_, behind);
  return row;
}

wxSizer* _LightPanel::MakeRows(wxWindow* ground, std::span<const Row> rows, int labelWidth) {
  const int gap = FromDIP(kGap);
  auto* grid = new wxFlexGridSizer(kColumns, gap / 2, gap);
  grid->AddGrowableCol(1);
  for (const Row& row : rows) {
    auto* label = new wxStaticText(ground, wxID_ANY, row.label);
    label->SetMinSize(wxSize(labelWidth, -1));
    auto* slider = new wxSlider(ground, wxID_ANY, row.position, row.minimum, row.maximum,
                                wxDefaultPosition, FromDIP(wxSize(kSliderWidth, -1)));
    auto* text = new wxTextCtrl(ground, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                wxTE_PROCESS_ENTER | wxTE_RIGHT);
    text->SetInitialSize(
        text->GetSizeFromTextSize(text->GetTextExtent(wxString('0', kLongestNumber)).x));
    grid->Add(label, wxSizerFlags().CentreVertical());
    grid->Add(slider, wxSizerFlags().Expand().CentreVertical());
    grid->Add(text, wxSizerFlags().CentreVertical());
    rows_.push_back({slider, text});
  }
  return grid;
}

}  // namespace qv

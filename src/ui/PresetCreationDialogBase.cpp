#include "ui/PresetCreationDialogBase.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

namespace qv {
namespace {

constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kNameWidth = 220;
constexpr int kLongestSpeed = 10;

wxTextCtrl* MakeNameField(wxWindow* parent) {
  return new wxTextCtrl(parent, wxID_ANY, wxString(), wxDefaultPosition,
                        parent->FromDIP(wxSize(kNameWidth, -1)));
}

// Puts `contents` above the buttons and gives the dialog their size.
void Finish(wxDialog& dialog, wxSizer* contents) {
  const int margin = dialog.FromDIP(kMargin);
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(contents, wxSizerFlags(1).Expand().Border(wxALL, margin));
  if (wxSizer* buttons = dialog.CreateButtonSizer(wxOK | wxCANCEL)) {
    all->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
  }
  dialog.SetSizerAndFit(all);
  dialog.CentreOnParent();
}

}  // namespace

_PresetCreationDialog::_PresetCreationDialog(wxWindow* parent, bool withSun)
    : wxDialog(parent, wxID_ANY, _("Create New Preset")) {
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(new wxStaticText(this, wxID_ANY, _("Preset name:")),
           wxSizerFlags().CentreVertical().Border(wxRIGHT, FromDIP(kGap)));
  name_ = MakeNameField(this);
  row->Add(name_, wxSizerFlags(1).CentreVertical());
  recordSun_ = new wxCheckBox(this, wxID_ANY, _("Record the position of the sun"));
  recordSun_->Show(withSun);
  auto* contents = new wxBoxSizer(wxVERTICAL);
  contents->Add(row, wxSizerFlags().Expand());
  contents->Add(recordSun_, wxSizerFlags().Border(wxTOP, FromDIP(kMargin)));
  Finish(*this, contents);
}

_PresetCreationDialog1::_PresetCreationDialog1(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Create New Preset")) {
  const int gap = FromDIP(kGap);
  name_ = MakeNameField(this);
  speed_ = new wxTextCtrl(this, wxID_ANY);
  speed_->SetInitialSize(
      speed_->GetSizeFromTextSize(speed_->GetTextExtent(wxString('0', kLongestSpeed)).x));
  auto* speed = new wxBoxSizer(wxHORIZONTAL);
  speed->Add(speed_, wxSizerFlags().CentreVertical().Border(wxRIGHT, gap));
  speed->Add(new wxStaticText(this, wxID_ANY, _("in/sec")), wxSizerFlags().CentreVertical());

  auto* grid = new wxFlexGridSizer(2, gap, gap);
  grid->AddGrowableCol(1);
  grid->Add(new wxStaticText(this, wxID_ANY, _("Preset name:")), wxSizerFlags().CentreVertical());
  grid->Add(name_, wxSizerFlags().Expand());
  grid->Add(new wxStaticText(this, wxID_ANY, _("Camera Speed:")), wxSizerFlags().CentreVertical());
  grid->Add(speed);
  Finish(*this, grid);
}

}  // namespace qv

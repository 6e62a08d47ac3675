#include "ui/PreferencesDialogBase.h"

#include <wx/button.h>
#include <wx/sizer.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

namespace qv {
namespace {

const wxSize kSize(359, 252);
constexpr int kMargin = 12;
constexpr int kGap = 8;

}  // namespace

_PreferencesDialog::_PreferencesDialog(wxWindow* parent, const wxArrayString& antialiasChoices)
    : wxDialog(parent, wxID_ANY, _("Preferences")) {
  const int margin = FromDIP(kMargin);
  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(MakeRenderingBox(antialiasChoices), wxSizerFlags().Expand().Border(wxALL, margin));
  all->AddStretchSpacer();
  if (wxSizer* buttons = CreateButtonSizer(wxOK | wxCANCEL)) {
    all->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
  }
  SetSizerAndFit(all);
  wxSize size = GetSize();
  size.IncTo(FromDIP(kSize));
  SetSize(size);
  CentreOnParent();
  Bind(wxEVT_BUTTON, &_PreferencesDialog::OnOk, this, wxID_OK);
}

wxSizer* _PreferencesDialog::MakeRenderingBox(const wxArrayString& antialiasChoices) {
  auto* box = new wxStaticBoxSizer(wxVERTICAL, this, _("Rendering"));
  wxWindow* inside = box->GetStaticBox();
  antialias_ = new wxChoice(inside, wxID_ANY, wxDefaultPosition, wxDefaultSize, antialiasChoices);
  showStatistics_ = new wxCheckBox(inside, wxID_ANY, _("Show statistics over the picture"));

  const int gap = FromDIP(kGap);
  auto* row = new wxBoxSizer(wxHORIZONTAL);
  row->Add(new wxStaticText(inside, wxID_ANY, _("Antialiasing:")),
           wxSizerFlags().CentreVertical().Border(wxRIGHT, gap));
  row->Add(antialias_, wxSizerFlags().CentreVertical().Border(wxRIGHT, gap));
  row->Add(new wxStaticText(inside, wxID_ANY, _("samples at each edge")),
           wxSizerFlags().CentreVertical());
  box->Add(row, wxSizerFlags().Border(wxALL, gap));
  box->Add(showStatistics_, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
  return box;
}

}  // namespace qv

#include "ui/BackgroundSettingsDialogBase.h"

#include <wx/sizer.h>
#include <wx/stattext.h>

#include "ui/CommandIds.h"

namespace qv {
namespace {

constexpr int kListWidth = 150;
constexpr int kGap = 8;
constexpr int kBorder = 12;

}  // namespace

_BackgroundSettingsDialog::_BackgroundSettingsDialog(wxWindow* parent)
    : wxDialog(parent, wxID_ANY, _("Background Settings")) {
  textureMode_ = new wxRadioButton(this, kIdTextureMode, _("Texture"), wxDefaultPosition,
                                   wxDefaultSize, wxRB_GROUP);
  simulationMode_ = new wxRadioButton(this, kIdSimulationMode, _("Simulation"));
  auto* modes = new wxBoxSizer(wxHORIZONTAL);
  modes->Add(textureMode_, wxSizerFlags().Border(wxRIGHT, FromDIP(kBorder)));
  modes->Add(simulationMode_);
  list_ = new wxChoice(this, kIdBackgroundList, wxDefaultPosition, wxSize(FromDIP(kListWidth), -1));

  auto* grid = new wxFlexGridSizer(2, FromDIP(wxSize(kBorder, kGap)));
  grid->AddGrowableCol(1);
  const wxSizerFlags middle = wxSizerFlags().CenterVertical();
  grid->Add(new wxStaticText(this, wxID_ANY, _("Mode:")), middle);
  grid->Add(modes, middle);
  grid->Add(new wxStaticText(this, wxID_ANY, _("Type:")), middle);
  grid->Add(list_, wxSizerFlags().Expand());

  auto* all = new wxBoxSizer(wxVERTICAL);
  all->Add(grid, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(kBorder)));
  if (wxSizer* buttons = CreateSeparatedButtonSizer(wxOK | wxCANCEL)) {
    all->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(kGap)));
  }
  SetSizerAndFit(all);

  Bind(wxEVT_RADIOBUTTON, &_BackgroundSettingsDialog::OnMode, this, kIdTextureMode);
  Bind(wxEVT_RADIOBUTTON, &_BackgroundSettingsDialog::OnMode, this, kIdSimulationMode);
  Bind(wxEVT_CHOICE, &_BackgroundSettingsDialog::OnType, this, kIdBackgroundList);
}

}  // namespace qv

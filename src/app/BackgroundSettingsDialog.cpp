#include "app/BackgroundSettingsDialog.h"

#include "ui/CommandIds.h"

namespace qv {

BackgroundSettingsDialog::BackgroundSettingsDialog(wxWindow* parent, BackgroundChoice& choice)
    : _BackgroundSettingsDialog(parent), choice_(choice) {
  wxRadioButton* mode = choice_.IsTexture() ? textureMode_ : simulationMode_;
  mode->SetValue(true);
  mode->SetFocus();
  FillList();
  CentreOnParent();
}

void BackgroundSettingsDialog::FillList() {
  list_->Clear();
  for (const std::wstring& entry : choice_.List()) list_->Append(wxString(entry));
  list_->SetSelection(choice_.Selection());
}

void BackgroundSettingsDialog::OnMode(wxCommandEvent& event) {
  const bool texture = event.GetId() == kIdTextureMode;
  if (texture ? choice_.ChooseTexture() : choice_.ChooseSimulation()) FillList();
}

void BackgroundSettingsDialog::OnType(wxCommandEvent& event) {
  choice_.Choose(event.GetSelection());
}

}  // namespace qv

#include "app/PreferencesDialog.h"

#include <wx/config.h>

#include "app/Preferences.h"

namespace qv {

PreferencesDialog::PreferencesDialog(wxWindow* parent)
    : _PreferencesDialog(parent, Preferences::AntialiasChoices()) {
  const Preferences stored = Preferences::Load(*wxConfigBase::Get());
  antialias_->SetSelection(stored.antialiasIndex);
  showStatistics_->SetValue(stored.showStatistics);
}

void PreferencesDialog::OnOk(wxCommandEvent&) {
  Preferences chosen;
  chosen.antialiasIndex = antialias_->GetSelection();
  chosen.showStatistics = showStatistics_->GetValue();
  chosen.Store(*wxConfigBase::Get());
  EndModal(wxID_OK);
}

}  // namespace qv

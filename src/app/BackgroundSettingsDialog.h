#pragma once

#include "app/BackgroundChoice.h"
#include "ui/BackgroundSettingsDialogBase.h"

namespace qv {

// Shows a choice of backgrounds and passes on what the user does with it.
class BackgroundSettingsDialog : public _BackgroundSettingsDialog {
 public:
  // `choice` has to outlive the dialog.
  BackgroundSettingsDialog(wxWindow* parent, BackgroundChoice& choice);

 private:
  void OnMode(wxCommandEvent& event) override;
  void OnType(wxCommandEvent& event) override;
  void FillList();

  BackgroundChoice& choice_;
};

}  // namespace qv

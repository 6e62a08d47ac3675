#pragma once

#include "ui/PreferencesDialogBase.h"

namespace qv {

// Shows the stored preferences; OK stores what was chosen.
class PreferencesDialog : public _PreferencesDialog {
 public:
  explicit PreferencesDialog(wxWindow* parent);

 private:
  void OnOk(wxCommandEvent& event) override;
};

}  // namespace qv

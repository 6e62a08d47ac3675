#pragma once

#include <wx/choice.h>
#include <wx/dialog.h>
#include <wx/radiobut.h>

namespace qv {

// Lays out the dialog in which the background is chosen, and binds its events to handlers that the
// derived dialog fills in.
class _BackgroundSettingsDialog : public wxDialog {  // NOLINT(bugprone-reserved-identifier)
 public:
  explicit _BackgroundSettingsDialog(wxWindow* parent);

 protected:
  virtual void OnMode(wxCommandEvent& event) = 0;
  virtual void OnType(wxCommandEvent& event) = 0;

  wxRadioButton* textureMode_;
  wxRadioButton* simulationMode_;
  wxChoice* list_;
};

}  // namespace qv

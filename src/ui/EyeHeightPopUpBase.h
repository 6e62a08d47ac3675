#pragma once

#include <wx/dialog.h>
#include <wx/spinbutt.h>
#include <wx/textctrl.h>

namespace qv {

// Lays out the small window for the eye height: an edit field, and a button each for more and less
// beside it.
class _EyeHeightPopUp : public wxDialog {
 public:
  explicit _EyeHeightPopUp(wxWindow* parent);

 protected:
  virtual void OnEnter(wxCommandEvent& event) = 0;
  virtual void OnUp(wxSpinEvent& event) = 0;
  virtual void OnDown(wxSpinEvent& event) = 0;
  virtual void OnActivate(wxActivateEvent& event) = 0;
  virtual void OnCharHook(wxKeyEvent& event) = 0;

  wxTextCtrl* height_;
  wxSpinButton* spin_;
};

}  // namespace qv

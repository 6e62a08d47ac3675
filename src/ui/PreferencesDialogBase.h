#pragma once

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/dialog.h>

namespace qv {

// Lays out the dialog for what belongs to the user and not to a model.
class _PreferencesDialog  // NOLINT(bugprone-reserved-identifier): layout layers carry an underscore
    : public wxDialog {
 public:
  _PreferencesDialog(wxWindow* parent, const wxArrayString& antialiasChoices);

 protected:
  virtual void OnOk(wxCommandEvent& event) = 0;

  wxChoice* antialias_;
  wxCheckBox* showStatistics_;

 private:
  wxSizer* MakeRenderingBox(const wxArrayString& antialiasChoices);
};

}  // namespace qv

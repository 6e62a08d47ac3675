#pragma once

#include <wx/checkbox.h>
#include <wx/dialog.h>
#include <wx/textctrl.h>

namespace qv {

// Lays out the dialog that asks for the name of a preset, and, with the check box, whether it
// records the position of the sun.
class _PresetCreationDialog : public wxDialog {  // NOLINT(bugprone-reserved-identifier)
 public:
  _PresetCreationDialog(wxWindow* parent, bool withSun);

 protected:
  wxTextCtrl* name_;
  wxCheckBox* recordSun_;  // hidden where it is not asked for
};

// Lays out the dialog that asks for the name of a keyframe animation and the speed of its camera.
class _PresetCreationDialog1 : public wxDialog {  // NOLINT(bugprone-reserved-identifier)
 public:
  explicit _PresetCreationDialog1(wxWindow* parent);

 protected:
  wxTextCtrl* name_;
  wxTextCtrl* speed_;
};

}  // namespace qv

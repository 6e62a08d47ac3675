#pragma once

#include <wx/confbase.h>

#include <optional>

#include "panels/ShowDialog.h"
#include "presets/PresetsFrame.h"
#include "ui/PresetCreationDialogBase.h"

namespace qv {

// Asks for the name of a preset. An empty name keeps it open.
class PresetCreationDialog : public _PresetCreationDialog {
 public:
  // `recordSun`: whether the position of the sun is recorded; not asked without it.
  PresetCreationDialog(wxWindow* parent, const wxString& proposal, std::optional<bool> recordSun);

  // What was entered when OK was accepted.
  const PresetsPrompts::Name& Answer() const { return answer_; }

 private:
  bool Validate() override;

  PresetsPrompts::Name answer_;
};

// Asks for the name of a keyframe animation and the speed of its camera. What makes no sense keeps
// it open, with a message.
class PresetCreationDialog1 : public _PresetCreationDialog1 {
 public:
  // `settings` has to outlive the dialog.
  PresetCreationDialog1(wxWindow* parent, const wxString& proposal, wxConfigBase& settings,
                        ShowDialog showDialog);

  const PresetsPrompts::Path& Answer() const { return answer_; }

 private:
  bool Validate() override;

  wxConfigBase& settings_;
  const ShowDialog showDialog_;
  PresetsPrompts::Path answer_;
};

}  // namespace qv

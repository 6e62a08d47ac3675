#include "panels/PresetCreationDialog.h"

#include <wx/msgdlg.h>

#include <utility>

#include "presets/PresetDialogRules.h"

namespace qv {
namespace {

// The proposal is there to be typed over.
void Propose(wxTextCtrl& field, const wxString& proposal) {
  field.ChangeValue(proposal);
  field.SetFocus();
  field.SelectAll();
}

}  // namespace

PresetCreationDialog::PresetCreationDialog(wxWindow* parent, const wxString& proposal,
                                           std::optional<bool> recordSun)
    : _PresetCreationDialog(parent, recordSun.has_value()) {
  recordSun_->SetValue(recordSun.value_or(false));
  Propose(*name_, proposal);
}

bool PresetCreationDialog::Validate() {
  if (name_->IsEmpty()) {
    name_->SetFocus();
    return false;
  }
  answer_ = {name_->GetValue(), recordSun_->GetValue()};
  return true;
}

PresetCreationDialog1::PresetCreationDialog1(wxWindow* parent, const wxString& proposal,
                                             wxConfigBase& settings, ShowDialog showDialog)
    : _PresetCreationDialog1(parent), settings_(settings), showDialog_(std::move(showDialog)) {
  speed_->ChangeValue(ProposedCameraSpeed(settings_));
  Propose(*name_, proposal);
}

bool PresetCreationDialog1::Validate() {
  EntryFault fault;
  const auto entry = CheckPathEntry(settings_, name_->GetValue(), speed_->GetValue(), fault);
  if (entry) {
    answer_ = *entry;
    return true;
  }
  wxMessageDialog message(this, fault.message, wxMessageBoxCaptionStr, wxOK);
  showDialog_(message);
  (fault.inName ? name_ : speed_)->SetFocus();
  return false;
}

}  // namespace qv

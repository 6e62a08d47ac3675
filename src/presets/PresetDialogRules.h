#pragma once

#include <wx/string.h>

#include <optional>

#include "presets/PresetsFrame.h"

class wxConfigBase;

namespace qv {

// What the dialogs that name presets accept.

// The speed as it is proposed in the dialog of a keyframe animation.
wxString ProposedCameraSpeed(const wxConfigBase& settings);

// Why an entry cannot be taken, and where the user has to mend it.
struct EntryFault {
  wxString message;
  bool inName = false;  // otherwise in the speed
};

// What was entered there: nothing, with the fault, if it cannot be taken; otherwise the speed is
// kept for the next proposal.
std::optional<PresetsPrompts::Path> CheckPathEntry(wxConfigBase& settings, const wxString& name,
                                                   const wxString& speed, EntryFault& fault);

// Whether recordings take the position of the sun along, as the user chose last.
bool ProposedRecordSun(const wxConfigBase& settings);
void KeepRecordSun(wxConfigBase& settings, bool record);

}  // namespace qv

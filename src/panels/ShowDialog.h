#pragma once

#include <wx/dialog.h>

#include <functional>

namespace qv {

// Shows a modal dialog and gives its result. The owner of all windows does this, who knows what
// becomes of a dialog when the program is closed meanwhile.
using ShowDialog = std::function<int(wxDialog& dialog)>;

}  // namespace qv

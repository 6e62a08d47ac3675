#include "app/LogPanel.h"

#include <wx/intl.h>

namespace qv {
namespace {

const wxSize kSize(500, 300);

}  // namespace

LogPanel::LogPanel(wxWindow* parent) : FloatingFrame(parent, _("Log")) {
  SetSize(FromDIP(kSize));
}

}  // namespace qv

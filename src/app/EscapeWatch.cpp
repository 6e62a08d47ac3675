#include "app/EscapeWatch.h"

#include <wx/event.h>

namespace qv {

EscapeWatch::EscapeWatch() {
  wxEvtHandler::AddFilter(this);
}

EscapeWatch::~EscapeWatch() {
  wxEvtHandler::RemoveFilter(this);
}

int EscapeWatch::FilterEvent(wxEvent& event) {
  const wxEventType type = event.GetEventType();
  if ((type == wxEVT_KEY_DOWN || type == wxEVT_CHAR_HOOK) &&
      static_cast<const wxKeyEvent&>(event).GetKeyCode() == WXK_ESCAPE) {
    pressed_ = true;
  }
  return Event_Skip;
}

}  // namespace qv

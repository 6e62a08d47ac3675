#pragma once

#include <wx/event.h>

#include "navigation/NavigationInput.h"

namespace qv {

// Keeps what is held from the events of the view, so that nothing stays held which was let go
// elsewhere: keys are gone with the focus and with a menu that opens, buttons with the capture of
// the mouse.
class HeldInput {
 public:
  // Both return false for keys that navigation does not know.
  bool KeyDown(const wxKeyEvent& event) { return Key(event, true); }
  bool KeyUp(const wxKeyEvent& event) { return Key(event, false); }
  // Any event of the mouse: pointer, buttons and modifiers.
  void Mouse(const wxMouseEvent& event);
  void ForgetKeys();
  void ForgetButtons() { held_.left = held_.middle = held_.right = false; }

  // `captured`: the view holds the mouse; without it no button counts.
  NavigationInput Kept(bool captured) const;
  // The same, with the keys as the system knows them where it tells, and none of those that move
  // unless the frame is the active window.
  NavigationInput Now(bool active, bool captured) const;

 private:
  bool Key(const wxKeyEvent& event, bool down);

  NavigationInput held_;
};

}  // namespace qv

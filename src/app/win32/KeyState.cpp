#include "app/KeyState.h"

#include <wx/utils.h>

namespace qv {

void AskForKeys(NavigationInput& held) {
  const auto down = [](int key) { return wxGetKeyState(static_cast<wxKeyCode>(key)); };
  held.shift = down(WXK_SHIFT);
  held.control = down(WXK_CONTROL);
  held.forward = down('W');
  held.backward = down('S');
  held.leftward = down('A');
  held.rightward = down('D');
  held.rise = down(WXK_SPACE);
  held.redraw = down(WXK_F5);
}

}  // namespace qv

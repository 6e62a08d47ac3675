#include "app/HeldInput.h"

#include "app/KeyState.h"

namespace qv {
namespace {

void DropKeys(NavigationInput& held) {
  held.shift = held.control = false;
  held.forward = held.backward = held.leftward = held.rightward = held.rise = false;
  held.redraw = false;
}

}  // namespace

bool HeldInput::Key(const wxKeyEvent& event, bool down) {
  // What the event tells of a modifier may be its state before the event.
  const int key = event.GetKeyCode();
  held_.shift = key == WXK_SHIFT ? down : event.ShiftDown();
  held_.control = key == WXK_CONTROL ? down : event.ControlDown();
  switch (key) {
    case 'W':
      held_.forward = down;
      return true;
    case 'S':
      held_.backward = down;
      return true;
    case 'A':
      held_.leftward = down;
      return true;
    case 'D':
      held_.rightward = down;
      return true;
    case WXK_SPACE:
      held_.rise = down;
      return true;
    case WXK_F5:
      held_.redraw = down;
      return true;
    default:
      return false;
  }
}

void HeldInput::Mouse(const wxMouseEvent& event) {
  held_.x = event.GetX();
  held_.y = event.GetY();
  held_.shift = event.ShiftDown();
  held_.control = event.ControlDown();
  // A button that went down elsewhere is not held here, and one whose release was lost no more.
  held_.left = event.LeftDown() || event.LeftDClick() || (held_.left && event.LeftIsDown());
  held_.middle =
      event.MiddleDown() || event.MiddleDClick() || (held_.middle && event.MiddleIsDown());
  held_.right = event.RightDown() || event.RightDClick() || (held_.right && event.RightIsDown());
}

void HeldInput::ForgetKeys() {
  DropKeys(held_);
}

NavigationInput HeldInput::Kept(bool captured) const {
  NavigationInput kept = held_;
  if (!captured) kept.left = kept.middle = kept.right = false;
  return kept;
}

NavigationInput HeldInput::Now(bool active, bool captured) const {
  NavigationInput now = Kept(captured);
  AskForKeys(now);
  if (active) return now;
  const bool shift = now.shift, control = now.control;
  DropKeys(now);
  now.shift = shift;
  now.control = control;
  return now;
}

}  // namespace qv

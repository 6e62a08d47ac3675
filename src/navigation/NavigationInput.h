#pragma once

namespace qv {

// What is held down at one moment. Buttons count only while the view holds the mouse, keys only
// while the frame is the active window: whoever fills this in leaves the others out.
struct NavigationInput {
  bool left = false, middle = false, right = false;  // mouse buttons
  bool shift = false, control = false;
  bool forward = false, backward = false;    // W, S
  bool leftward = false, rightward = false;  // A, D
  bool rise = false;                         // Space
  bool redraw = false;                       // F5
  int x = 0, y = 0;  // the pointer in pixels of the view, row 0 at the top; may lie outside of it

  bool AnyButton() const { return left || middle || right; }
  // Whether anything is held that can move the camera.
  bool Moves() const { return AnyButton() || forward || backward || leftward || rightward || rise; }
};

}  // namespace qv

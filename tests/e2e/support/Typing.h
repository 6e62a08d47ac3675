#pragma once

#include <string>

namespace qv::e2e {

enum class Key { kEnter, kEscape, kEnd, kTab, kSpace, kRight, kUp };

// Keys of a real keyboard, for the window that has the focus.
void PressKey(Key key);
// One key while Ctrl is held: an ASCII letter or mark.
void PressWithControl(char letter);
// From the button "OK" of a dialog, which has the keyboard at first, to the dialog's first control.
void GoToFirstControl();
// ASCII text, letter by letter.
void TypeText(const std::string& text);

}  // namespace qv::e2e

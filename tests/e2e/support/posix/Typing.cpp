#include "e2e/support/Typing.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <memory>

namespace qv::e2e {
namespace {

constexpr unsigned long kMilliseconds = 8;

struct CloseDisplay {
  void operator()(::Display* display) const { XCloseDisplay(display); }
};
using Connection = std::unique_ptr<::Display, CloseDisplay>;

KeySym SymbolOf(Key key) {
  switch (key) {
    case Key::kEnter:
      return XK_Return;
    case Key::kRight:
      return XK_Right;
    case Key::kUp:
      return XK_Up;
    case Key::kEscape:
      return XK_Escape;
    case Key::kEnd:
      return XK_End;
    case Key::kTab:
      return XK_Tab;
    case Key::kSpace:
      return XK_space;
  }
  return NoSymbol;
}

void Send(::Display* display, KeySym symbol, bool down) {
  XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), down ? True : False, kMilliseconds);
}

// Presses and lets go a key with what has to be held for its symbol.
void Press(::Display* display, KeySym symbol) {
  const KeyCode code = XKeysymToKeycode(display, symbol);
  int count = 0;
  KeySym* symbols = XGetKeyboardMapping(display, code, 1, &count);
  const bool shifted = symbols != nullptr && count > 1 && symbols[0] != symbol;
  if (symbols) XFree(symbols);
  if (shifted) Send(display, XK_Shift_L, true);
  Send(display, symbol, true);
  Send(display, symbol, false);
  if (shifted) Send(display, XK_Shift_L, false);
  XSync(display, False);
}

}  // namespace

void PressKey(Key key) {
  const Connection display(XOpenDisplay(nullptr));
  if (display) Press(display.get(), SymbolOf(key));
}

// The symbols of ASCII are its own numbers.
void PressWithControl(char letter) {
  const Connection display(XOpenDisplay(nullptr));
  if (!display) return;
  Send(display.get(), XK_Control_L, true);
  Press(display.get(), static_cast<KeySym>(letter));
  Send(display.get(), XK_Control_L, false);
  XSync(display.get(), False);
}

// The button is the last control.
void GoToFirstControl() {
  PressKey(Key::kTab);
}

void TypeText(const std::string& text) {
  const Connection display(XOpenDisplay(nullptr));
  if (!display) return;
  for (const char letter : text) Press(display.get(), static_cast<KeySym>(letter));
}

}  // namespace qv::e2e

#include "e2e/support/Typing.h"

#include <windows.h>

#include <chrono>
#include <thread>

namespace qv::e2e {
namespace {

void Send(WORD key, WORD scan, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key;
  input.ki.wScan = scan;
  input.ki.dwFlags = flags;
  SendInput(1, &input, sizeof(input));
  std::this_thread::sleep_for(std::chrono::milliseconds(8));
}

void Press(WORD key) {
  Send(key, 0, 0);
  Send(key, 0, KEYEVENTF_KEYUP);
}

WORD CodeOf(Key key) {
  switch (key) {
    case Key::kEnter:
      return VK_RETURN;
    case Key::kRight:
      return VK_RIGHT;
    case Key::kUp:
      return VK_UP;
    case Key::kEscape:
      return VK_ESCAPE;
    case Key::kEnd:
      return VK_END;
    case Key::kTab:
      return VK_TAB;
    case Key::kSpace:
      return VK_SPACE;
  }
  return 0;
}

}  // namespace

void PressKey(Key key) {
  Press(CodeOf(key));
}

void PressWithControl(char letter) {
  Send(VK_CONTROL, 0, 0);
  Press(static_cast<WORD>(VkKeyScanA(letter) & 0xFF));
  Send(VK_CONTROL, 0, KEYEVENTF_KEYUP);
}

// Only "Cancel" comes after the button.
void GoToFirstControl() {
  PressKey(Key::kTab);
  PressKey(Key::kTab);
}

void TypeText(const std::string& text) {
  for (const char letter : text) {
    Send(0, static_cast<WORD>(letter), KEYEVENTF_UNICODE);
    Send(0, static_cast<WORD>(letter), KEYEVENTF_UNICODE | KEYEVENTF_KEYUP);
  }
}

}  // namespace qv::e2e

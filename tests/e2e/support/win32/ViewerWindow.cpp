#include "e2e/support/ViewerWindow.h"

#include <windows.h>

#include <cstddef>
#include <cstdlib>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "e2e/support/Typing.h"

namespace qv::e2e {
namespace {

// A window that is looked for among others.
struct Wanted {
  std::wstring title;
  HWND found = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM context) {
  auto& wanted = *reinterpret_cast<Wanted*>(context);
  wchar_t title[64];
  const bool matches = IsWindowVisible(window) != 0 && GetWindowTextW(window, title, 64) > 0 &&
                       wanted.title == title;
  if (matches) wanted.found = window;
  return matches ? FALSE : TRUE;
}

BOOL CALLBACK CloseMessage(HWND window, LPARAM process) {
  wchar_t name[16];
  DWORD owner = 0;
  GetWindowThreadProcessId(window, &owner);
  if (owner == static_cast<DWORD>(process) && IsWindowVisible(window) &&
      GetClassNameW(window, name, 16) > 0 && std::wstring_view(name) == L"#32770") {
    PostMessageW(window, WM_CLOSE, 0, 0);
  }
  return TRUE;
}

// What is inside the frame's border, on the screen.
RECT Inside(HWND window) {
  RECT inside{};
  GetClientRect(window, &inside);
  MapWindowPoints(window, nullptr, reinterpret_cast<POINT*>(&inside), 2);
  return inside;
}

// Copies a part of the screen into blue, green, red, 0 bytes, top row first.
std::vector<std::uint32_t> ScreenPixels(const RECT& part, int width, int height) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  info.bmiHeader.biCompression = BI_RGB;
  const HDC screen = GetDC(nullptr);
  const HDC memory = CreateCompatibleDC(screen);
  void* bits = nullptr;
  const HBITMAP bitmap = CreateDIBSection(screen, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
  std::vector<std::uint32_t> pixels;
  if (bitmap != nullptr) {
    const HGDIOBJ before = SelectObject(memory, bitmap);
    BitBlt(memory, 0, 0, width, height, screen, part.left, part.top, SRCCOPY);
    GdiFlush();
    const auto* first = static_cast<const std::uint32_t*>(bits);
    pixels.assign(first, first + static_cast<std::ptrdiff_t>(width) * height);
    SelectObject(memory, before);
    DeleteObject(bitmap);
  }
  DeleteDC(memory);
  ReleaseDC(nullptr, screen);
  return pixels;
}

// Waits until the window has taken what was sent before. A key or button may then follow: Wine
// compares its keys with those of the X server when the pointer comes into a window, and lets go
// what is held by SendInput alone; it tells a process that asks for a key for a twentieth of a
// second what it told before; and the pointer is for a moment where it was.
void LetInputArrive(HWND window) {
  DWORD_PTR ignored = 0;
  SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, 20000, &ignored);
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
}

// Waits until the window's thread is with a menu, or no more.
bool AwaitMenu(HWND window, bool open) {
  const DWORD thread = GetWindowThreadProcessId(window, nullptr);
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (std::chrono::steady_clock::now() < end) {
    GUITHREADINFO state{};
    state.cbSize = sizeof(state);
    const bool told = GetGUIThreadInfo(thread, &state) != 0;
    if (told && ((state.flags & GUI_INMENUMODE) != 0) == open) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
  return false;
}

// A tool under the pointer looks different.
void TakePointerAway(HWND window) {
  const RECT inside = Inside(window);
  SetCursorPos((inside.left + inside.right) / 2, (inside.top + inside.bottom) / 2);
}

void SendMouse(DWORD what, int data = 0) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = what;
  input.mi.mouseData = static_cast<DWORD>(data);
  SendInput(1, &input, sizeof(input));
}

void SendKey(HeldKey key, DWORD flags) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = static_cast<unsigned char>(key);
  if (key == kEnter) input.ki.wVk = VK_RETURN;
  if (key == kShift) input.ki.wVk = VK_SHIFT;
  if (key == kControl) input.ki.wVk = VK_CONTROL;
  input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(input.ki.wVk, MAPVK_VK_TO_VSC));
  input.ki.dwFlags = flags;
  SendInput(1, &input, sizeof(input));
}

}  // namespace

struct ViewerWindow::Native {
  HWND window = nullptr;
};

ViewerWindow::ViewerWindow(std::unique_ptr<Native> native) : native_(std::move(native)) {}

ViewerWindow::~ViewerWindow() = default;

std::unique_ptr<ViewerWindow> ViewerWindow::Find(std::chrono::milliseconds timeout,
                                                 const std::string& title) {
  Wanted wanted{{title.begin(), title.end()}};
  auto native = std::make_unique<Native>();
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (true) {
    EnumWindows(Look, reinterpret_cast<LPARAM>(&wanted));
    native->window = wanted.found;
    if (native->window) {
      TakePointerAway(native->window);
      return std::unique_ptr<ViewerWindow>(new ViewerWindow(std::move(native)));
    }
    if (std::chrono::steady_clock::now() >= end) return nullptr;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

bool ViewerWindow::Exists(const std::string& title) {
  Wanted wanted{{title.begin(), title.end()}};
  EnumWindows(Look, reinterpret_cast<LPARAM>(&wanted));
  return wanted.found != nullptr;
}

void ViewerWindow::DismissMessages(std::uint32_t process) {
  EnumWindows(CloseMessage, static_cast<LPARAM>(process));
}

Screenshot ViewerWindow::Shoot() const {
  const RECT inside = Inside(native_->window);
  Screenshot shot{inside.right - inside.left, inside.bottom - inside.top, {}};
  if (shot.width <= 0 || shot.height <= 0) return {};
  const std::vector<std::uint32_t> pixels = ScreenPixels(inside, shot.width, shot.height);
  if (pixels.empty()) return {};
  shot.pixels.reserve(pixels.size());
  for (const std::uint32_t pixel : pixels) {
    shot.pixels.push_back({static_cast<int>(pixel >> 16 & 255), static_cast<int>(pixel >> 8 & 255),
                           static_cast<int>(pixel & 255)});
  }
  return shot;
}

int ViewerWindow::MenuRows() {
  return 0;
}

int ViewerWindow::ToolRows() {
  return 32;
}

void ViewerWindow::Resize(int width, int height) {
  RECT frame{};
  GetWindowRect(native_->window, &frame);
  const RECT inside = Inside(native_->window);
  const int besides = (frame.right - frame.left) - (inside.right - inside.left);
  const int above = (frame.bottom - frame.top) - (inside.bottom - inside.top);
  SetWindowPos(native_->window, nullptr, 10, 30, width + besides, height + above,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

bool ViewerWindow::ResizesAreDrag() {
  return false;
}

void ViewerWindow::Maximize(bool on) {
  PostMessageW(native_->window, WM_SYSCOMMAND, on ? SC_MAXIMIZE : SC_RESTORE, 0);
}

// The button of the title bar is dead while a dialog is open, but any program may send what it
// comes to.
void ViewerWindow::Close() {
  if (IsWindowEnabled(native_->window) != 0) {
    PostMessageW(native_->window, WM_SYSCOMMAND, SC_CLOSE, 0);
  } else {
    PostMessageW(native_->window, WM_CLOSE, 0, 0);
  }
}

bool ViewerWindow::DialogsHoldClose() {
  return false;
}

void ViewerWindow::Click(int x, int y) {
  SetForegroundWindow(native_->window);
  MovePointer(x, y);
  Press(Button::kLeft);
  Release(Button::kLeft);
  LetInputArrive(native_->window);
  TakePointerAway(native_->window);
}

// As Alt and the letter of "Window" do, the only title with one: a click would move the pointer.
bool ViewerWindow::OpenMenu() {
  PostMessageW(native_->window, WM_SYSCOMMAND, SC_KEYMENU, 'w');
  return AwaitMenu(native_->window, true);
}

// The first Escape leaves the menu bar waiting for a letter.
void ViewerWindow::CloseMenu() {
  PressKey(Key::kEscape);
  LetInputArrive(native_->window);
  PressKey(Key::kEscape);
  AwaitMenu(native_->window, false);
}

void ViewerWindow::MovePointer(int x, int y) {
  const RECT inside = Inside(native_->window);
  SetCursorPos(inside.left + x, inside.top + y);
}

void ViewerWindow::Press(Button button) {
  LetInputArrive(native_->window);
  SendMouse(button == Button::kLeft     ? MOUSEEVENTF_LEFTDOWN
            : button == Button::kMiddle ? MOUSEEVENTF_MIDDLEDOWN
                                        : MOUSEEVENTF_RIGHTDOWN);
}

void ViewerWindow::Release(Button button) {
  LetInputArrive(native_->window);
  SendMouse(button == Button::kLeft     ? MOUSEEVENTF_LEFTUP
            : button == Button::kMiddle ? MOUSEEVENTF_MIDDLEUP
                                        : MOUSEEVENTF_RIGHTUP);
}

void ViewerWindow::TurnWheel(int notches) {
  LetInputArrive(native_->window);
  const int direction = notches > 0 ? WHEEL_DELTA : -WHEEL_DELTA;
  for (int i = 0; i < std::abs(notches); ++i) SendMouse(MOUSEEVENTF_WHEEL, direction);
}

void ViewerWindow::KeyDown(HeldKey key) {
  LetInputArrive(native_->window);
  SendKey(key, 0);
}

void ViewerWindow::KeyUp(HeldKey key) {
  SendKey(key, KEYEVENTF_KEYUP);
}

void ViewerWindow::LoseFocus() {
  SetForegroundWindow(GetDesktopWindow());
}

void ViewerWindow::ClickOk() {
  Wanted ok{L"OK"};
  EnumChildWindows(native_->window, Look, reinterpret_cast<LPARAM>(&ok));
  if (!ok.found) return;
  const RECT button = Inside(ok.found);
  const RECT inside = Inside(native_->window);
  Click((button.left + button.right) / 2 - inside.left,
        (button.top + button.bottom) / 2 - inside.top);
}

bool ViewerWindow::IsActive() const {
  return GetForegroundWindow() == native_->window;
}

Area ViewerWindow::Place() const {
  const RECT inside = Inside(native_->window);
  return {inside.left, inside.top, inside.right - inside.left, inside.bottom - inside.top};
}

}  // namespace qv::e2e

#include "e2e/support/ViewerWindow.h"

#include <windows.h>

#include <cstddef>
#include <string>
#include <thread>
#include <utility>

namespace qv::e2e {
namespace {

struct Sought {
  std::wstring title;
  HWND window = nullptr;
};

BOOL CALLBACK Look(HWND window, LPARAM context) {
  auto* sought = reinterpret_cast<Sought*>(context);
  wchar_t title[64];
  const bool matches = IsWindowVisible(window) != 0 && GetWindowTextW(window, title, 64) > 0 &&
                       title == sought->title;
  if (matches) sought->window = window;
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

// A tool under the pointer looks different.
void TakePointerAway(HWND window) {
  const RECT inside = Inside(window);
  SetCursorPos((inside.left + inside.right) / 2, (inside.top + inside.bottom) / 2);
}

void PressButton(DWORD what) {
  INPUT input{};
  input.type = INPUT_MOUSE;
  input.mi.dwFlags = what;
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
  auto native = std::make_unique<Native>();
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (true) {
    Sought sought{std::wstring(title.begin(), title.end())};
    EnumWindows(Look, reinterpret_cast<LPARAM>(&sought));
    native->window = sought.window;
    if (native->window) {
      TakePointerAway(native->window);
      return std::unique_ptr<ViewerWindow>(new ViewerWindow(std::move(native)));
    }
    if (std::chrono::steady_clock::now() >= end) return nullptr;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

bool ViewerWindow::Exists() {
  HWND window = nullptr;
  EnumWindows(Look, reinterpret_cast<LPARAM>(&window));
  return window != nullptr;
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

void ViewerWindow::Resize(int width, int height) {
  RECT frame{};
  GetWindowRect(native_->window, &frame);
  const RECT inside = Inside(native_->window);
  const int besides = (frame.right - frame.left) - (inside.right - inside.left);
  const int above = (frame.bottom - frame.top) - (inside.bottom - inside.top);
  SetWindowPos(native_->window, nullptr, 10, 30, width + besides, height + above,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void ViewerWindow::Close() {
  PostMessageW(native_->window, WM_SYSCOMMAND, SC_CLOSE, 0);
}

void ViewerWindow::Click(int x, int y) {
  const RECT inside = Inside(native_->window);
  SetForegroundWindow(native_->window);
  SetCursorPos(inside.left + x, inside.top + y);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  PressButton(MOUSEEVENTF_LEFTDOWN);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  PressButton(MOUSEEVENTF_LEFTUP);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  TakePointerAway(native_->window);
}

bool ViewerWindow::IsActive() const {
  return GetForegroundWindow() == native_->window;
}

void ViewerWindow::Press(Key key) {
  INPUT input{};
  input.type = INPUT_KEYBOARD;
  input.ki.wVk = key == Key::kRight ? VK_RIGHT : VK_RETURN;
  SendInput(1, &input, sizeof(input));
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  input.ki.dwFlags = KEYEVENTF_KEYUP;
  SendInput(1, &input, sizeof(input));
}

}  // namespace qv::e2e

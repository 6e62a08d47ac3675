#include "e2e/support/ViewerWindow.h"

#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <bit>
#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

#include "e2e/support/Typing.h"

namespace qv::e2e {
namespace {

// A point of the first menu.
constexpr int kMenuX = 20, kMenuY = 12;

int IgnoreError(::Display*, XErrorEvent*) {
  return 0;
}

// The windows that a property of the screen names.
std::vector<::Window> WindowsIn(::Display* display, const char* property) {
  const Atom list = XInternAtom(display, property, False);
  Atom type = None;
  int format = 0;
  unsigned long count = 0, rest = 0;
  unsigned char* value = nullptr;
  XGetWindowProperty(display, DefaultRootWindow(display), list, 0, 64, False, XA_WINDOW, &type,
                     &format, &count, &rest, &value);
  std::vector<::Window> windows;
  if (value) {
    const auto* words = reinterpret_cast<const unsigned long*>(value);
    windows.assign(words, words + count);
    XFree(value);
  }
  return windows;
}

bool HasTitle(::Display* display, ::Window window, const std::string& title) {
  char* name = nullptr;
  XWindowAttributes attributes;
  const bool matches = XFetchName(display, window, &name) && title == name &&
                       XGetWindowAttributes(display, window, &attributes) &&
                       attributes.map_state == IsViewable;
  if (name) XFree(name);
  return matches;
}

::Window Look(::Display* display, const std::string& title) {
  for (const ::Window window : WindowsIn(display, "_NET_CLIENT_LIST")) {
    if (HasTitle(display, window, title)) return window;
  }
  return None;
}

// Whether the screen has 8 bits a channel.
bool HasBytes(const XImage& image) {
  return std::popcount(image.red_mask) == 8 && std::popcount(image.green_mask) == 8 &&
         std::popcount(image.blue_mask) == 8;
}

int Channel(unsigned long pixel, unsigned long mask) {
  return static_cast<int>((pixel & mask) >> std::countr_zero(mask));
}

// Buttons of the pointer that turn the wheel.
constexpr unsigned kWheelUp = 4;
constexpr unsigned kWheelDown = 5;

void FakeButton(::Display* display, unsigned button, bool down) {
  XTestFakeButtonEvent(display, button, down ? True : False, 0);
  XFlush(display);
}

void FakeKey(::Display* display, HeldKey key, bool down) {
  KeySym symbol = static_cast<unsigned char>(key);
  if (key == kEnter) symbol = XK_Return;
  if (key == kShift) symbol = XK_Shift_L;
  if (key == kControl) symbol = XK_Control_L;
  XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), down ? True : False, 0);
  XFlush(display);
}

}  // namespace

struct ViewerWindow::Native {
  ~Native() {
    if (display) XCloseDisplay(display);
  }

  ::Display* display = nullptr;
  ::Window window = None;
};

ViewerWindow::ViewerWindow(std::unique_ptr<Native> native) : native_(std::move(native)) {}

ViewerWindow::~ViewerWindow() = default;

std::unique_ptr<ViewerWindow> ViewerWindow::Find(std::chrono::milliseconds timeout,
                                                 const std::string& title) {
  // A window may go at any moment.
  XSetErrorHandler(&IgnoreError);
  auto native = std::make_unique<Native>();
  native->display = XOpenDisplay(nullptr);
  if (!native->display) return nullptr;
  const auto end = std::chrono::steady_clock::now() + timeout;
  while (true) {
    native->window = Look(native->display, title);
    if (native->window) return std::unique_ptr<ViewerWindow>(new ViewerWindow(std::move(native)));
    if (std::chrono::steady_clock::now() >= end) return nullptr;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
  }
}

bool ViewerWindow::Exists(const std::string& title) {
  return Find(std::chrono::milliseconds(0), title) != nullptr;
}

void ViewerWindow::DismissMessages(std::uint32_t) {}

Screenshot ViewerWindow::Shoot() const {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(native_->display, native_->window, &attributes)) return {};
  XImage* image = XGetImage(native_->display, native_->window, 0, 0, attributes.width,
                            attributes.height, AllPlanes, ZPixmap);
  if (!image) return {};
  if (!HasBytes(*image)) {
    XDestroyImage(image);
    return {};
  }
  Screenshot shot{attributes.width, attributes.height, {}};
  shot.pixels.reserve(static_cast<std::size_t>(shot.width) * static_cast<std::size_t>(shot.height));
  for (int y = 0; y < shot.height; ++y) {
    for (int x = 0; x < shot.width; ++x) {
      const unsigned long pixel = XGetPixel(image, x, y);
      shot.pixels.push_back({Channel(pixel, image->red_mask), Channel(pixel, image->green_mask),
                             Channel(pixel, image->blue_mask)});
    }
  }
  XDestroyImage(image);
  return shot;
}

int ViewerWindow::MenuRows() {
  return 26;
}

int ViewerWindow::ToolRows() {
  return 40;
}

void ViewerWindow::Resize(int width, int height) {
  XMoveResizeWindow(native_->display, native_->window, 10, 30, width, height);
  XFlush(native_->display);
}

bool ViewerWindow::ResizesAreDrag() {
  return true;
}

void ViewerWindow::Maximize(bool on) {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = native_->window;
  event.xclient.message_type = XInternAtom(native_->display, "_NET_WM_STATE", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = on ? 1 : 0;
  const char* const kSides[] = {"_NET_WM_STATE_MAXIMIZED_HORZ", "_NET_WM_STATE_MAXIMIZED_VERT"};
  for (int i = 0; i < 2; ++i) {
    event.xclient.data.l[1 + i] =
        static_cast<long>(XInternAtom(native_->display, kSides[i], False));
  }
  XSendEvent(native_->display, DefaultRootWindow(native_->display), False,
             SubstructureNotifyMask | SubstructureRedirectMask, &event);
  XFlush(native_->display);
}

void ViewerWindow::Close() {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = native_->window;
  event.xclient.message_type = XInternAtom(native_->display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] =
      static_cast<long>(XInternAtom(native_->display, "WM_DELETE_WINDOW", False));
  XSendEvent(native_->display, native_->window, False, NoEventMask, &event);
  XFlush(native_->display);
}

bool ViewerWindow::DialogsHoldClose() {
  return true;
}

void ViewerWindow::Click(int x, int y) {
  MovePointer(x, y);
  XTestFakeButtonEvent(native_->display, 1, True, 50);
  XTestFakeButtonEvent(native_->display, 1, False, 50);
  XFlush(native_->display);
}

bool ViewerWindow::OpenMenu() {
  Click(kMenuX, kMenuY);
  return true;
}

void ViewerWindow::CloseMenu() {
  PressKey(Key::kEscape);
}

void ViewerWindow::MovePointer(int x, int y) {
  int rootX = 0, rootY = 0;
  ::Window child = None;
  XTranslateCoordinates(native_->display, native_->window, DefaultRootWindow(native_->display), x,
                        y, &rootX, &rootY, &child);
  XTestFakeMotionEvent(native_->display, -1, rootX, rootY, 0);
  XFlush(native_->display);
}

void ViewerWindow::Press(Button button) {
  FakeButton(native_->display, static_cast<unsigned>(button), true);
}

void ViewerWindow::Release(Button button) {
  FakeButton(native_->display, static_cast<unsigned>(button), false);
}

void ViewerWindow::TurnWheel(int notches) {
  const unsigned button = notches > 0 ? kWheelUp : kWheelDown;
  for (int i = 0; i < std::abs(notches); ++i) {
    FakeButton(native_->display, button, true);
    FakeButton(native_->display, button, false);
  }
}

void ViewerWindow::KeyDown(HeldKey key) {
  FakeKey(native_->display, key, true);
}

void ViewerWindow::KeyUp(HeldKey key) {
  FakeKey(native_->display, key, false);
}

void ViewerWindow::LoseFocus() {
  XSetInputFocus(native_->display, DefaultRootWindow(native_->display), RevertToNone, CurrentTime);
  XFlush(native_->display);
}

// The toolkit has it in the lower right corner.
void ViewerWindow::ClickOk() {
  constexpr int kFromRight = 60, kFromBottom = 30;
  const Area place = Place();
  Click(place.width - kFromRight, place.height - kFromBottom);
}

bool ViewerWindow::IsActive() const {
  const auto active = WindowsIn(native_->display, "_NET_ACTIVE_WINDOW");
  return active == std::vector{native_->window};
}

Area ViewerWindow::Place() const {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(native_->display, native_->window, &attributes)) return {};
  Area place{0, 0, attributes.width, attributes.height};
  ::Window child = None;
  XTranslateCoordinates(native_->display, native_->window, DefaultRootWindow(native_->display), 0,
                        0, &place.left, &place.top, &child);
  return place;
}

}  // namespace qv::e2e

#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace qv::e2e {

struct Colour {
  int red = 0, green = 0, blue = 0;
};

// A picture of a window, top row first.
struct Screenshot {
  int width = 0, height = 0;
  std::vector<Colour> pixels;

  const Colour& At(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

enum class Button { kLeft = 1, kMiddle = 2, kRight = 3 };

// Keys: digits and capital letters stand for themselves.
using Key = char;
constexpr Key kSpace = ' ';
constexpr Key kEnter = '\n';
constexpr Key kShift = '^';
constexpr Key kControl = '~';

struct Area {
  int left = 0, top = 0, width = 0, height = 0;
};

// The viewer's main window as the system knows it.
class ViewerWindow {
 public:
  // Waits until the window of that title is on the screen; null if it is not in time.
  static std::unique_ptr<ViewerWindow> Find(std::chrono::milliseconds timeout);
  // Whether a window of the viewer is on the screen now.
  static bool Exists();
  ~ViewerWindow();

  Screenshot Shoot() const;
  // As a user does who drags a border, and as the button of the title bar does.
  void Resize(int width, int height);
  void Close();
  // Presses and lets go the left button at a point of the window.
  void Click(int x, int y);
  // The parts of such things; points are those of the window and may lie outside of it. A key goes
  // to whoever has the focus.
  void MovePointer(int x, int y);
  void Press(Button button);
  void Release(Button button);
  void TurnWheel(int notches);  // away from the person
  void KeyDown(Key key);
  void KeyUp(Key key);
  // As when another program comes to the front.
  void LoseFocus();

 private:
  struct Native;

  explicit ViewerWindow(std::unique_ptr<Native> native);

  std::unique_ptr<Native> native_;
};

}  // namespace qv::e2e

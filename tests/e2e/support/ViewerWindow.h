#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
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

// Keys that are held: digits and capital letters stand for themselves.
using HeldKey = char;
constexpr HeldKey kSpace = ' ';
constexpr HeldKey kEnter = '\n';
constexpr HeldKey kShift = '^';
constexpr HeldKey kControl = '~';

struct Area {
  int left = 0, top = 0, width = 0, height = 0;
};

// A window of the viewer as the system knows it.
class ViewerWindow {
 public:
  // Waits until the window of that title is on the screen; null if it is not in time.
  static std::unique_ptr<ViewerWindow> Find(std::chrono::milliseconds timeout,
                                            const std::string& title = "Quorvane");
  // Whether a window of that title is on the screen now.
  static bool Exists(const std::string& title = "Quorvane");
  // Closes the message boxes of a process. There are none where messages go to standard error.
  static void DismissMessages(std::uint32_t process);
  ~ViewerWindow();

  Screenshot Shoot() const;
  // How many of its first rows hold menus, none where these are not in such a picture; and how many
  // rows below these, or at the top of a panel, hold tools.
  static int MenuRows();
  static int ToolRows();
  // As a user does who drags a border, and as the button of the title bar does.
  void Resize(int width, int height);
  // Whether the viewer takes one size soon after another for a drag. Elsewhere the system tells it.
  static bool ResizesAreDrag();
  void Maximize(bool on);
  void Close();
  // Whether the toolkit drops that while a dialog is open; elsewhere the dialog goes first.
  static bool DialogsHoldClose();
  // Opens a menu of the menu bar. What is held stays held. False if the system tells that none is
  // open.
  bool OpenMenu();
  void CloseMenu();
  // Presses and lets go the left button at a point of the window.
  void Click(int x, int y);
  // The parts of such things; points are those of the window and may lie outside of it. A key goes
  // to whoever has the focus.
  void MovePointer(int x, int y);
  void Press(Button button);
  void Release(Button button);
  void TurnWheel(int notches);  // away from the person
  void KeyDown(HeldKey key);
  void KeyUp(HeldKey key);
  // As when another program comes to the front.
  void LoseFocus();
  // A click on the button "OK" of a dialog.
  void ClickOk();
  // Whether keys go to it.
  bool IsActive() const;
  // What is inside its frame, on the screen.
  Area Place() const;

 private:
  struct Native;

  explicit ViewerWindow(std::unique_ptr<Native> native);

  std::unique_ptr<Native> native_;
};

}  // namespace qv::e2e

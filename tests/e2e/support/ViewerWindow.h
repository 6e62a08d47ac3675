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

struct Area {
  int left = 0, top = 0, width = 0, height = 0;
};

enum class Key { kRight, kEnter };

// The viewer's main window, or a dialog of it, as the system knows it.
class ViewerWindow {
 public:
  // Waits until a window of that title is on the screen; null if it is not in time.
  static std::unique_ptr<ViewerWindow> Find(std::chrono::milliseconds timeout,
                                            const std::string& title = "Quorvane");
  // Whether a window of the viewer is on the screen now.
  static bool Exists();
  // Closes the message boxes of a process. There are none where messages go to standard error.
  static void DismissMessages(std::uint32_t process);
  ~ViewerWindow();

  Screenshot Shoot() const;
  // As a user does who drags a border, and as the button of the title bar does.
  void Resize(int width, int height);
  void Close();
  // Presses and lets go the left button at a point of the window.
  void Click(int x, int y);
  // Whether keys go to this window.
  bool IsActive() const;
  // Presses a key and lets it go, in whichever window is active.
  void Press(Key key);

 private:
  struct Native;

  explicit ViewerWindow(std::unique_ptr<Native> native);

  std::unique_ptr<Native> native_;
};

}  // namespace qv::e2e

#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace qv {

// What the link needs of the viewer's frame: a window that gets the host's messages, and an event
// loop. The thread that makes it is its GUI thread.
class TestWindow {
 public:
  // `onMessage` gets messages that the system brings to the window itself (Windows).
  static std::unique_ptr<TestWindow> Create(const std::function<void(std::uint32_t)>& onMessage);
  virtual ~TestWindow() = default;

  virtual void Show(bool visible) = 0;
  virtual bool visible() const = 0;
  // Makes the GUI thread's wait end. Any thread.
  virtual void Wake() = 0;
  // Handles what has arrived; waits for something if nothing has, but not for long.
  virtual void HandleEvents() = 0;
};

}  // namespace qv

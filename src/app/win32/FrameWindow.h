#pragma once

#include <cstdint>

#include "ui/MainFrameBase.h"

namespace qv {

// The part of the main frame that depends on the windowing system: messages to itself, and the
// end of a change of size. This is the one for Win32, where all of it comes as window messages.
class FrameWindow : public _MainFrame {
 public:
  explicit FrameWindow(wxWindow* parent);

  // Has HandleFrameMessage called on the GUI thread soon. Any thread.
  void PostToSelf(std::uint32_t number);
  // As QueueEvent, also while the system itself waits for input, as with an open menu. Any thread.
  void QueueEventAndWake(wxEvent* event);

 protected:
  // Also while the frame is hidden.
  virtual void HandleFrameMessage(std::uint32_t number) = 0;
  // Around a change of size by dragging; OnFrameSize comes between.
  virtual void OnSizeMoveEntered() = 0;
  virtual void OnSizeMoveExited() = 0;
  virtual void OnFrameSize() = 0;

  // For waits on the GUI thread: lets windows be painted; input, timers' work and work of other
  // threads stay queued.
  static void YieldToWindows();

  // What the renderer is given as the window handle.
  void* NativeHandle() const;

  WXLRESULT MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override;
  WXLRESULT MSWDefWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override;
};

}  // namespace qv

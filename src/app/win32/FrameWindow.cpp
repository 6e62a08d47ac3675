#include "FrameWindow.h"

#include <windows.h>

#include "app/FrameMessages.h"
#include "link/HostMessages.h"

namespace qv {
namespace {

// A window that does not say that it has been painted is asked again and again.
constexpr int kMostPaintedAtOnce = 100;

}  // namespace

FrameWindow::FrameWindow(wxWindow* parent) : _MainFrame(parent) {
  // The children get their new places only after this event.
  Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
    event.Skip();
    CallAfter([this] { OnFrameSize(); });
  });
}

void FrameWindow::PostToSelf(std::uint32_t number) {
  ::PostMessageW(GetHWND(), number, 0, 0);
}

// A queued event wakes the library's own loop alone. While a menu is open, a border is dragged or
// one of the system's dialogs waits, the library looks for events only when a message comes.
void FrameWindow::QueueEventAndWake(wxEvent* event) {
  QueueEvent(event);
  ::PostMessageW(GetHWND(), WM_NULL, 0, 0);
}

// The library's own yield takes messages that it is not to handle out of the queue and posts them
// again without their window, so that nobody gets them; and it handles queued events whenever a
// message is taken out. A paint message need not be: it is gone when the window has been painted.
// Messages that other threads send are handled here too.
void FrameWindow::YieldToWindows() {
  MSG message;
  for (int left = kMostPaintedAtOnce;
       left > 0 &&
       ::PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_PAINT | PM_QS_SENDMESSAGE) != 0;
       --left) {
    ::DispatchMessageW(&message);
  }
}

void* FrameWindow::NativeHandle() const {
  return GetHWND();
}

// What another program sends, and does not post, comes in the middle of whatever this thread waits
// for, an answer of the host included, which closing would take away. It gets its turn instead.
WXLRESULT FrameWindow::MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) {
  if (message == WM_CLOSE) {
    // Marked, since a loop inside of that sent message, a dialog's for instance, would take it for
    // a sent one again.
    constexpr WXWPARAM kHasItsTurn = 1;
    if (wParam != kHasItsTurn && ::InSendMessageEx(nullptr) != ISMEX_NOSEND) {
      ::PostMessageW(GetHWND(), WM_CLOSE, kHasItsTurn, 0);
      return 0;
    }
    // The library's own loop destroys the frame, which it cannot while a menu has the thread.
    ::EndMenu();
  }
  return _MainFrame::MSWWindowProc(message, wParam, lParam);
}

WXLRESULT FrameWindow::MSWDefWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) {
  switch (message) {
    case WM_ENTERSIZEMOVE:
      if (!IsShown()) break;
      OnSizeMoveEntered();
      return 0;
    case WM_EXITSIZEMOVE:
      if (!IsShown()) break;
      OnSizeMoveExited();
      return 0;
    case WM_VIEWER_UPDATE_STATUS:
    case WM_VIEWER_RELEASE_SHARED:
    case WM_VIEWER_REOPEN_SHARED:
      HandleFrameMessage(message);
      break;
    default:
      break;
  }
  return _MainFrame::MSWDefWindowProc(message, wParam, lParam);
}

}  // namespace qv

#include "FrameWindow.h"

#include <windows.h>

#include "app/FrameMessages.h"
#include "link/HostMessages.h"

namespace qv {

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

void* FrameWindow::NativeHandle() const {
  return GetHWND();
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

#include "FrameWindow.h"

#include <wx/evtloop.h>

namespace qv {
namespace {

// Window managers do not tell when a border is let go: a size that stays that long counts as the
// last one.
constexpr int kSettleMilliseconds = 100;

wxDEFINE_EVENT(EVT_FRAME_MESSAGE, wxThreadEvent);

}  // namespace

FrameWindow::FrameWindow(wxWindow* parent) : _MainFrame(parent), sizeSettled_(this) {
  Bind(EVT_FRAME_MESSAGE, [this](wxThreadEvent& event) {
    HandleFrameMessage(static_cast<std::uint32_t>(event.GetExtraLong()));
  });
  Bind(wxEVT_SIZE, &FrameWindow::OnSize, this);
  Bind(
      wxEVT_TIMER, [this](wxTimerEvent&) { OnSizeMoveExited(); }, sizeSettled_.GetId());
}

void FrameWindow::PostToSelf(std::uint32_t number) {
  auto* event = new wxThreadEvent(EVT_FRAME_MESSAGE);
  event->SetExtraLong(static_cast<long>(number));
  QueueEvent(event);
}

void FrameWindow::OnSize(wxSizeEvent& event) {
  event.Skip();
  if (!sizeSettled_.IsRunning()) OnSizeMoveEntered();
  sizeSettled_.StartOnce(kSettleMilliseconds);
  OnFrameSize();
}

void FrameWindow::YieldToWindows() {
  wxEventLoopBase* loop = wxEventLoopBase::GetActive();
  if (loop && !loop->IsYielding()) loop->YieldFor(wxEVT_CATEGORY_UI);
}

void* FrameWindow::NativeHandle() const {
  return GetHandle();
}

}  // namespace qv

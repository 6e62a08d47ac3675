#include "WindowPlace.h"

namespace qv {
namespace {

// After a window is shown, until it stands where the window manager has put it.
constexpr int kShownMilliseconds = 300;
// After a change of size, until the window is known to be maximised no more.
constexpr int kRestoredMilliseconds = 50;

}  // namespace

WindowPlace::WindowPlace(wxTopLevelWindow& window) : window_(&window) {
  window.Bind(wxEVT_SHOW, &WindowPlace::OnShow, this);
  window.Bind(wxEVT_SIZE, &WindowPlace::OnSize, this);
  settled_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { PutAgain(); });
}

WindowPlace::~WindowPlace() {
  if (!window_) return;
  window_->Unbind(wxEVT_SHOW, &WindowPlace::OnShow, this);
  window_->Unbind(wxEVT_SIZE, &WindowPlace::OnSize, this);
}

void WindowPlace::Put(const wxRect& normal, bool maximized) {
  normal_ = normal;
  window_->SetSize(normal);
  reached_ = window_->IsShown();
  if (maximized) window_->Maximize();
}

void WindowPlace::OnShow(wxShowEvent& event) {
  event.Skip();
  if (!reached_ && event.IsShown()) settled_.StartOnce(kShownMilliseconds);
}

void WindowPlace::OnSize(wxSizeEvent& event) {
  event.Skip();
  if (reached_ || !window_->IsShown() || settled_.IsRunning()) return;
  settled_.StartOnce(kRestoredMilliseconds);
}

void WindowPlace::PutAgain() {
  // Maximised it stays as it is, until the user wants its normal size back.
  if (!window_ || reached_ || window_->IsMaximized() || window_->IsIconized()) return;
  reached_ = true;
  // One that was maximised has lost it; others, too, have been seen to come up at their least size.
  window_->SetSize(normal_);
  // Window managers do not always tell where they have put a window, and one that believes to be in
  // its place already is only moved by way of another.
  window_->Move(normal_.x + 1, normal_.y);
  window_->Move(normal_.GetPosition());
}

}  // namespace qv

// What the main frame has to do with motion of the camera: modes, eye height, menu and tools.

#include "app/MainFrame.h"
#include "ui/CommandIds.h"

namespace qv {

RaytraceImpl* MainFrame::NavigableRenderer() const {
  return IsPlaying() ? nullptr : SceneRenderer();
}

void MainFrame::FollowNavigationMode() {
  const auto follow = [this](int id, NavigationMode mode) {
    Bind(
        wxEVT_UPDATE_UI,
        [this, mode](wxUpdateUIEvent& event) {
          event.Enable(interactive_);
          event.Check(navigation_->mode() == mode);
        },
        id);
  };
  follow(kIdFlyMode, NavigationMode::kFly);
  follow(kIdWalkMode, NavigationMode::kWalk);
}

void MainFrame::OnFlyMode(wxCommandEvent&) {
  navigation_->SetMode(NavigationMode::kFly);
}

void MainFrame::OnWalkMode(wxCommandEvent&) {
  navigation_->SetMode(NavigationMode::kWalk);
}

void MainFrame::OnResetCameraRoll(wxCommandEvent&) {
  navigation_->ResetRoll();
}

void MainFrame::OnStatusBarLeftDown(wxMouseEvent& event) {
  event.Skip();
  wxRect field;
  if (!interactive_ || !statusBar_->GetFieldRect(StatusBar::kEyeHeight, field) ||
      !field.Contains(event.GetPosition())) {
    return;
  }
  eyeHeightPopUp_->ShowAbove(statusBar_->ClientToScreen(event.GetPosition()));
}

void MainFrame::SetEyeHeight(float height) {
  eyeHeight_ = height;
  UpdateStatusBar();
  navigation_->EyeHeightChanged();
  if (link_) link_->SetEyeHeight(height);
}

}  // namespace qv

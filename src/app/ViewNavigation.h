#pragma once

#include <wx/frame.h>
#include <wx/timer.h>

#include "app/HeldInput.h"
#include "app/NavigationSite.h"
#include "app/ViewProbe.h"
#include "navigation/Navigator.h"

namespace qv {

// Connects the navigator with the view: hands it the view's keys, buttons and wheel, has it tick
// while something moves, and brings its cameras to the renderer and to the host. GUI thread only.
class ViewNavigation : public wxEvtHandler, private NavigationActions {
 public:
  // All three outlive it.
  ViewNavigation(wxFrame& frame, wxWindow& view, NavigationSite& site);

  NavigationMode mode() const { return navigator_.mode(); }
  void SetMode(NavigationMode mode) { navigator_.SetMode(mode); }
  void SetOrbitPivot(const Vec3& pivot) { navigator_.SetOrbitPivot(pivot); }
  void ResetRoll();
  // After a change of the eye height: the walker takes it on.
  void EyeHeightChanged();
  // Ends all motion; what is held has to be pressed anew.
  void Stop();

  std::optional<SceneBox> Bounds() const { return probe_.Bounds(); }

 private:
  void BindView();
  NavigationInput Held() const;  // now
  NavigationInput Kept() const;  // as far as events have told
  void OnKeyDown(wxKeyEvent& event);
  void OnKeyUp(wxKeyEvent& event);
  void OnFocusLost(wxFocusEvent& event);
  void OnMenuOpened(wxMenuEvent& event);
  // Somebody else gets the keys: that they are let go will not be told here.
  void LoseKeys();
  void OnButtonDown(wxMouseEvent& event);
  void OnMouseChanged(wxMouseEvent& event);
  void OnWheel(wxMouseEvent& event);
  void OnCaptureLost(wxMouseCaptureLostEvent& event);
  void OnTick();
  void ReleaseMouse();
  void ShowCursor(const NavigationInput& held);
  void SendDate(double julianDate, float longitude);

  RenderCamera Camera() const override;
  float EyeHeight() const override { return site_.EyeHeight(); }
  void SetTicking(bool on) override;
  void ShowMoving(const RenderCamera& camera) override;
  void ShowStill(const RenderCamera& camera) override;
  void AddDays(double days) override;
  bool IsCameraLinked() const override { return site_.FollowsCamera(); }
  std::optional<Vec3> AskHostTarget() override;
  void SendCamera() override;

  wxFrame& frame_;
  wxWindow& view_;
  NavigationSite& site_;
  ViewProbe probe_;
  Navigator navigator_;
  HeldInput held_;
  wxTimer timer_;
  bool ticking_ = false;
  bool moved_ = false;  // in the tick in hand
  wxStockCursor cursor_ = wxCURSOR_ARROW;
};

}  // namespace qv

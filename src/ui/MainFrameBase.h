#pragma once

#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/toolbar.h>

#include "ui/StatusBar.h"

namespace qv {

// Lays out the main window: menu bar, tool bar, the view that shows the picture, status bar; and
// binds their events to handlers that the derived frame fills in.
class _MainFrame
    : public wxFrame {  // NOLINT(bugprone-reserved-identifier): layout layers carry an underscore
 public:
  explicit _MainFrame(wxWindow* parent);

 protected:
  virtual void OnClose(wxCloseEvent& event) = 0;
  virtual void OnViewErase(wxEraseEvent& event) = 0;
  virtual void OnViewPaint(wxPaintEvent& event) = 0;
  virtual void OnFlyMode(wxCommandEvent& event) = 0;
  virtual void OnWalkMode(wxCommandEvent& event) = 0;
  virtual void OnResetCameraRoll(wxCommandEvent& event) = 0;
  virtual void OnCameraLink(wxCommandEvent& event) = 0;
  virtual void OnSynchronizeCamera(wxCommandEvent& event) = 0;
  virtual void OnBackground(wxCommandEvent& event) = 0;
  virtual void OnReloadData(wxCommandEvent& event) = 0;
  virtual void OnStatusBarLeftDown(wxMouseEvent& event) = 0;
  virtual void OnPreferences(wxCommandEvent& event) = 0;
  virtual void OnAmbientOcclusion(wxCommandEvent& event) = 0;
  virtual void OnLEM(wxCommandEvent& event) = 0;
  virtual void OnCapture(wxCommandEvent& event) = 0;
  virtual void OnPresetsPanel(wxCommandEvent& event) = 0;
  virtual void OnLightPanel(wxCommandEvent& event) = 0;

  wxPanel* view_;
  wxToolBar* toolBar_;
  StatusBar* statusBar_;

 private:
  void AddMenus();
  void AddTools();
  void BindEvents();
};

}  // namespace qv

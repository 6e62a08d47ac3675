#include "ui/MainFrameBase.h"

#include <wx/menu.h>
#include <wx/sizer.h>

#include "ui/CommandIds.h"
#include "ui/Images.h"

namespace qv {
namespace {

const wxSize kInitialSize(783, 602);
const wxSize kMinimumSize(240, 180);
// Beside and before the picture: dark and without a hue, in light themes as in dark ones, so that
// it does not change how the picture's own colours look.
const wxColour kViewBackground(58, 60, 63);

}  // namespace

_MainFrame::_MainFrame(wxWindow* parent)
    : wxFrame(parent, wxID_ANY, "Quorvane", wxDefaultPosition, wxDefaultSize,
              wxDEFAULT_FRAME_STYLE | wxTAB_TRAVERSAL) {
  AddMenus();
  toolBar_ = CreateToolBar(wxTB_HORIZONTAL | wxTB_FLAT);
  AddTools();
  statusBar_ = new StatusBar(this);
  SetStatusBar(statusBar_);

  view_ = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                      wxWANTS_CHARS | wxFULL_REPAINT_ON_RESIZE);
  view_->SetBackgroundColour(kViewBackground);
  auto* sizer = new wxBoxSizer(wxVERTICAL);
  sizer->Add(view_, wxSizerFlags(1).Expand());
  SetSizer(sizer);
  SetMinSize(FromDIP(kMinimumSize));
  SetSize(FromDIP(kInitialSize));
  Layout();

  BindEvents();
}

void _MainFrame::AddMenus() {
  auto* view = new wxMenu;
  view->AppendRadioItem(kIdFlyMode, _("Fly Mode"));
  view->AppendRadioItem(kIdWalkMode, _("Walk Mode"));
  view->AppendSeparator();
  view->Append(kIdResetCameraRoll, _("Reset Camera Roll"));
  auto* tools = new wxMenu;
  tools->Append(kIdPreferences, _("Preferences...") + "\tCtrl+,");
  auto* window = new wxMenu;
  window->AppendCheckItem(kIdPresetsPanel, _("Presets"));
  window->AppendCheckItem(kIdLightPanel, _("Light"));
  auto* menuBar = new wxMenuBar;
  menuBar->Append(view, _("View"));
  menuBar->Append(tools, _("Tools"));
  menuBar->Append(window, _("&Window"));
  SetMenuBar(menuBar);
}

void _MainFrame::AddTools() {
  toolBar_->AddTool(kIdFlyMode, _("Fly Mode"), LoadToolImage("FlyMode", kToolImageSize),
                    wxBitmapBundle(), wxITEM_RADIO, _("Fly Mode"));
  toolBar_->AddTool(kIdWalkMode, _("Walk Mode"), LoadToolImage("WalkMode", kToolImageSize),
                    wxBitmapBundle(), wxITEM_RADIO, _("Walk Mode"));
  toolBar_->AddTool(kIdCameraLink, _("Link camera to SketchUp"),
                    LoadToolImage("CameraLink", kToolImageSize), wxBitmapBundle(), wxITEM_CHECK,
                    wxString(), _("Always synchronize camera to SketchUp"));
  toolBar_->AddTool(kIdSynchronizeCamera, _("Synchronize camera to SketchUp"),
                    LoadToolImage("syncCamera", kToolImageSize), wxBitmapBundle(), wxITEM_NORMAL,
                    wxString(), _("Synchronize camera to SketchUp"));
  toolBar_->AddTool(kIdAmbientOcclusion, _("Ambient Occlusion ON/OFF"),
                    LoadToolImage("AO", kToolImageSize), wxBitmapBundle(), wxITEM_CHECK,
                    _("Use Ambient Occlusion for shading"));
  toolBar_->AddTool(kIdLEM, _("LEM ON/OFF"), LoadToolImage("LEM", kToolImageSize), wxBitmapBundle(),
                    wxITEM_CHECK, _("Use LEM"));
  toolBar_->AddTool(kIdPresetsPanel, _("Show Preset Panel"), LoadToolImage("View", kToolImageSize),
                    wxBitmapBundle(), wxITEM_CHECK, _("Presets Panel"));
  toolBar_->AddTool(kIdLightPanel, _("Show Light Control Panel"),
                    LoadToolImage("PointLight", kToolImageSize), wxBitmapBundle(), wxITEM_CHECK,
                    _("Lighting/Image Settings Panel"));
  toolBar_->AddTool(kIdBackground, _("Change background settings."),
                    LoadToolImage("Background", kToolImageSize), wxBitmapBundle(), wxITEM_NORMAL,
                    _("Background Settings Dialog"));
  toolBar_->AddTool(kIdCapture, _("Capture an image."), LoadToolImage("Capture", kToolImageSize),
                    wxBitmapBundle(), wxITEM_NORMAL, _("Capture an image"));
  toolBar_->AddTool(kIdReloadData, _("Reload Data"), LoadToolImage("Reload", kToolImageSize));
  toolBar_->Realize();
}

void _MainFrame::BindEvents() {
  Bind(wxEVT_CLOSE_WINDOW, &_MainFrame::OnClose, this);
  view_->Bind(wxEVT_ERASE_BACKGROUND, &_MainFrame::OnViewErase, this);
  view_->Bind(wxEVT_PAINT, &_MainFrame::OnViewPaint, this);
  statusBar_->Bind(wxEVT_LEFT_DOWN, &_MainFrame::OnStatusBarLeftDown, this);
  // Menu entries and tools of the same number.
  Bind(wxEVT_MENU, &_MainFrame::OnFlyMode, this, kIdFlyMode);
  Bind(wxEVT_MENU, &_MainFrame::OnWalkMode, this, kIdWalkMode);
  Bind(wxEVT_MENU, &_MainFrame::OnResetCameraRoll, this, kIdResetCameraRoll);
  Bind(wxEVT_TOOL, &_MainFrame::OnCameraLink, this, kIdCameraLink);
  Bind(wxEVT_TOOL, &_MainFrame::OnSynchronizeCamera, this, kIdSynchronizeCamera);
  Bind(wxEVT_TOOL, &_MainFrame::OnBackground, this, kIdBackground);
  Bind(wxEVT_TOOL, &_MainFrame::OnReloadData, this, kIdReloadData);
  Bind(wxEVT_TOOL, &_MainFrame::OnAmbientOcclusion, this, kIdAmbientOcclusion);
  Bind(wxEVT_TOOL, &_MainFrame::OnLEM, this, kIdLEM);
  Bind(wxEVT_TOOL, &_MainFrame::OnCapture, this, kIdCapture);
  Bind(wxEVT_MENU, &_MainFrame::OnPreferences, this, kIdPreferences);
  Bind(wxEVT_MENU, &_MainFrame::OnPresetsPanel, this, kIdPresetsPanel);
  Bind(wxEVT_MENU, &_MainFrame::OnLightPanel, this, kIdLightPanel);
}

}  // namespace qv

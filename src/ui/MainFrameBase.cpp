#include "ui/MainFrameBase.h"

#include <wx/menu.h>
#include <wx/sizer.h>

#include "ui/CommandIds.h"
#include "ui/Images.h"

namespace qv {
namespace {

const wxSize kInitialSize(783, 602);
const wxSize kMinimumSize(240, 180);
const wxSize kToolSize(24, 24);
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
  auto* tools = new wxMenu;
  tools->Append(kIdPreferences, _("Preferences...") + "\tCtrl+,");
  auto* window = new wxMenu;
  window->AppendCheckItem(kIdLogPanel, _("Log"));
  auto* menuBar = new wxMenuBar;
  menuBar->Append(tools, _("Tools"));
  menuBar->Append(window, _("&Window"));
  SetMenuBar(menuBar);
}

void _MainFrame::AddTools() {
  toolBar_->SetToolBitmapSize(FromDIP(kToolSize));
  toolBar_->AddTool(kIdCameraLink, _("Link camera to SketchUp"),
                    LoadToolImage("CameraLink", kToolSize), wxBitmapBundle(), wxITEM_CHECK,
                    wxString(), _("Always synchronize camera to SketchUp"));
  toolBar_->AddTool(kIdSynchronizeCamera, _("Synchronize camera to SketchUp"),
                    LoadToolImage("syncCamera", kToolSize), wxBitmapBundle(), wxITEM_NORMAL,
                    wxString(), _("Synchronize camera to SketchUp"));
  toolBar_->AddTool(kIdAmbientOcclusion, _("Ambient Occlusion ON/OFF"),
                    LoadToolImage("AO", kToolSize), wxBitmapBundle(), wxITEM_CHECK,
                    _("Use Ambient Occlusion for shading"));
  toolBar_->AddTool(kIdLEM, _("LEM ON/OFF"), LoadToolImage("LEM", kToolSize), wxBitmapBundle(),
                    wxITEM_CHECK, _("Use LEM"));
  toolBar_->AddTool(kIdCapture, _("Capture an image."), LoadToolImage("Capture", kToolSize),
                    wxBitmapBundle(), wxITEM_NORMAL, _("Capture an image"));
  toolBar_->AddTool(kIdReloadData, _("Reload Data"), LoadToolImage("Reload", kToolSize));
  toolBar_->Realize();
}

void _MainFrame::BindEvents() {
  Bind(wxEVT_CLOSE_WINDOW, &_MainFrame::OnClose, this);
  view_->Bind(wxEVT_ERASE_BACKGROUND, &_MainFrame::OnViewErase, this);
  view_->Bind(wxEVT_PAINT, &_MainFrame::OnViewPaint, this);
  Bind(wxEVT_TOOL, &_MainFrame::OnCameraLink, this, kIdCameraLink);
  Bind(wxEVT_TOOL, &_MainFrame::OnSynchronizeCamera, this, kIdSynchronizeCamera);
  Bind(wxEVT_TOOL, &_MainFrame::OnReloadData, this, kIdReloadData);
  Bind(wxEVT_TOOL, &_MainFrame::OnAmbientOcclusion, this, kIdAmbientOcclusion);
  Bind(wxEVT_TOOL, &_MainFrame::OnLEM, this, kIdLEM);
  Bind(wxEVT_TOOL, &_MainFrame::OnCapture, this, kIdCapture);
  Bind(wxEVT_MENU, &_MainFrame::OnPreferences, this, kIdPreferences);
  Bind(wxEVT_MENU, &_MainFrame::OnLogPanel, this, kIdLogPanel);
}

}  // namespace qv

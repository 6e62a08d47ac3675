#include "app/MainFrame.h"

#include <wx/app.h>
#include <wx/config.h>
#include <wx/dcclient.h>
#include <wx/dialog.h>
#include <wx/menu.h>

#include <algorithm>
#include <utility>

#include "app/BackgroundSettingsDialog.h"
#include "app/FrameMessages.h"
#include "app/LightSite.h"
#include "app/MainFrameScopes.h"
#include "app/Preferences.h"
#include "app/PresetsSite.h"
#include "app/StatusTexts.h"
#include "app/WindowLayout.h"
#include "core/Log.h"
#include "platform/ProgramPath.h"
#include "sky/CubeMaps.h"
#include "ui/Images.h"

namespace qv {
namespace {

constexpr int kStatisticsPoints = 7;
constexpr int kFewestSamples = 0;

wxDEFINE_EVENT(EVT_GUI_WORK, wxThreadEvent);

}  // namespace

MainFrame::MainFrame(wxWindow* parent, std::uint32_t hostWindow, std::uint32_t processId)
    : FrameWindow(parent),
      statisticsFont_(wxFontInfo(kStatisticsPoints)),
      gui_([this] { QueueEventAndWake(new wxThreadEvent(EVT_GUI_WORK)); }) {
  Bind(EVT_GUI_WORK, [this](wxThreadEvent&) { gui_.RunPending(); });
  SetIcons(LoadIcons("images/Quorvane.ico"));
  MakePanels();
  isResizing_ = false;
  NavigationSite& site = *this;
  navigation_ = std::make_unique<ViewNavigation>(*this, *view_, site);
  eyeHeightPopUp_ = new EyeHeightPopUp(
      this, {[this] { return eyeHeight_.load(); }, [this] { return navigation_->Bounds(); },
             [this](float height) { SetEyeHeight(height); }});
  FollowNavigationMode();
  BindUpdateRules();
  SetInteractive(false);

  const Preferences preferences = Preferences::Load(*wxConfigBase::Get());
  showStatistics_ = preferences.showStatistics;
  CreateRenderer(preferences.antialiasIndex);

  link_ = std::make_unique<IpcInterfaceApp>(
      hostWindow, processId, this, [this] { gui_.Post([this] { link_->Dispatch(); }); },
      [this] { return IsShown(); });
  link_->Open();
  link_->Start();
  OnInternalIdle();
}

MainFrame::~MainFrame() {
  Shutdown();
  DestroyPanels();
}

void MainFrame::CreateRenderer(int antialiasIndex) {
  receiving_ = true;
  auto renderer = std::make_unique<RaytraceImpl>(RaytraceImpl::Options{
      .cubeMapFolder = sky::CubeMapFolder(platform::ProgramPath().parent_path())});
  renderer->SetYield([] { YieldToWindows(); });
  renderer->SetCallbacks(
      {.passDone = [this] { PictureStands(); },
       .progress = [this](float value) { SetProgress(value); },
       .statusText = [this](const std::wstring& text) { ShowStatusText(text); }});
  ResizeTargets(*renderer, antialiasIndex);
  renderer_.Put(std::move(renderer));
}

void MainFrame::DestroyRenderer() {
  const WaitScope wait(*this);
  const std::unique_ptr<RaytraceImpl> renderer = renderer_.Take([] { YieldToWindows(); });
  if (renderer) {
    renderer->AbandonRender();
    renderer->StopRender();
  }
  painter_.RendererCleared();
}

bool MainFrame::WithIdleRenderer(const std::function<void(RaytraceImpl&)>& work) {
  RaytraceImpl* renderer = renderer_.get();
  if (waiting_ || !renderer) return false;
  if (capture_) {
    capture_->capture.Cancel();
    EndCapture();
  }
  const std::lock_guard gate(jobGate_);
  {
    const WaitScope wait(*this);
    renderer->StopRender();
  }
  work(*renderer);
  return true;
}

void MainFrame::ResizeTargets(RaytraceImpl& renderer, int antialiasIndex) {
  const wxSize size = view_->GetClientSize();
  pictureSize_ = wxSize(std::max(size.x, 1), std::max(size.y, 1));
  const bool refused = !renderer.ResizeTargets(pictureSize_.x, pictureSize_.y, antialiasIndex) &&
                       !renderer.ResizeTargets(pictureSize_.x, pictureSize_.y, kFewestSamples);
  if (refused) {
    ShowStatusText(MemoryRefusedText(pictureSize_));
  } else if (sizeRefused_) {
    ShowStatusText(wxString());
  }
  sizeRefused_ = refused;
  painter_.RendererCleared();
}

void MainFrame::FollowViewSize() {
  const RaytraceImpl* renderer = renderer_.get();
  if (!renderer || isResizing_ || receiving_ || renderer->Offline() ||
      renderer->State() == RenderState::kNone) {
    return;
  }
  const wxSize size = view_->GetClientSize();
  if (size == pictureSize_ || size.x < 1 || size.y < 1) return;
  WithIdleRenderer([this](RaytraceImpl& idle) {
    ResizeTargets(idle, RaytraceImpl::kKeepAntialias);
    idle.StartRenderSameCamera(ModeMotion);
  });
}

void MainFrame::OnSizeMoveEntered() {
  const RaytraceImpl* renderer = renderer_.get();
  if (renderer && !renderer->Offline()) isResizing_ = true;
}

void MainFrame::OnSizeMoveExited() {
  const RaytraceImpl* renderer = renderer_.get();
  if (renderer && renderer->Offline()) return;
  isResizing_ = false;
  FollowViewSize();
}

void MainFrame::OnFrameSize() {
  FollowViewSize();
}

void MainFrame::HandleFrameMessage(std::uint32_t number) {
  if (number == WM_VIEWER_UPDATE_STATUS) {
    statusPosted_ = false;
    if (IsShown()) UpdateStatusBar();
  } else if (link_) {
    link_->HandleFrameMessage(number);
  }
}

void MainFrame::EnableContents(bool enable) {
  // Not the frame itself: a disabled window cannot be closed or moved either.
  for (wxWindow* child : GetChildren()) {
    if (!child->IsTopLevel() && child != statusBar_) child->Enable(enable);
  }
  if (wxMenuBar* menuBar = GetMenuBar()) {
    for (size_t i = 0; i < menuBar->GetMenuCount(); ++i) menuBar->EnableTop(i, enable);
  }
}

void MainFrame::SetInteractive(bool interactive) {
  interactive_ = interactive;
  if (!interactive) {
    navigation_->Stop();
    eyeHeightPopUp_->Hide();
  }
  EnableContents(interactive);
  EnablePanels(interactive);
  UpdateWindowUI(wxUPDATE_UI_RECURSE);
  // So that keys move the camera at once.
  if (interactive) view_->SetFocus();
}

void MainFrame::ShowFirst() {
  showing_ = true;
  Show(true);
  ShowPanelsOfLastTime();
  wxTheApp->Yield();
  showing_ = false;
  CatchUpWithClose();
}

bool MainFrame::MustFinishFirst() const {
  return waiting_ || showing_ || closing_ || !openDialogs_.empty() || IsPlaying();
}

void MainFrame::CatchUpWithClose() {
  if (!closeAsked_ || waiting_ || showing_ || closing_) return;
  // Before what plays: that may lie below the dialog on the stack. The handler that shows the
  // dialog needs the frame, and asks for the close again.
  if (!openDialogs_.empty()) {
    if (openDialogs_.back()->IsModal()) openDialogs_.back()->EndModal(wxID_CANCEL);
    return;
  }
  if (IsPlaying()) return;
  closeAsked_ = false;
  CallAfter([this] { Close(true); });
}

void MainFrame::OnClose(wxCloseEvent& event) {
  if (MustFinishFirst()) {
    closeAsked_ = true;
    if (event.CanVeto()) event.Veto();
    CatchUpWithClose();
    return;
  }
  if (capture_) {
    capture_->capture.Cancel();
    EndCapture();
  }
  SaveSettings();
  Shutdown();
  event.Skip();
  // The library destroys the frame in its next idle time. The events that would bring that about
  // may all have come while the shutdown waited, and a hidden window gets no more.
  wxWakeUpIdle();
}

void MainFrame::SaveSettings() {
  SaveLayouts();
  if (cameraLinkKnown_) wxConfigBase::Get()->Write("/Defaults/CameraLink", cameraLink_.load());
  wxConfigBase::Get()->Flush();
}

void MainFrame::Shutdown() {
  if (std::exchange(closing_, true)) return;
  // From here on nobody waits for the GUI thread any more, and a command in flight finds no
  // renderer.
  navigation_->Stop();
  eyeHeightPopUp_->Hide();
  HidePanels();
  Show(false);
  gui_.Close();
  DestroyRenderer();
  if (!link_) return;
  link_->TellClosed();
  link_->Stop([] { YieldToWindows(); });
  link_.reset();
}

void MainFrame::OnViewErase(wxEraseEvent& event) {
  // Painting covers all of the view, but only where there is a picture.
  if (!sceneShown_ || !painter_.HasPicture()) event.Skip();
}

void MainFrame::OnViewPaint(wxPaintEvent&) {
  wxPaintDC dc(view_);
  const RaytraceImpl* renderer = renderer_.get();
  if (!sceneShown_ || !renderer || !painter_.HasPicture()) return;
  const wxSize panel = view_->GetClientSize();
  const PixelRectangle where = FitRectangle(painter_.width(), painter_.height(), panel.x, panel.y);
  painter_.Paint(dc, where, *renderer);
  PaintMargins(dc, where);
  PaintStatistics(dc);
  if (std::exchange(pictureIsNew_, false)) CallAfter([this] { ReportShownPicture(); });
}

void MainFrame::PaintMargins(wxDC& dc, const PixelRectangle& picture) {
  const wxSize panel = view_->GetClientSize();
  const int right = picture.x + picture.width;
  const int bottom = picture.y + picture.height;
  dc.SetPen(*wxTRANSPARENT_PEN);
  dc.SetBrush(wxBrush(view_->GetBackgroundColour()));
  const wxRect margins[] = {{0, 0, picture.x, panel.y},
                            {right, 0, panel.x - right, panel.y},
                            {picture.x, 0, picture.width, picture.y},
                            {picture.x, bottom, picture.width, panel.y - bottom}};
  for (const wxRect& margin : margins) {
    if (!margin.IsEmpty()) dc.DrawRectangle(margin);
  }
}

void MainFrame::PaintStatistics(wxDC& dc) {
  const PassTimes& times = painter_.times();
  if (!showStatistics_ || (times.base <= 0 && times.antialias <= 0)) return;
  dc.SetFont(statisticsFont_);
  dc.SetTextForeground(*wxWHITE);
  dc.SetBackgroundMode(wxBRUSHSTYLE_TRANSPARENT);
  dc.DrawLabel(StatisticsText(times.base, times.antialias, pictureStatistics_.triangleCount,
                              pictureStatistics_.materialCount),
               wxRect(0, 0, painter_.width(), painter_.height()), wxALIGN_LEFT | wxALIGN_TOP);
}

void MainFrame::PictureStands() {
  if (picturePosted_.exchange(true)) return;
  gui_.Post([this] {
    picturePosted_ = false;
    ShowPicture();
  });
}

void MainFrame::ShowPicture() {
  const RaytraceImpl* renderer = renderer_.get();
  // A picture that was finished before a capture or a change of size is told of after it has begun.
  if (!renderer || renderer->Offline() || !painter_.TakePicture(*renderer)) return;
  pictureStatistics_ = renderer->Statistics();
  pictureIsNew_ = true;
  view_->Refresh(false);
  view_->Update();
}

void MainFrame::ReportShownPicture() {
  const PassTimes& times = painter_.times();
  const bool antialiased = times.antialias > 0;
  Log(LogLevel::kInfo,
      wxString::Format("picture shown: %s %dx%d, %.3f s", antialiased ? "antialiased" : "base",
                       painter_.width(), painter_.height(),
                       antialiased ? times.antialias : times.base)
          .ToStdString());
}

void MainFrame::UpdateStatusBar() {
  wxString text;
  {
    const std::lock_guard lock(textMutex_);
    text = statusText_;
  }
  statusBar_->ShowText(StatusBar::kText, text);
  if (const RaytraceImpl* renderer = renderer_.get()) {
    statusBar_->ShowText(StatusBar::kSunTime,
                         SunTimeText(renderer->JulianDate(), renderer->Longitude()));
  }
  statusBar_->ShowText(StatusBar::kEyeHeight, EyeHeightText(eyeHeight_));
  statusBar_->ShowProgress(static_cast<int>(progress_ * StatusBar::kGaugeRange));
  OnInternalIdle();
}

void MainFrame::OnCameraLink(wxCommandEvent& event) {
  cameraLink_ = event.IsChecked();
}

void MainFrame::OnSynchronizeCamera(wxCommandEvent&) {
  SynchronizeCamera();
}

void MainFrame::OnBackground(wxCommandEvent&) {
  const RaytraceImpl* renderer = renderer_.get();
  if (closing_ || waiting_ || !renderer) return;
  sky::BackgroundTypes types;
  sky::FillBackgroundTypes(types,
                           [](const char* name) { return wxGetTranslation(name).ToStdWstring(); });
  BackgroundChoice choice(std::move(types), renderer->CubeMapNames(), renderer->BackgroundType(),
                          renderer->CubeMapIndex());
  BackgroundSettingsDialog dialog(this, choice);
  if (ShowDialog(dialog) != wxID_OK) return;
  ApplyBackground(choice.BackgroundType(), choice.CubeMapIndex());
}

void MainFrame::OnReloadData(wxCommandEvent&) {
  ReloadData();
}

}  // namespace qv

// The main frame's part of image capture: what is asked of the user, and what the windows show
// while an ImageCapture has the renderer.

#include <wx/config.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/msgdlg.h>

#include <cmath>
#include <utility>

#include "app/MainFrame.h"
#include "app/MainFrameScopes.h"
#include "app/StatusTexts.h"
#include "core/Log.h"
#include "output/CaptureImageDialog.h"
#include "output/ImageCapture.h"
#include "ui/ProgressCancelDialog.h"

namespace qv {
namespace {

constexpr char kDirectoryKey[] = "/Dirs/Capture";
constexpr char kFileNameKey[] = "/Dirs/CaptureFileName";
// What the rendering takes of the progress; the rest is the writing of the file.
constexpr int kRenderedPercent = 75;
constexpr int kLookMilliseconds = 100;

std::filesystem::path PathOf(const wxString& name) {
  return name.ToStdWstring();
}

}  // namespace

void MainFrame::OnCapture(wxCommandEvent&) {
  if (closing_ || waiting_ || receiving_ || capture_) return;
  CaptureImageDialog dialog(this, pictureSize_);
  if (ShowDialog(dialog) != wxID_OK) return;
  wxConfigBase::Get()->Flush();
  CaptureRequest request;
  if (!dialog.GetSettings(request.filter, request.width, request.height)) return;
  const wxString file = AskForCaptureFile(request.filter);
  // A scene may have begun to come in meanwhile.
  if (file.empty() || !interactive_ || receiving_) return;
  BeginCapture(request, file);
}

wxString MainFrame::AskForCaptureFile(const wxString& filter) {
  wxString directory = wxConfigBase::Get()->Read(kDirectoryKey, wxString());
  if (directory.empty()) {
    const std::lock_guard lock(textMutex_);
    directory = modelDirectory_;
  }
  wxFileDialog dialog(this, _("Save an image file"), directory, wxString(), filter,
                      wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
  if (ShowDialog(dialog) != wxID_OK) return {};
  const wxString chosen = dialog.GetPath();
  const wxString file = CompleteFileName(chosen, filter);
  if (file == chosen || !wxFileName::FileExists(file)) return file;
  // The file dialog has asked for the name without its extension only.
  wxMessageDialog question(
      this,
      wxString::Format(_("The file \"%s\" exists already. Do you want to replace it?"),
                       wxFileName(file).GetFullName()),
      wxMessageBoxCaptionStr, wxYES_NO | wxNO_DEFAULT | wxICON_WARNING);
  return ShowDialog(question) == wxID_YES ? file : wxString();
}

void MainFrame::BeginCapture(const CaptureRequest& request, const wxString& file) {
  bool started = false;
  const bool idle = WithIdleRenderer([&](RaytraceImpl& renderer) {
    painter_.KeepPicture(renderer);
    capture_ = std::make_unique<CaptureInHand>(
        renderer,
        ImageCapture::Job{renderer.PendingCamera(), request.width, request.height, PathOf(file)},
        [this] { gui_.Post([this] { EndCapture(); }); });
    started = capture_->capture.Start();
    capturing_ = started;
    if (started) return;
    capture_.reset();
    renderer.StartRenderSameCamera(ModeStill);
  });
  if (!idle) return;
  if (!started) {
    wxMessageDialog message(this, MemoryRefusedText(wxSize(request.width, request.height)),
                            wxMessageBoxCaptionStr, wxOK | wxICON_ERROR);
    ShowDialog(message);
    return;
  }
  capture_->file = file;
  capture_->cameraLink = cameraLink_.exchange(false);
  SetInteractive(false);
  if (!progressDialog_) progressDialog_ = new ProgressCancelDialog(this);
  progressDialog_->Reset(_("Capture an image"), _("Rendering..."));
  progressDialog_->Show();
  capture_->timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { FollowCapture(); });
  capture_->timer.Start(kLookMilliseconds);
}

void MainFrame::FollowCapture() {
  if (!capture_) return;
  ImageCapture& capture = capture_->capture;
  if (progressDialog_->Cancelled()) capture.Cancel();
  if (capture.CurrentStage() == ImageCapture::Stage::kRendering) {
    const int percent = static_cast<int>(std::lround(kRenderedPercent * capture.Progress()));
    progressDialog_->ShowProgress(percent, _("Rendering..."));
  } else {
    progressDialog_->EnableCancel(false);
    progressDialog_->ShowProgress(kRenderedPercent, _("Writing a file222..."));
  }
}

void MainFrame::EndCapture() {
  if (!capture_) return;
  const std::unique_ptr<CaptureInHand> ended = std::move(capture_);
  ended->timer.Stop();
  ImageCapture::Outcome outcome = ImageCapture::Outcome::kCancelled;
  {
    const WaitScope wait(*this);
    outcome = ended->capture.Finish([] { YieldToWindows(); });
  }
  cameraLink_ = ended->cameraLink;
  if (outcome != ImageCapture::Outcome::kCancelled) NoteCaptured(outcome, ended->file);
  progressDialog_->ShowProgress(100, _("Writing a file..."));
  progressDialog_->Hide();
  OnInternalIdle();
  ShowViewAgain();
  SetInteractive(true);
}

void MainFrame::NoteCaptured(ImageCapture::Outcome outcome, const wxString& file) {
  wxConfigBase* settings = wxConfigBase::Get();
  settings->Write(kDirectoryKey, wxFileName(file).GetPath());
  settings->Write(kFileNameKey, file);
  settings->Flush();
  const std::string name = file.ToStdString(wxConvUTF8);
  if (outcome == ImageCapture::Outcome::kSaved) {
    Log(LogLevel::kInfo, "image written: " + name);
    return;
  }
  const bool unknown = outcome == ImageCapture::Outcome::kUnknownFormat;
  Log(LogLevel::kWarning,
      (unknown ? "no image format has the extension of " : "could not write the image ") + name);
}

void MainFrame::ShowViewAgain() {
  WithIdleRenderer([this](RaytraceImpl& renderer) {
    capturing_ = false;
    if (!isResizing_ && view_->GetClientSize() != pictureSize_) {
      ResizeTargets(renderer, RaytraceImpl::kKeepAntialias);
    }
    const RenderCamera camera =
        std::exchange(hostCamera_, std::nullopt).value_or(renderer.PendingCamera());
    renderer.StartRender(camera.position, camera.forward, camera.up, camera.fieldOfView,
                         camera.target, ModeStill, true);
  });
}

}  // namespace qv

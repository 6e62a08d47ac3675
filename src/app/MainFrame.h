#pragma once

#include <wx/dialog.h>
#include <wx/font.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "FrameWindow.h"
#include "app/EyeHeightPopUp.h"
#include "app/GuiExecutor.h"
#include "app/PanelSite.h"
#include "app/PicturePainter.h"
#include "app/SharedSlot.h"
#include "app/ViewNavigation.h"
#include "link/IQuorvane.h"
#include "link/IpcInterfaceApp.h"
#include "output/ImageCapture.h"
#include "presets/LightImageSettings.h"
#include "render/RaytraceImpl.h"

class wxDialog;

namespace qv {

class LightPanel;
class LightSite;
class LogPanel;
class PresetsPanel;
class PresetsSite;
class ProgressCancelDialog;
class WindowLayout;
struct CaptureRequest;

// The one top-level window. It shows the renderer's picture, owns the renderer and the link to the
// host, and carries out the host's commands.
//
// Windows are touched on the GUI thread only. Commands arrive on the link's listener thread and
// finished pictures on the render thread; both hand what concerns windows to the executor. The
// frame comes up disabled, and is enabled when a scene is complete.
class MainFrame : public FrameWindow, public IQuorvane, private PanelSite {
 public:
  // The host's message window and process id, as on the command line.
  MainFrame(wxWindow* parent, std::uint32_t hostWindow, std::uint32_t processId);
  ~MainFrame() override;

  // The host's commands; MainFrameLink.cpp.
  void SceneComplete() override;
  void SetCamera(const Vec3& eye, const Vec3& direction, const Vec3& up, float fieldOfView,
                 const Vec3& target, bool showProgress) override;
  std::int32_t AddMaterial(const MaterialParameters& parameters) override;
  void AddPointLight(const Vec3& color, const Vec3& position) override;
  void AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                    float innerAngle, float outerAngle) override;
  void AddDirectionalLight(const Vec3& color, const Vec3& direction) override;
  void AddLEMLight(const Vec3& emission, std::span<const float> vertices) override;
  void AddMeshData(std::span<const MeshVertex> vertices,
                   std::span<const MeshTriangle> triangles) override;
  void SetModelDirectory(const std::string& text) override;
  void BeginBillboard() override;
  void EndBillboard(const Vec3& position, const Vec2& direction) override;
  void BeginStaticMesh() override;
  void EndMesh() override;
  void SetLocationAndTime(const LocationAndTime& when) override;
  void SetStatusMessage(const std::string& text) override;
  void SetProgress(float value) override;
  bool IsCameraLinked() override;

  // Brings the frame to the screen and lets it paint itself. A close that comes already now is put
  // off until the application's own event loop runs, which it has to end.
  void ShowFirst();

  // Asks the host for its place, time and camera, and shows them.
  void SynchronizeCamera();
  // Begins anew with an empty renderer and asks the host for the whole scene.
  void ReloadData();

 private:
  // Marks a wait on the GUI thread during which events are handled. A close that comes meanwhile is
  // put off until the wait is over, since it would take away what is being waited for.
  class WaitScope;
  struct CaptureInHand;

  void HandleFrameMessage(std::uint32_t number) override;
  void OnSizeMoveEntered() override;
  void OnSizeMoveExited() override;
  void OnFrameSize() override;
  void OnClose(wxCloseEvent& event) override;
  void OnViewErase(wxEraseEvent& event) override;
  void OnViewPaint(wxPaintEvent& event) override;
  // What moves the camera; MainFrameNavigation.cpp.
  RaytraceImpl* NavigableRenderer() const override;
  IpcInterfaceApp* Link() const override { return link_.get(); }
  wxSize PictureSize() const override { return pictureSize_; }
  bool FollowsCamera() const override { return cameraLink_; }
  float EyeHeight() const override { return eyeHeight_; }
  void RefreshStatusBar() override { PostStatusUpdate(); }
  void CameraStepped() override;
  void OnFlyMode(wxCommandEvent& event) override;
  void OnWalkMode(wxCommandEvent& event) override;
  void OnResetCameraRoll(wxCommandEvent& event) override;
  void OnStatusBarLeftDown(wxMouseEvent& event) override;
  void FollowNavigationMode();
  void SetEyeHeight(float height);
  void OnCameraLink(wxCommandEvent& event) override;
  void OnSynchronizeCamera(wxCommandEvent& event) override;
  void OnBackground(wxCommandEvent& event) override;
  void OnReloadData(wxCommandEvent& event) override;
  void OnPreferences(wxCommandEvent& event) override;
  void OnAmbientOcclusion(wxCommandEvent& event) override;
  void OnLEM(wxCommandEvent& event) override;
  void OnCapture(wxCommandEvent& event) override;

  // The floating panels; MainFramePanels.cpp.
  void MakePanels();
  void ShowPanelsOfLastTime();
  void HidePanels();
  void DestroyPanels();
  // Layouts and what else the panels keep from one run to the next.
  void SaveLayouts();
  void BindPanelRules();
  void EnablePanels(bool enable);
  // Shows what came with a scene.
  void RefillPanels();
  void OnPresetsPanel(wxCommandEvent& event) override;
  void OnLightPanel(wxCommandEvent& event) override;
  RaytraceImpl* Renderer() const override { return renderer_.get(); }
  RaytraceImpl* SceneRenderer() const override;
  void ShowAdjustedPicture() override;
  bool CloseAsked() const override { return closeAsked_; }
  void PlayingEnded() override { CatchUpWithClose(); }
  bool IsPlaying() const;

  // Dialogs and update rules; MainFrameWindows.cpp.
  void BindUpdateRules();
  // Shows a modal dialog and gives its result, or wxID_CANCEL when the frame was closed meanwhile:
  // then the frame goes as soon as its handlers have returned.
  int ShowDialog(wxDialog& dialog);

  // Image capture; MainFrameCapture.cpp.
  // The name of the file to write; empty if the user does not want it any more.
  wxString AskForCaptureFile(const wxString& filter);
  void BeginCapture(const CaptureRequest& request, const wxString& file);
  void FollowCapture();
  // Takes the renderer back from a capture, waiting for its end, and shows the view again. Without
  // a capture it does nothing.
  void EndCapture();
  void NoteCaptured(ImageCapture::Outcome outcome, const wxString& file);
  void ShowViewAgain();

  // Makes a renderer with pictures of the present view size. `antialiasIndex` as for
  // RaytraceImpl::ResizeTargets.
  void CreateRenderer(int antialiasIndex);
  void DestroyRenderer();
  // Ends the running job or capture, with the windows alive meanwhile, and calls `work` before
  // another job can begin. False, without the call, if there is no renderer, or if this or another
  // wait is under way already further up the stack.
  bool WithIdleRenderer(const std::function<void(RaytraceImpl&)>& work);
  // Gives the idle renderer's pictures the size of the view, with fewer samples at edges than asked
  // for where the memory is not enough.
  void ResizeTargets(RaytraceImpl& renderer, int antialiasIndex);
  // After a change of size: the picture once more, if its size is no longer that of the view.
  void FollowViewSize();
  // Whether something is on the stack that a close would take the frame away from.
  bool MustFinishFirst() const;
  // Closes the frame soon if that was asked for while it could not be done, or ends the dialog that
  // still stands in the way.
  void CatchUpWithClose();
  // Disables or enables all that is in the frame.
  void EnableContents(bool enable);
  void SetInteractive(bool interactive);
  // Ends everything that runs beside the GUI thread. A second call does nothing.
  void Shutdown();
  void SaveSettings();

  void PictureStands();  // render thread
  void ShowPicture();
  void PaintMargins(wxDC& dc, const PixelRectangle& picture);
  void PaintStatistics(wxDC& dc);
  void ReportShownPicture();
  void UpdateStatusBar();
  void PostStatusUpdate();                    // any thread
  void ShowStatusText(const wxString& text);  // any thread

  // Listener thread: calls `work` with the renderer, which is idle and stays so until the next
  // camera. False, without the call, when the frame is closing.
  bool ReceiveScene(const std::function<void(RaytraceImpl&)>& work);
  void LoadProperties();
  // Shows another background, and has the host keep it with the model.
  void ApplyBackground(std::int32_t backgroundType, std::int32_t cubeMapIndex);
  void SceneBuilt();

  wxFont statisticsFont_;
  bool isResizing_ = true;
  bool interactive_ = false;
  bool waiting_ = false;     // inside a wait that keeps windows alive; see WaitScope
  bool showing_ = false;     // inside ShowFirst
  bool closeAsked_ = false;  // the frame was closed meanwhile
  bool closing_ = false;
  bool showStatistics_ = true;
  bool pictureIsNew_ = false;           // taken, but not painted yet
  wxSize pictureSize_{0, 0};            // of the renderer's pictures
  bool sizeRefused_ = false;            // there was no memory for that size
  RenderStatistics pictureStatistics_;  // of the picture that the painter shows
  PicturePainter painter_;
  std::unique_ptr<ViewNavigation> navigation_;
  EyeHeightPopUp* eyeHeightPopUp_ = nullptr;  // a window of the frame's
  std::vector<wxDialog*> openDialogs_;        // modal, the innermost last
  std::vector<LightImageSettings> lightSets_;
  // What the host keeps of the presets, from the end of a scene until the panel has it.
  std::vector<std::byte> storedPresets_;
  std::unique_ptr<PresetsSite> presetsSite_;
  std::unique_ptr<LightSite> lightSite_;
  PresetsPanel* presetsPanel_ = nullptr;
  LightPanel* lightPanel_ = nullptr;
  LogPanel* logPanel_ = nullptr;
  ProgressCancelDialog* progressDialog_ = nullptr;  // made when it is first needed
  std::vector<std::unique_ptr<WindowLayout>> layouts_;
  std::vector<wxFrame*> panelsAtStart_;  // to be shown with the frame

  bool cameraLinkKnown_ = false;  // what the settings tell of it has been read
  std::atomic<bool> cameraLink_{false};
  std::atomic<bool> sceneShown_{false};
  // A scene is coming in: no job may run until the camera that follows it.
  std::atomic<bool> receiving_{true};
  std::atomic<bool> picturePosted_{false};
  std::atomic<bool> statusPosted_{false};
  std::atomic<float> progress_{0};
  std::atomic<float> eyeHeight_{70.0f};
  std::atomic<float> lightmapMeshSize_{2.0f};

  std::mutex textMutex_;
  wxString statusText_;      // under textMutex_
  wxString modelDirectory_;  // under textMutex_

  // Held while a job is started on the listener thread, and by the GUI thread from the end of a job
  // to the start of the next where the renderer must stay idle between.
  std::mutex jobGate_;
  bool capturing_ = false;                  // under jobGate_
  std::optional<RenderCamera> hostCamera_;  // under jobGate_: came during a capture
  GuiExecutor gui_;
  SharedSlot<RaytraceImpl> renderer_;
  std::unique_ptr<CaptureInHand> capture_;
  std::unique_ptr<IpcInterfaceApp> link_;
};

}  // namespace qv

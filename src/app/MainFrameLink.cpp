// What the main frame does with the host's commands, and what it asks of the host.

#include <wx/config.h>

#include <algorithm>
#include <exception>

#include "app/FrameMessages.h"
#include "app/MainFrame.h"
#include "app/ModelProperties.h"
#include "app/Preferences.h"
#include "core/Calendar.h"
#include "core/Log.h"
#include "platform/Clock.h"
#include "ui/CommandIds.h"

namespace qv {
namespace {

// Until windows that wait for the renderer are asked once more.
constexpr unsigned kAskAgainMilliseconds = 5;

// Reads one property if the host has it and its value makes sense.
template <class Parse, class Use>
bool ReadProperty(IpcInterfaceApp& link, const char* name, Parse&& parse, Use&& use) {
  const auto bytes = link.GetProperty(name);
  if (!bytes) return false;
  const auto value = parse(*bytes);
  if (!value) return false;
  use(*value);
  return true;
}

}  // namespace

bool MainFrame::ReceiveScene(const std::function<void(RaytraceImpl&)>& work) {
  // Usually the renderer is fresh. A host that sends more after the first camera meets one that may
  // be at work, and windows that may be waiting for it.
  while (!receiving_) {
    bool ending = true;
    gui_.Call([&] {
      WithIdleRenderer([this](RaytraceImpl&) { receiving_ = true; });
      ending = closing_ || renderer_.get() == nullptr;
    });
    if (receiving_) break;
    if (ending) return false;
    platform::SleepMilliseconds(kAskAgainMilliseconds);
  }
  return renderer_.Use(work);
}

std::int32_t MainFrame::AddMaterial(const MaterialParameters& parameters) {
  std::int32_t index = -1;  // refused, where there is no renderer
  ReceiveScene([&](RaytraceImpl& renderer) { index = renderer.AddMaterial(parameters); });
  return index;
}

void MainFrame::AddPointLight(const Vec3& color, const Vec3& position) {
  ReceiveScene([&](RaytraceImpl& renderer) { renderer.AddPointLight(color, position); });
}

void MainFrame::AddSpotLight(const Vec3& color, const Vec3& position, const Vec3& direction,
                             float innerAngle, float outerAngle) {
  ReceiveScene([&](RaytraceImpl& renderer) {
    renderer.AddSpotLight(color, position, direction, innerAngle, outerAngle);
  });
}

void MainFrame::AddDirectionalLight(const Vec3& color, const Vec3& direction) {
  ReceiveScene([&](RaytraceImpl& renderer) { renderer.AddDirectionalLight(color, direction); });
}

void MainFrame::AddLEMLight(const Vec3& emission, std::span<const float> vertices) {
  ReceiveScene([&](RaytraceImpl& renderer) { renderer.AddLEMLight(emission, vertices); });
}

void MainFrame::BeginStaticMesh() {
  ReceiveScene([](RaytraceImpl& renderer) { renderer.BeginStaticMesh(); });
}

void MainFrame::BeginBillboard() {
  ReceiveScene([](RaytraceImpl& renderer) { renderer.BeginBillboard(); });
}

void MainFrame::AddMeshData(std::span<const MeshVertex> vertices,
                            std::span<const MeshTriangle> triangles) {
  ReceiveScene([&](RaytraceImpl& renderer) { renderer.AddMeshData(vertices, triangles); });
}

void MainFrame::EndBillboard(const Vec3& position, const Vec2& direction) {
  ReceiveScene([&](RaytraceImpl& renderer) { renderer.EndBillboard(position, direction); });
}

void MainFrame::EndMesh() {
  ReceiveScene([](RaytraceImpl& renderer) { renderer.EndMesh(); });
}

void MainFrame::SetModelDirectory(const std::string& text) {
  const wxString directory = wxString::FromUTF8(text);
  const std::lock_guard lock(textMutex_);
  modelDirectory_ = directory;
}

void MainFrame::SetLocationAndTime(const LocationAndTime& when) {
  const double hours = when.hour + when.minute / 60.0 + when.second / 3600.0;
  const double julianDate =
      JulianDateFromCalendar(when.year, when.month, when.day, hours, when.longitude);
  renderer_.Use([&](RaytraceImpl& renderer) {
    renderer.SetLocationAndTime(when.sunRotation, when.latitude, when.longitude, julianDate,
                                static_cast<float>(when.timeZone));
  });
}

void MainFrame::SetCamera(const Vec3& eye, const Vec3& direction, const Vec3& up, float fieldOfView,
                          const Vec3& target, bool showProgress) {
  const bool started = renderer_.Use([&](RaytraceImpl& renderer) {
    const std::lock_guard gate(jobGate_);
    if (capturing_) {
      hostCamera_ = RenderCamera{eye, direction, up, fieldOfView, target};
      return;
    }
    // First, so that the first picture of the job finds them; until then there is none to be shown.
    receiving_ = false;
    sceneShown_ = true;
    renderer.StartRender(eye, direction, up, fieldOfView, target, ModeMotion, showProgress);
  });
  if (!started) return;
  // The view may have got another size while nothing was there to follow it.
  gui_.Post([this] { FollowViewSize(); });
}

void MainFrame::SceneComplete() {
  ShowStatusText(_("Processing objects..."));
  LoadProperties();
  PostStatusUpdate();
  try {
    ReceiveScene([this](RaytraceImpl& renderer) { renderer.BuildScene(NativeHandle()); });
  } catch (const std::exception& error) {
    // Most likely for want of memory. The window is there for the user all the same.
    Log(LogLevel::kError, std::string("the scene could not be built: ") + error.what());
  }
  gui_.Call([this] { SceneBuilt(); });
  ShowStatusText(wxString());
  gui_.Call([this] { SetInteractive(true); });
}

void MainFrame::LoadProperties() {
  const auto render = [this](auto&& work) { renderer_.Use(work); };

  BackgroundProperty background;
  ReadProperty(*link_, "background", ParseBackground,
               [&](const BackgroundProperty& stored) { background = stored; });
  render([&](RaytraceImpl& renderer) {
    renderer.SetBackground(background.backgroundType, background.cubeMapIndex);
  });
  ReadProperty(*link_, "brightness2", ParseBrightness, [&](const BrightnessProperty& stored) {
    render([&](RaytraceImpl& renderer) {
      ImageSettings settings = renderer.GetImageSettings();
      settings.brightness = stored.brightness;
      settings.contrast = stored.contrast;
      renderer.SetImageSettings(settings);
    });
  });
  ReadProperty(*link_, "gamma", ParseFloat, [&](float gamma) {
    render([&](RaytraceImpl& renderer) {
      ImageSettings settings = renderer.GetImageSettings();
      settings.gamma = gamma;
      renderer.SetImageSettings(settings);
      renderer.ComposeImage(true);
    });
  });
  ReadProperty(*link_, "eye_height", ParseFloat, [this](float height) { eyeHeight_ = height; });
  ReadProperty(*link_, "light_factors", ParseLightFactors, [&](const LightFactors& stored) {
    render([&](RaytraceImpl& renderer) { renderer.SetLightSettings(stored); });
  });
  ReadProperty(*link_, "lightMap_settings", ParseFloat,
               [this](float size) { lightmapMeshSize_ = size; });
  storedPresets_ = link_->GetProperty("presets").value_or(std::vector<std::byte>());
}

void MainFrame::ApplyBackground(std::int32_t backgroundType, std::int32_t cubeMapIndex) {
  RaytraceImpl* renderer = renderer_.get();
  if (!renderer || !link_) return;
  renderer->SetBackground(backgroundType, cubeMapIndex);
  link_->SetBackground(backgroundType, cubeMapIndex);
  // Where a scene is coming in, its camera brings the picture.
  if (!receiving_) renderer->StartRenderSameCamera(ModeStill);
}

void MainFrame::SceneBuilt() {
  sceneShown_ = false;
  painter_.Forget();
  RefillPanels();
  cameraLink_ = wxConfigBase::Get()->ReadBool("/Defaults/CameraLink", false);
  cameraLinkKnown_ = true;
  toolBar_->ToggleTool(kIdCameraLink, cameraLink_);
  if (!isResizing_ && view_->GetClientSize() != pictureSize_) {
    WithIdleRenderer(
        [this](RaytraceImpl& renderer) { ResizeTargets(renderer, RaytraceImpl::kKeepAntialias); });
  }
  OnInternalIdle();
}

void MainFrame::SetStatusMessage(const std::string& text) {
  ShowStatusText(wxString::FromUTF8(text));
}

void MainFrame::ShowStatusText(const wxString& text) {
  {
    const std::lock_guard lock(textMutex_);
    statusText_ = text;
  }
  PostStatusUpdate();
}

void MainFrame::SetProgress(float value) {
  progress_ = std::clamp(value, 0.0f, 1.0f);
  PostStatusUpdate();
}

void MainFrame::PostStatusUpdate() {
  if (!statusPosted_.exchange(true)) PostToSelf(WM_VIEWER_UPDATE_STATUS);
}

bool MainFrame::IsCameraLinked() {
  return cameraLink_;
}

void MainFrame::SynchronizeCamera() {
  if (closing_ || waiting_ || receiving_ || capture_ || !link_) return;
  if (const auto location = link_->GetLocation()) SetLocationAndTime(*location);
  const auto camera = link_->GetCamera();
  RaytraceImpl* renderer = renderer_.get();
  if (!camera || !renderer || receiving_) return;
  navigation_->SetOrbitPivot(camera->target);
  renderer->StartRender(camera->position, camera->forward, camera->up, camera->fieldOfView,
                        Vec3::Zero(), ModeStill, true);
}

void MainFrame::ReloadData() {
  if (closing_ || waiting_ || capture_ || !link_) return;
  SetInteractive(false);
  SaveSettings();
  DestroyRenderer();
  // The renderer's own antialias factor counts until the user confirms the preferences anew.
  CreateRenderer(RaytraceImpl::kKeepAntialias);
  link_->RequestResend();
}

}  // namespace qv

#include "app/PresetsSite.h"

#include <wx/evtloop.h>
#include <wx/utils.h>

#include <utility>

#include "core/Log.h"
#include "platform/Clock.h"

namespace qv {
namespace {

constexpr unsigned kWaitMilliseconds = 10;
// A renderer at work gets the processor; a frame is not asked for more often than that.
constexpr unsigned kBreathMilliseconds = 1;

RenderMode ModeOf(StageFrame frame) {
  switch (frame) {
    case StageFrame::kMoveStep:
      return ModePreview;
    case StageFrame::kMoveEnd:
      return ModeStill;
    case StageFrame::kPlayed:
      return ModeSunPreview;
    case StageFrame::kPlayEnd:
      break;
  }
  return ModeMotion;
}

// Everything that has come since, input too.
void HandleEvents() {
  if (wxEventLoopBase* loop = wxEventLoopBase::GetActive()) loop->YieldFor(wxEVT_CATEGORY_ALL);
}

}  // namespace

void PresetsSite::Play(const std::function<void()>& moves) {
  const wxBusyCursor busy;
  escape_.emplace();
  ++playing_;
  moves();
  if (--playing_ > 0) return;
  escape_.reset();
  Log(LogLevel::kInfo, "preset shown");
  FinishPicture();
  site_.PlayingEnded();
}

void PresetsSite::FinishPicture() {
  RaytraceImpl* renderer = site_.SceneRenderer();
  if (std::exchange(moving_, false) && renderer && !site_.CloseAsked()) {
    renderer->StartRenderSameCamera(ModeStill);
  }
}

PresetsSite::SunSite PresetsSite::Sun() {
  const RaytraceImpl* renderer = site_.Renderer();
  if (!renderer) return {};
  return {renderer->JulianDate(), renderer->Latitude(), renderer->Longitude()};
}

void PresetsSite::SendDateTime(int year, int month, int day, int hour, int minute, int second) {
  if (auto* link = site_.Link()) link->SendDateTime(year, month, day, hour, minute, second);
}

std::vector<HostPage> PresetsSite::GetPages() {
  auto* link = site_.Link();
  return link ? link->GetPages() : std::vector<HostPage>();
}

void PresetsSite::SetProperty(const std::string& name, std::span<const std::byte> value) {
  if (auto* link = site_.Link()) link->SetProperty(name, value);
}

double PresetsSite::Now() {
  return platform::NowSeconds();
}

RenderCamera PresetsSite::Camera() {
  const RaytraceImpl* renderer = site_.Renderer();
  return renderer ? renderer->PendingCamera() : RenderCamera();
}

void PresetsSite::SetSunDate(double julianDate) {
  RaytraceImpl* renderer = site_.SceneRenderer();
  if (!renderer) return;
  renderer->SetJulianDate(julianDate);
  site_.RefreshStatusBar();
}

void PresetsSite::Show(const RenderCamera& camera, StageFrame frame) {
  moving_ = frame == StageFrame::kMoveStep || frame == StageFrame::kPlayed;
  if (RaytraceImpl* renderer = site_.SceneRenderer()) {
    renderer->StartRender(camera.position, camera.forward, camera.up, camera.fieldOfView,
                          camera.target, ModeOf(frame), true);
  }
}

bool PresetsSite::FrameDone() {
  const RaytraceImpl* renderer = site_.SceneRenderer();
  return !renderer || renderer->State() == RenderState::kIdle ||
         renderer->State() == RenderState::kNone;
}

void PresetsSite::Yield() {
  HandleEvents();
  if (!FrameDone()) platform::SleepMilliseconds(kBreathMilliseconds);
}

void PresetsSite::Wait() {
  HandleEvents();
  platform::SleepMilliseconds(kWaitMilliseconds);
}

bool PresetsSite::StopAsked() {
  return (escape_ && escape_->Pressed()) || site_.CloseAsked() || !site_.SceneRenderer();
}

}  // namespace qv

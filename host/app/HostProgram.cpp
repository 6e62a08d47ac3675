#include "host/app/HostProgram.h"

#include <atomic>
#include <future>
#include <stdexcept>
#include <thread>
#include <utility>

#include "host/app/BackgroundWish.h"
#include "host/app/SceneProperties.h"
#include "host/app/Sunlight.h"
#include "platform/PathText.h"
#include "platform/ProgramPath.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

// How often it is asked what has happened.
constexpr milliseconds kAskingInterval{50};
// How long a viewer may take for its first answer, and for its end after its window was closed.
constexpr std::chrono::seconds kPatienceForStart{60};
constexpr milliseconds kPatienceForEnd{10000};
constexpr milliseconds kPatienceAfterFailure{2000};
constexpr milliseconds kLastMessage{20};

bool IsReady(std::future<std::optional<SentCounts>>& future, milliseconds time) {
  return future.wait_for(time) == std::future_status::ready;
}

std::string TextOf(const SentCounts& counts) {
  return "meshes " + std::to_string(counts.meshes) + ", triangles " +
         std::to_string(counts.triangles) + ", materials " + std::to_string(counts.materials) +
         ", textures " + std::to_string(counts.textures) + ", lights " +
         std::to_string(counts.lights) + ", area lights " + std::to_string(counts.areaLights);
}

}  // namespace

HostProgram::HostProgram(Options options, Console& console, std::function<int()> endRequested)
    : options_(std::move(options)),
      console_(console),
      endRequested_(std::move(endRequested)),
      properties_(options_.model, UserFolder()),
      session_(properties_, console_) {}

int HostProgram::Run() {
  for (const std::string& warning : properties_.warnings()) console_.Complain(warning);
  if (!FindViewer() || !SettleBackground()) return kFailure;
  LoadedScene result;
  if (const Event event = Load(result); event != Event::kDone) return End(event);
  if (!result.scene) {
    console_.Complain(result.error);
    return kFailure;
  }
  Show(std::move(result));
  const RenderCamera view = StartView(*scene_, SunlightAt(session_.Location()), options_.view);
  session_.SetCamera(view);
  console_.Tell("start view: " + TextOf(view));
  if (!StartViewer()) return kFailure;
  Event event = Send();
  if (event == Event::kDone) event = Serve();
  return End(event);
}

bool HostProgram::FindViewer() {
  viewer_ = options_.viewer.empty()
                ? platform::ProgramPath().parent_path() / platform::ProgramFileName("quorvane")
                : options_.viewer;
  std::error_code error;
  if (fs::is_regular_file(viewer_, error)) return true;
  console_.Complain("there is no viewer at " + platform::Utf8FromPath(viewer_) +
                    (options_.viewer.empty() ? "; --viewer PATH names another place" : ""));
  return false;
}

bool HostProgram::SettleBackground() {
  if (options_.background.empty()) return true;
  try {
    session_.SetForSession("background",
                           BackgroundProperty(options_.background, viewer_.parent_path()));
    return true;
  } catch (const std::runtime_error& error) {
    console_.Complain(error.what());
    return false;
  }
}

HostProgram::Event HostProgram::WaitUntil(const std::function<bool(milliseconds)>& done) {
  while (!done(kAskingInterval)) {
    if (endRequested_() != 0) return Event::kEndRequested;
    if (link_ && session_.viewerClosed()) return Event::kViewerClosed;
    if (link_ && !link_->ViewerRunning()) return EventOfEnd();
  }
  return Event::kDone;
}

// The viewer's last message may still be on its way when its process has ended.
HostProgram::Event HostProgram::EventOfEnd() {
  for (int i = 0; i < 10 && !session_.viewerClosed(); ++i)
    std::this_thread::sleep_for(kLastMessage);
  return session_.viewerClosed() ? Event::kViewerClosed : Event::kViewerDied;
}

HostProgram::Event HostProgram::Load(LoadedScene& result) {
  ModelLoader loader(options_.model, options_.load);
  const Event event = WaitUntil([&](milliseconds time) { return loader.WaitFor(time); });
  if (event == Event::kDone) {
    result = loader.Take();
  } else {
    loader.GiveUp();
    leftThreadBehind_ = true;
  }
  return event;
}

void HostProgram::Show(LoadedScene loaded) {
  scene_ = std::move(loaded.scene);
  // The time that was set in the viewer stays until the file has another one.
  const LocationAndTime when = PlaceAndTimeOf(options_.when, loaded.when);
  if (when != shownWhen_) session_.SetPlaceAndTime(when);
  shownWhen_ = when;
  SceneProperties properties = PropertiesOf(loaded.look, viewer_.parent_path());
  session_.SetDefaults(std::move(properties.values));
  Describe();
  for (const std::string& warning : properties.warnings) console_.Complain(warning);
}

void HostProgram::Describe() {
  const Vec3 size = scene_->bounds.sizes();
  console_.Tell("model: " + scene_->description);
  console_.Tell("size: " + std::to_string(size.x()) + " by " + std::to_string(size.y()) + " by " +
                std::to_string(size.z()) + " inches");
  for (const std::string& warning : scene_->warnings) console_.Complain(warning);
}

bool HostProgram::StartViewer() {
  link_ = HostLink::Create(session_);
  if (!link_) {
    console_.Complain("the link to the viewer can't be made");
    return false;
  }
  if (link_->StartViewer(platform::Utf8FromPath(viewer_))) return true;
  console_.Complain("the viewer " + platform::Utf8FromPath(viewer_) + " can't be started");
  return false;
}

HostProgram::Event HostProgram::Send() {
  session_.SetPages(scene_->cameras);
  const SendOptions options{options_.lights, options_.areaLights, session_.Location(),
                            session_.Camera()};
  std::atomic<bool> answered{false};
  const auto started = std::chrono::steady_clock::now();
  auto sending = std::async(std::launch::async, [&]() -> std::optional<SentCounts> {
    if (!link_->SetProgress(0)) return std::nullopt;
    answered = true;
    return SendScene(*link_, *scene_, options);
  });
  const Event event = WaitUntil([&](milliseconds time) {
    const bool late = std::chrono::steady_clock::now() - started > kPatienceForStart;
    if (late && !answered) link_->Interrupt();
    return IsReady(sending, time);
  });
  if (event == Event::kEndRequested) link_->Interrupt();
  // The command in flight ends with the viewer.
  if (event == Event::kViewerClosed && !IsReady(sending, kPatienceForEnd)) link_->KillViewer();
  const auto counts = sending.get();
  if (counts) console_.Tell("scene sent: " + TextOf(*counts));
  return counts || event != Event::kDone ? event : WhyNotSent(answered);
}

// Commands fail when the viewer ends, which it may be about to do.
HostProgram::Event HostProgram::WhyNotSent(bool answered) {
  const auto failed = std::chrono::steady_clock::now();
  const Event event = WaitUntil([&](milliseconds time) {
    std::this_thread::sleep_for(time);
    return std::chrono::steady_clock::now() - failed > kPatienceAfterFailure;
  });
  if (event != Event::kDone) return event;
  console_.Complain(answered ? "the viewer does not take the scene" : "the viewer does not answer");
  return Event::kFailed;
}

// What the model names may lie anywhere, so that nothing tells whether it has changed but reading
// it.
HostProgram::Event HostProgram::Reload() {
  LoadedScene result;
  if (const Event event = Load(result); event != Event::kDone) return event;
  if (result.scene) {
    Show(std::move(result));
  } else {
    console_.Complain(result.error + "; the scene as it was is sent again");
  }
  return Send();
}

HostProgram::Event HostProgram::Serve() {
  for (;;) {
    const Event event = WaitUntil([&](milliseconds time) {
      std::this_thread::sleep_for(time);
      return session_.TakeResendRequest();
    });
    if (event != Event::kDone) return event;
    if (const Event sent = Reload(); sent != Event::kDone) return sent;
  }
}

int HostProgram::End(Event event) {
  // Its temporary files would stay where the process ends without destructors.
  scene_.reset();
  if (!link_) return endRequested_();
  if (event == Event::kViewerClosed) return EndAfterClose();
  const auto code = link_->WaitForViewer(milliseconds(0));
  EndViewer();
  if (event == Event::kEndRequested) return endRequested_();
  if (event == Event::kFailed) return kFailure;
  console_.Complain("the viewer ended unexpectedly" +
                    (code ? ", with exit code " + std::to_string(*code) : ""));
  return kFailure;
}

void HostProgram::EndViewer() {
  link_->KillViewer();
  for (int i = 0; i < 100 && link_->ViewerRunning(); ++i) {
    std::this_thread::sleep_for(milliseconds(10));
  }
  link_.reset();
}

int HostProgram::EndAfterClose() {
  const auto code = link_->WaitForViewer(kPatienceForEnd);
  EndViewer();
  if (code == 0) {
    console_.Tell("viewer closed");
    return 0;
  }
  console_.Complain(code ? "the viewer was closed and ended with exit code " + std::to_string(*code)
                         : "the viewer was closed but did not end");
  return kFailure;
}

}  // namespace qv::host

#include "render/frame/FrameEngine.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <new>
#include <string>
#include <system_error>

#include "core/Log.h"
#include "platform/Clock.h"
#include "platform/Memory.h"
#include "platform/Threads.h"
#include "render/frame/TilePass.h"
#include "render/trace/FloatingPointMode.h"

namespace qv {
namespace {

// Tiles are numbered in 32 bits along a curve over a square: 2^15 a side.
constexpr int kLargestSide = kTileSide << 15;

// How long StopRender waits between two looks at the windows.
constexpr std::chrono::milliseconds kYieldInterval{5};
constexpr std::chrono::milliseconds kLockInterval{1};

RenderCamera Normalised(RenderCamera camera) {
  const auto unit = [](Vec3& v) {
    const float length = v.norm();
    if (length > 0) v /= length;
  };
  unit(camera.forward);
  unit(camera.up);
  return camera;
}

// What the pictures of that size take together.
std::uint64_t TargetBytes(int width, int height, int factor) {
  constexpr std::uint64_t kSampleBytes = 3 * sizeof(float);
  constexpr std::uint64_t kEdgeBytes = 4;
  constexpr std::uint64_t kScreenBytes = 3;
  const auto pixels = static_cast<std::uint64_t>(std::max(width, 0)) *
                      static_cast<std::uint64_t>(std::max(height, 0));
  const auto samples = static_cast<std::uint64_t>(factor) * static_cast<std::uint64_t>(factor);
  return pixels * (kSampleBytes * (1 + samples) + kEdgeBytes + kScreenBytes);
}

}  // namespace

FrameEngine::FrameEngine(RTCDevice device, RenderScene& scene, sky::Background& background,
                         int threadCount, int packetWidth)
    : device_(device),
      scene_(scene),
      background_(background),
      threadCount_(threadCount),
      packetWidth_(packetWidth),
      packets_(threadCount) {}

FrameEngine::~FrameEngine() {
  StopRender();
}

bool FrameEngine::ResizeTargets(int width, int height, int antialiasFactor) {
  const std::lock_guard lock(screenMutex_);
  antialiasFactor_ = antialiasFactor;
  samplesStand_ = false;
  if (AllocateTargets(width, height)) return true;
  base_ = {};
  samples_ = {};
  edgeMask_ = {};
  screen_ = {};
  return false;
}

bool FrameEngine::AllocateTargets(int width, int height) {
  const int largest = kLargestSide / antialiasFactor_;
  if (width > largest || height > largest) return false;
  base_ = {};
  samples_ = {};
  // Systems hand out memory that they have not got, and end the program that then uses it.
  if (TargetBytes(width, height, antialiasFactor_) > platform::AvailableMemory()) return false;
  if (!base_.Resize(width, height)) return false;
  if (!samples_.Resize(width * antialiasFactor_, height * antialiasFactor_)) return false;
  try {
    edgeMask_.Resize(width, height);
    screen_.Resize(width, height);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

void FrameEngine::StartRender(const RenderCamera& camera, RenderMode mode, bool showProgress) {
  Queue(&camera, mode, showProgress);
}

void FrameEngine::StartRenderSameCamera(RenderMode mode) {
  Queue(nullptr, mode, true);
}

void FrameEngine::Queue(const RenderCamera* camera, RenderMode mode, bool showProgress) {
  const std::lock_guard lock(lock_);
  if (camera != nullptr) {
    const std::lock_guard cameraLock(cameraMutex_);
    pendingCamera_ = Normalised(*camera);
  }
  showProgress_ = showProgress;
  pendingMode_ = mode;
  {
    const std::lock_guard settingsLock(settingsMutex_);
    pendingLightFactors_ = lightFactors_;
    pendingSwitches_ = switches_;
  }
  // Whoever waits in StopRender decides what comes next: a view that is moved all the time would
  // keep it there for ever.
  if (stopping_) return;
  abandon_ = false;
  const RenderState before = state_.exchange(RenderState::kQueued);
  if (before != RenderState::kNone && before != RenderState::kIdle) return;
  // A control thread that has set the state to idle touches nothing any more.
  if (controlThread_.joinable()) controlThread_.join();
  try {
    controlThread_ = std::thread([this] { ControlThread(); });
  } catch (const std::system_error& error) {
    Log(LogLevel::kError, std::string("no thread to render with: ") + error.what());
    state_ = before;
    done_.notify_all();
  }
}

void FrameEngine::ControlThread() {
  const FloatingPointMode mode;
  while (true) {
    {
      const std::lock_guard lock(lock_);
      if (state_ != RenderState::kQueued) {
        state_ = RenderState::kIdle;
        done_.notify_all();
        stopped_.End();
        return;
      }
      SetUpJob();
      state_ = RenderState::kRendering;
    }
    RunPasses();
  }
}

// With the lock held: the newest camera, factors and mode become the active ones.
void FrameEngine::SetUpJob() {
  ReportProgress(0.33f);
  if (background_.Update()) {
    const sky::SunRecord& sun = background_.sun();
    scene_.SetSun(RenderLight::Directional(sun.color, sun.direction));
  }
  ReportProgress(0.66f);

  const RenderCamera camera = PendingCamera();
  {
    const std::lock_guard lock(cameraMutex_);
    activeCamera_ = camera;
  }
  activeMode_ = pendingMode_;
  samplesStand_ = false;
  base_.rays = ComputePixelRays(camera, base_.width(), base_.height());
  samples_.rays = ComputePixelRays(camera, samples_.width(), samples_.height());
  {
    const std::lock_guard lock(screenMutex_);
    base_.passTime = 0;
    samples_.passTime = 0;
  }
  scene_.CommitForFrame(camera.forward);

  inputs_.scene = &scene_;
  inputs_.background = &background_.faces();
  inputs_.directions = &directions_;
  inputs_.factors = pendingLightFactors_;
  inputs_.switches = pendingSwitches_;
  inputs_.footprintScale = camera.fieldOfView / static_cast<float>(base_.height());
  inputs_.trace = {device_, &scene_, packetWidth_, inputs_.footprintScale, observer_};
  ReportProgress(1.0f);
}

void FrameEngine::RunPasses() {
  if (base_.height() < 1 || scene_.EmbreeScene() == nullptr) return;
  const std::span<const PassStep> steps = PassesOf(activeMode_);
  passCount_ = static_cast<float>(steps.size());
  passesDone_ = 0;
  for (const PassStep& step : steps) {
    passFraction_ = 0;
    if (!RunPass(step)) return;
    passFraction_ = 0;
    passesDone_ = passesDone_ + 1;
  }
}

bool FrameEngine::RunPass(const PassStep& step) {
  const bool antialias = step.pass == PassAntialias;
  RenderTarget& target = antialias ? samples_ : base_;
  inputs_.pass = step.pass;
  const double start = platform::NowSeconds();
  PassSetup setup;
  setup.in = &inputs_;
  setup.target = &target;
  setup.abortable = step.abortable;
  setup.state = &state_;
  setup.abandon = &abandon_;
  setup.fraction = &passFraction_;
  if (antialias) {
    MarkEdges(step.shownEvenIfLeft);
    setup.mask = &edgeMask_;
    setup.factor = antialiasFactor_;
    if (showProgress_) setup.progress = [this](float value) { ReportProgress(value); };
  }
  TilePass(setup, packets_).Run(threadCount_);
  if (abandon_) return false;
  if (step.abortable && !step.shownEvenIfLeft && LeaveRequested()) return false;

  pass_ = step.pass;
  samplesStand_ = antialias;
  Show(target, start);
  if (step.reported && !offline && callbacks_.passDone) callbacks_.passDone();
  return true;
}

void FrameEngine::MarkEdges(bool clearSamples) {
  edgeMask_.Mark(screen_);
  // Only a pass that is shown although it was left ever shows samples that it did not trace.
  if (!clearSamples) return;
  for (int y = 0; y < samples_.height(); ++y) std::memset(samples_.Row(y), 0, samples_.pitch());
}

void FrameEngine::ComposeImage(bool useAntialiasData) {
  // With the lock no other thread begins a job meanwhile; where it is held one is beginning.
  const std::unique_lock lock(lock_, std::try_to_lock);
  if (!lock.owns_lock() || state_ != RenderState::kIdle) return;
  const std::lock_guard screenLock(screenMutex_);
  Compose(useAntialiasData);
}

void FrameEngine::Show(RenderTarget& target, double start) {
  const std::lock_guard lock(screenMutex_);
  Compose(false);
  target.passTime = platform::NowSeconds() - start;
  screen_.times = {base_.passTime, samples_.passTime};
}

void FrameEngine::Compose(bool useAntialiasData) {
  if (base_.height() < 1) return;
  if (pass_ == PassPreview) {
    ComposePreview(base_, threadCount_, screen_);
  } else if (samplesStand_ && (pass_ == PassAntialias || useAntialiasData)) {
    ComposeAntialiased(base_, samples_, antialiasFactor_, edgeMask_, adjustment_, threadCount_,
                       screen_);
  } else {
    ComposeBase(base_, adjustment_, threadCount_, screen_);
  }
}

void FrameEngine::StopRender() {
  // The lock is held while a scene is committed, which may take long: the windows stay alive
  // meanwhile.
  std::unique_lock lock(lock_, std::try_to_lock);
  while (!lock.owns_lock()) {
    if (yield_) yield_();
    stopped_.Wait(kLockInterval);
    static_cast<void>(lock.try_lock());
  }
  if (stopping_) return;
  stopping_ = true;
  if (state_ == RenderState::kQueued || state_ == RenderState::kRendering) {
    state_ = RenderState::kStopping;
  }
  while (state_ == RenderState::kStopping) {
    lock.unlock();
    if (!stopped_.Wait(kYieldInterval) && yield_) yield_();
    lock.lock();
  }
  stopping_ = false;
  if (controlThread_.joinable()) controlThread_.join();
}

bool FrameEngine::WaitUntilDone(std::optional<double> seconds) {
  std::unique_lock lock(lock_);
  const auto idle = [this] { return state_ == RenderState::kIdle || state_ == RenderState::kNone; };
  if (!seconds) {
    done_.wait(lock, idle);
    return true;
  }
  return done_.wait_for(lock, std::chrono::duration<double>(*seconds), idle);
}

float FrameEngine::JobProgress() const {
  const float count = passCount_;
  return count > 0 ? std::min((passesDone_ + passFraction_) / count, 1.0f) : 0.0f;
}

bool FrameEngine::LeaveRequested() const {
  const RenderState state = state_;
  return state == RenderState::kStopping || state == RenderState::kQueued;
}

RenderCamera FrameEngine::PendingCamera() const {
  const std::lock_guard lock(cameraMutex_);
  return pendingCamera_;
}

RenderCamera FrameEngine::ActiveCamera() const {
  const std::lock_guard lock(cameraMutex_);
  return activeCamera_;
}

void FrameEngine::SetAdjustment(const Adjustment& adjustment) {
  const std::lock_guard lock(screenMutex_);
  adjustment_ = adjustment;
}

void FrameEngine::SetLightFactors(const LightFactors& factors) {
  const std::lock_guard lock(settingsMutex_);
  lightFactors_ = factors;
}

void FrameEngine::SetSwitches(const ShadeSwitches& switches) {
  const std::lock_guard lock(settingsMutex_);
  switches_ = switches;
}

void FrameEngine::ReadScreen(const std::function<void(const ScreenImage&)>& read) const {
  const std::lock_guard lock(screenMutex_);
  read(screen_);
}

PassTimes FrameEngine::Times() const {
  const std::lock_guard lock(screenMutex_);
  return {base_.passTime, samples_.passTime};
}

void FrameEngine::ReportProgress(float value) const {
  if (!offline && callbacks_.progress) callbacks_.progress(value);
}

}  // namespace qv

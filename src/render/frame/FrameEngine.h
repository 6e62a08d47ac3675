#pragma once

#include <embree3/rtcore.h>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

#include "core/RenderCamera.h"
#include "platform/PumpedWait.h"
#include "render/RenderModes.h"
#include "render/frame/EdgeMask.h"
#include "render/frame/PassSequence.h"
#include "render/frame/RenderTarget.h"
#include "render/image/ComposeImage.h"
#include "render/image/ScreenImage.h"
#include "render/shade/ShadeInputs.h"
#include "render/trace/ThreadPackets.h"
#include "sky/Background.h"

namespace qv {

// Runs jobs: takes the newest camera, prepares the scene, traces the passes of the mode, and writes
// the picture.
//
// One control thread lives for each burst of jobs and makes the workers of each pass anew. `lock_`
// guards what is pending and the changes of state, and is held while a job is set up;
// `screenMutex_` guards the picture and the figures that go with it.
class FrameEngine {
 public:
  // Called on the engine's threads while not offline; each may be empty.
  struct Callbacks {
    std::function<void()> passDone;
    std::function<void(float)> progress;
  };

  FrameEngine(RTCDevice device, RenderScene& scene, sky::Background& background, int threadCount,
              int packetWidth);
  ~FrameEngine();  // stops the job

  void SetCallbacks(Callbacks callbacks) { callbacks_ = std::move(callbacks); }
  void SetYield(std::function<void()> yield) { yield_ = std::move(yield); }

  // No job may run. Factor: samples a pixel on each axis. False if the memory is refused; there is
  // no picture then.
  bool ResizeTargets(int width, int height, int antialiasFactor);
  int AntialiasFactor() const { return antialiasFactor_; }

  void StartRender(const RenderCamera& camera, RenderMode mode, bool showProgress);
  void StartRenderSameCamera(RenderMode mode);
  void StopRender();
  // Has the queued or running job left at the next tile, whatever its mode; nothing more of it is
  // shown. Any thread.
  void AbandonRender() { abandon_ = true; }
  bool WaitUntilDone(std::optional<double> seconds);
  // How far the running job is, 0 to 1, each pass counted alike. Any thread.
  float JobProgress() const;

  RenderState State() const { return state_; }
  RenderCamera PendingCamera() const;
  RenderCamera ActiveCamera() const;
  int Width() const { return base_.width(); }
  int Height() const { return base_.height(); }

  void SetAdjustment(const Adjustment& adjustment);
  // Both act from the next StartRender on.
  void SetLightFactors(const LightFactors& factors);
  void SetSwitches(const ShadeSwitches& switches);
  void ComposeImage(bool useAntialiasData);
  // Shows the rays of the following jobs to an observer; null ends it. No job may run.
  void SetObserver(TraceObserver* observer) { observer_ = observer; }

  void ReadScreen(const std::function<void(const ScreenImage&)>& read) const;
  // Of the current job.
  PassTimes Times() const;

  std::atomic<bool> offline{false};

 private:
  bool AllocateTargets(int width, int height);
  void Queue(const RenderCamera* camera, RenderMode mode, bool showProgress);
  void ControlThread();
  void SetUpJob();
  void RunPasses();
  // False if the pass was left and nothing of it is shown.
  bool RunPass(const PassStep& step);
  void MarkEdges(bool clearSamples);
  // Writes the picture of a pass and its time, so that nobody sees one without the other.
  void Show(RenderTarget& target, double start);
  // With the picture's lock held.
  void Compose(bool useAntialiasData);
  void ReportProgress(float value) const;
  bool LeaveRequested() const;

  RTCDevice device_;
  RenderScene& scene_;
  sky::Background& background_;
  const int threadCount_;
  const int packetWidth_;
  Callbacks callbacks_;
  std::function<void()> yield_;
  TraceObserver* observer_ = nullptr;

  mutable std::mutex lock_;
  std::condition_variable done_;
  std::atomic<RenderState> state_{RenderState::kNone};
  bool stopping_ = false;  // a StopRender is waiting
  platform::PumpedWait stopped_;
  std::thread controlThread_;
  RenderMode pendingMode_ = ModeMotion;
  // What the next job takes over has a lock of its own: nobody who sets it waits for a scene's
  // set-up.
  mutable std::mutex settingsMutex_;
  LightFactors lightFactors_;
  LightFactors pendingLightFactors_;
  ShadeSwitches switches_;
  ShadeSwitches pendingSwitches_;
  std::atomic<bool> showProgress_{false};
  std::atomic<bool> abandon_{false};
  std::atomic<float> passFraction_{0};
  std::atomic<float> passesDone_{0};
  std::atomic<float> passCount_{1};

  // Cameras have a lock of their own, so that nobody waits for a scene's set-up to read one.
  mutable std::mutex cameraMutex_;
  RenderCamera pendingCamera_;
  RenderCamera activeCamera_;

  // The job in hand: control thread only.
  RenderMode activeMode_ = ModeMotion;
  // Drawn before the first job needs them.
  const SampleDirections& directions_ = SampleDirections::Shared();
  ShadeInputs inputs_;
  PacketPool packets_;
  EdgeMask edgeMask_;
  RenderTarget base_;
  RenderTarget samples_;
  int antialiasFactor_ = 2;
  RenderPass pass_ = PassFull;  // the last pass that was composed
  bool samplesStand_ = false;   // the supersampled picture belongs to the base picture

  mutable std::mutex screenMutex_;
  Adjustment adjustment_{0, 0, 1};
  ScreenImage screen_;
};

}  // namespace qv

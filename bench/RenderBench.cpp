#include "RenderBench.h"

#include <omp.h>

#include <algorithm>
#include <limits>
#include <vector>

#include "BareLoops.h"
#include "platform/Clock.h"
#include "render/frame/FrameEngine.h"

namespace qv::bench {
namespace {

// Afternoon sun from the south-west.
const Vec3 kTowardsSun = Vec3(-0.45f, -0.55f, 0.7f).normalized();

// The shortest time that was seen: what the rest of the machine takes away only ever adds.
struct Shortest {
  double seconds = std::numeric_limits<double>::infinity();
  void Add(double measured) { seconds = std::min(seconds, measured); }
};

// The renderer's parts without a window, filled with a scene.
class Bench {
 public:
  Bench(const BenchScene& scene, int width, int height)
      : threads_(std::min(omp_get_num_procs(), 32)),
        built_(scene),
        scene_(built_.scene()),
        engine_(built_.device(), scene_, background_, threads_, 8) {
    engine_.SetCallbacks({[this] { PassDone(); }, {}});
    engine_.ResizeTargets(width, height, 2);
    SetAmbientOcclusion(false);
    camera_ = scene.camera;
    RunPreview();
  }
  ~Bench() { engine_.StopRender(); }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  // Without it the only occlusion rays are those of the sun.
  void SetAmbientOcclusion(bool use) { engine_.SetSwitches({.useAmbientOcclusion = use}); }

  // Seconds of writing the traced picture anew with a gamma, the preparation of its power included.
  double RunCompose() {
    const double start = platform::NowSeconds();
    engine_.SetAdjustment({0, 0, 2.2f});
    engine_.ComposeImage(false);
    const double seconds = platform::NowSeconds() - start;
    engine_.SetAdjustment({0, 0, 1});
    return seconds;
  }

  // Seconds from StartRender to passDone.
  double RunPreview() { return Run(ModePreview); }

  // Seconds of PassFull alone, with a sun, or with one from nowhere that no surface faces.
  double RunFull(bool sun) {
    scene_.SetSun(
        RenderLight::Directional(Vec3(1, 1, 1), sun ? Vec3(-kTowardsSun) : Vec3(0, 0, 0)));
    Run(ModeStill);
    return engine_.Times().base;
  }

  // Shows the rays of a PassFull with the sun.
  void RecordFull(RecordedOcclusion& recorder) {
    recorder_ = &recorder;
    engine_.SetObserver(&recorder);
    RunFull(true);
    engine_.SetObserver(nullptr);
    recorder_ = nullptr;
  }

  float FootprintScale() const {
    return camera_.fieldOfView / static_cast<float>(engine_.Height());
  }

  const RenderScene& scene() const { return scene_; }
  int threads() const { return threads_; }
  const RenderCamera& camera() const { return camera_; }

 private:
  // An antialiasing pass that would follow is not looked at.
  void PassDone() {
    passEnd_ = platform::NowSeconds();
    if (recorder_ != nullptr) recorder_->Finish();
    engine_.AbandonRender();
  }

  double Run(RenderMode mode) {
    const double start = platform::NowSeconds();
    engine_.StartRender(camera_, mode, false);
    engine_.WaitUntilDone(std::nullopt);
    return passEnd_ - start;
  }

  int threads_;
  BareScene built_;
  RenderScene& scene_;
  sky::Background background_;
  FrameEngine engine_;
  RenderCamera camera_;
  double passEnd_ = 0;
  RecordedOcclusion* recorder_ = nullptr;
};

struct FullFigures {
  double rate, bareRate;
};

// The whole of PassFull with ambient occlusion beside its occlusion rays alone.
FullFigures MeasureFull(Bench& bench, int runs) {
  bench.SetAmbientOcclusion(true);
  RecordedOcclusion recorded(bench.scene(), bench.FootprintScale());
  bench.RecordFull(recorded);
  Shortest full, bare;
  BareRun run;
  for (int i = 0; i < runs; ++i) {
    run = recorded.Run(bench.threads());
    bare.Add(run.seconds);
    full.Add(bench.RunFull(true));
  }
  bench.SetAmbientOcclusion(false);
  const auto rays = static_cast<double>(run.rays);
  return {rays / full.seconds, rays / bare.seconds};
}

// What the sun's rays take within a pass, and bare.
struct ShadowFigures {
  double rate, bareRate;
  Median ratio;
};

// A pass takes several times as long as its shadow rays, so that the difference of two passes is as
// noisy as the machine: it is taken from runs that follow each other, in turns either of them
// first, and many times. The ratio is that of the median cost, whose bounds may be 0 or less.
ShadowFigures MeasureShadows(Bench& bench, int rounds) {
  RecordedOcclusion recorded(bench.scene(), bench.FootprintScale());
  bench.RecordFull(recorded);
  std::vector<double> within, bare, cost;
  BareRun run;
  for (int i = 0; i < rounds; ++i) {
    const bool sunFirst = i % 2 == 0;
    const double first = bench.RunFull(sunFirst);
    const double second = bench.RunFull(!sunFirst);
    run = recorded.Run(bench.threads());
    within.push_back(sunFirst ? first - second : second - first);
    bare.push_back(run.seconds);
    cost.push_back(within.back() / bare.back());
  }
  const auto rays = static_cast<double>(run.rays);
  const auto inverse = [](double v) {
    return v > 0 ? 1 / v : std::numeric_limits<double>::infinity();
  };
  const Median costs = MedianOf(cost);
  return {rays * inverse(Quantile(within, 0.5)),
          rays / Quantile(bare, 0.5),
          {inverse(costs.value), inverse(costs.high), inverse(costs.low)}};
}

}  // namespace

RenderFigures MeasureRendering(const BenchScene& scene, int width, int height, int runs) {
  constexpr int kFullRuns = 4;
  constexpr int kShadowRounds = 100;
  Bench bench(scene, width, height);
  Shortest preview, intersect, compose;
  BareRun bare;
  for (int i = 0; i < runs; ++i) {
    bare = BareIntersect(bench.scene(), bench.camera(), width, height, bench.threads());
    intersect.Add(bare.seconds);
    preview.Add(bench.RunPreview());
    compose.Add(bench.RunCompose());
  }
  const auto primary = static_cast<double>(bare.rays);
  const ShadowFigures shadows = MeasureShadows(bench, kShadowRounds);
  const FullFigures withOcclusion = MeasureFull(bench, kFullRuns);
  RenderFigures figures;
  figures.previewRate = primary / preview.seconds;
  figures.bareIntersectRate = primary / intersect.seconds;
  figures.previewRatio = figures.previewRate / figures.bareIntersectRate;
  figures.shadowRate = shadows.rate;
  figures.bareOccludedRate = shadows.bareRate;
  figures.shadowRatio = shadows.ratio;
  figures.fullRate = withOcclusion.rate;
  figures.bareFullRate = withOcclusion.bareRate;
  figures.fullRatio = withOcclusion.rate / withOcclusion.bareRate;
  figures.composeToPreview = compose.seconds / preview.seconds;
  return figures;
}

}  // namespace qv::bench

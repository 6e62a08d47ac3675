#include "WalkBench.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <numbers>
#include <thread>
#include <vector>

#include "BareLoops.h"
#include "Samples.h"
#include "ViewerProcess.h"
#include "e2e/support/ViewerWindow.h"
#include "platform/Clock.h"
#include "render/frame/FrameEngine.h"

namespace qv::bench {
namespace {

constexpr int kSteps = 200;
constexpr std::chrono::seconds kPatience{60};
constexpr const char* kShown = "picture shown: ";
constexpr const char* kFinished = "picture shown: antialiased";

struct Box {
  Vec3 low{Vec3::Constant(1e30f)}, high{Vec3::Constant(-1e30f)};
};

Box BoundsOf(const BenchScene& scene) {
  Box box;
  for (const BenchMesh& mesh : scene.meshes) {
    for (const MeshVertex& vertex : mesh.vertices) {
      const Eigen::Map<const Vec3> position(vertex.position);
      box.low = box.low.cwiseMin(position);
      box.high = box.high.cwiseMax(position);
    }
  }
  return box;
}

// From outside in through the middle of the ground floor and out again on the other side, in a slow
// curve, looking about: near walls and wide views, as on a real walk.
std::vector<RenderCamera> WalkThrough(const BenchScene& scene) {
  constexpr float kEyeHeight = 66;
  const Box box = BoundsOf(scene);
  const Vec3 middle = (box.low + box.high) / 2;
  const float reach = 0.9f * std::max(box.high.x() - box.low.x(), box.high.y() - box.low.y());
  std::vector<RenderCamera> walk;
  for (int i = 0; i < kSteps; ++i) {
    const float t = static_cast<float>(i) / (kSteps - 1);  // 0 to 1
    const float along = reach * (t - 0.5f) * 2;
    const float aside = 0.15f * reach * std::sin(t * 2 * std::numbers::pi_v<float>);
    const float turn = 0.6f * std::sin(t * 6 * std::numbers::pi_v<float>);
    RenderCamera camera = scene.camera;
    camera.position = Vec3(middle.x() + aside, middle.y() + along, box.low.z() + kEyeHeight);
    camera.forward = Vec3(std::sin(turn), std::cos(turn), 0);
    camera.up = Vec3(0, 0, 1);
    walk.push_back(camera);
  }
  return walk;
}

// The size of the picture as the viewer tells it.
std::optional<std::array<int, 2>> PictureSize(const LogReader::Line& line) {
  const std::size_t start = line.text.find(kShown);
  std::array<int, 2> size{};
  char kind[32];
  if (start == std::string::npos ||
      std::sscanf(line.text.c_str() + start, "picture shown: %31s %dx%d", kind, &size[0],
                  &size[1]) != 3) {
    return std::nullopt;
  }
  return size;
}

// A viewer with the scene in it, its first pictures shown.
class Walker {
 public:
  ~Walker() {
    if (!link_) return;
    link_->KillViewer();
    link_->WaitForViewer(std::nullopt);
  }

  bool Start(const BenchScene& scene, const std::string& path) {
    setenv("QUORVANE_LOG", "info", 1);
    link_ = host::HostLink::Create(side_);
    if (!link_ || !link_->StartViewer(path)) return false;
    window_ = e2e::ViewerWindow::Find(kPatience);
    if (!window_ || !SendScene(*link_, scene)) return false;
    link_->SceneComplete();
    link_->SetCamera(scene.camera, true);
    const auto first = log_.WaitFor(kFinished, std::chrono::minutes(5));
    return first && TakeSize(*first);
  }

  // The picture is smaller than the window by what is around it.
  bool Resize(int width, int height) {
    if (size_[0] == width && size_[1] == height) return true;
    const e2e::Screenshot shot = window_->Shoot();
    const std::size_t known = log_.Count(kFinished);
    window_->Resize(shot.width + width - size_[0], shot.height + height - size_[1]);
    const auto resized = log_.WaitFor(kFinished, kPatience, known);
    return resized && TakeSize(*resized);
  }

  // Seconds from the camera's command to its first picture on the screen.
  std::optional<double> Step(const RenderCamera& camera) {
    const std::size_t known = log_.Count(kShown);
    finished_ = log_.Count(kFinished);
    const double start = platform::NowSeconds();
    link_->SetCamera(camera, false);
    const auto shown = log_.WaitFor(kShown, kPatience, known);
    if (!shown) return std::nullopt;
    return shown->seconds - start;
  }

  // Until nothing is traced any more.
  bool Rest() { return log_.WaitFor(kFinished, kPatience, finished_).has_value(); }

  const std::array<int, 2>& size() const { return size_; }

 private:
  bool TakeSize(const LogReader::Line& line) {
    const auto size = PictureSize(line);
    if (size) size_ = *size;
    return size.has_value();
  }

  SilentHost side_;
  LogReader log_;
  std::unique_ptr<host::HostLink> link_;
  std::unique_ptr<e2e::ViewerWindow> window_;
  std::array<int, 2> size_{};
  std::size_t finished_ = 0;  // antialiased pictures before the last step
};

// Seconds that the ray library alone takes for a frame.
struct BareSeconds {
  double primary = 0;
  double followers = 0;  // the rays that go on behind glass
};

class BareFrames {
 public:
  BareFrames(const BenchScene& scene, const std::array<int, 2>& size)
      : bare_(scene),
        size_(size),
        followers_(bare_.scene()),
        engine_(bare_.device(), bare_.scene(), background_, threads_, 8) {
    engine_.ResizeTargets(size[0], size[1], 2);
    engine_.SetObserver(&followers_);
  }

  // The shortest of a few times of the rays of a preview.
  BareSeconds Measure(const RenderCamera& camera) {
    constexpr int kRuns = 3;
    constexpr double kNever = std::numeric_limits<double>::infinity();
    followers_.Clear();
    engine_.StartRender(camera, ModePreview, false);
    engine_.WaitUntilDone(std::nullopt);
    BareSeconds bare{kNever, kNever};
    for (int run = 0; run < kRuns; ++run) {
      const BareRun primary = BareIntersect(bare_.scene(), camera, size_[0], size_[1], threads_);
      bare.primary = std::min(bare.primary, primary.seconds);
      bare.followers = std::min(bare.followers, followers_.Run(threads_).seconds);
    }
    return bare;
  }

 private:
  const int threads_ = static_cast<int>(std::thread::hardware_concurrency());
  BareScene bare_;
  std::array<int, 2> size_;
  RecordedFollowers followers_;
  sky::Background background_;
  FrameEngine engine_;
};

WalkRatios RatiosOf(const std::vector<double>& values) {
  return {Quantile(values, 0.5), Quantile(values, 0.99)};
}

}  // namespace

std::optional<WalkFigures> MeasureWalk(const BenchScene& scene, const std::string& path, int width,
                                       int height) {
  // The two are measured by turns: what else the machine does slows both down.
  constexpr std::size_t kStepsByTurns = 10;
  const std::vector<RenderCamera> walk = WalkThrough(scene);
  Walker walker;
  if (!walker.Start(scene, path) || !walker.Resize(width, height)) return std::nullopt;
  BareFrames bare(scene, walker.size());
  std::vector<double> latencies, toPrimary, toAll;
  for (std::size_t first = 0; first < walk.size(); first += kStepsByTurns) {
    const std::size_t end = std::min(first + kStepsByTurns, walk.size());
    for (std::size_t i = first; i < end; ++i) {
      const auto latency = walker.Step(walk[i]);
      if (!latency) return std::nullopt;
      latencies.push_back(*latency);
    }
    if (!walker.Rest()) return std::nullopt;
    for (std::size_t i = first; i < end; ++i) {
      const BareSeconds seconds = bare.Measure(walk[i]);
      toPrimary.push_back(latencies[i] / seconds.primary);
      toAll.push_back(latencies[i] / (seconds.primary + seconds.followers));
    }
  }
  WalkFigures figures;
  figures.width = walker.size()[0];
  figures.height = walker.size()[1];
  figures.toPrimaryRays = RatiosOf(toPrimary);
  figures.toAllRays = RatiosOf(toAll);
  figures.medianSeconds = Quantile(latencies, 0.5);
  return figures;
}

}  // namespace qv::bench

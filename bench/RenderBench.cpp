#include "RenderBench.h"

#include <omp.h>

#include <algorithm>
#include <cstdio>
#include <vector>

#include "BareLoops.h"
#include "platform/Clock.h"
#include "render/frame/FrameEngine.h"

namespace qv::bench {
namespace {

// Afternoon sun from the south-west.
const Vec3 kTowardsSun = Vec3(-0.45f, -0.55f, 0.7f).normalized();

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// The renderer's parts without a window, filled with a scene.
class Bench {
 public:
  Bench(const BenchScene& scene, int width, int height)
      : threads_(std::min(omp_get_num_procs(), 32)),
        device_(rtcNewDevice("")),
        scene_(device_),
        engine_(device_, scene_, background_, threads_, 8) {
    engine_.SetCallbacks({[this] { passEnd_ = platform::NowSeconds(); }, {}});
    engine_.ResizeTargets(width, height, 2);
    for (const MaterialParameters& material : scene.materials) scene_.AddMaterial(material);
    for (const BenchMesh& mesh : scene.meshes) {
      scene_.BeginStaticMesh();
      scene_.AddMeshData(mesh.vertices, mesh.triangles);
      scene_.EndMesh();
    }
    scene_.Build(nullptr);
    // The sun's shadow rays alone are compared.
    engine_.SetSwitches({.useAmbientOcclusion = false});
    camera_ = scene.camera;
    RunPreview();
  }
  ~Bench() {
    engine_.StopRender();
    scene_.Clear();
    rtcReleaseDevice(device_);
  }
  Bench(const Bench&) = delete;
  Bench& operator=(const Bench&) = delete;

  // Seconds from StartRender to passDone.
  double RunPreview() { return Run(ModePreview); }

  // Seconds of PassFull alone, with a sun, or with one from nowhere that no surface faces.
  double RunFull(bool sun) {
    scene_.SetSun(
        RenderLight::Directional(Vec3(1, 1, 1), sun ? Vec3(-kTowardsSun) : Vec3(0, 0, 0)));
    engine_.StartRender(camera_, ModeStill, false);
    engine_.WaitUntilDone(std::nullopt);
    return engine_.Times().base;
  }

  const RenderScene& scene() const { return scene_; }
  int threads() const { return threads_; }
  const RenderCamera& camera() const { return camera_; }

 private:
  double Run(RenderMode mode) {
    const double start = platform::NowSeconds();
    engine_.StartRender(camera_, mode, false);
    engine_.WaitUntilDone(std::nullopt);
    return passEnd_ - start;
  }

  int threads_;
  RTCDevice device_;
  RenderScene scene_;
  sky::Background background_;
  FrameEngine engine_;
  RenderCamera camera_;
  double passEnd_ = 0;
};

}  // namespace

RenderFigures MeasureRendering(const BenchScene& scene, int width, int height, int runs) {
  Bench bench(scene, width, height);
  const BareOcclusion occlusion(bench.scene(), bench.camera(), width, height, kTowardsSun);
  std::vector<double> preview, intersect, shadow, occluded, previewRatio, shadowRatio;
  BareRun bare, bareShadow;
  for (int i = 0; i < runs; ++i) {
    bare = BareIntersect(bench.scene(), bench.camera(), width, height, bench.threads());
    preview.push_back(bench.RunPreview());
    intersect.push_back(bare.seconds);
    previewRatio.push_back(bare.seconds / preview.back());
    bareShadow = occlusion.Run(bench.threads());
    const double without = bench.RunFull(false);
    shadow.push_back(bench.RunFull(true) - without);
    occluded.push_back(bareShadow.seconds);
    shadowRatio.push_back(bareShadow.seconds / shadow.back());
  }
  const auto primary = static_cast<double>(bare.rays);
  const auto shadows = static_cast<double>(bareShadow.rays);
  RenderFigures figures;
  figures.previewRate = primary / Median(preview);
  figures.bareIntersectRate = primary / Median(intersect);
  figures.shadowRate = shadows / Median(shadow);
  figures.bareOccludedRate = shadows / Median(occluded);
  figures.previewRatio = Median(previewRatio);
  figures.shadowRatio = Median(shadowRatio);
  return figures;
}

}  // namespace qv::bench

// quorvane-bench [--json FILE] [--model FILE] [--room FILE] [--size WxH] [--instructions NAME]
//   [--only house|room|million|viewer|walk]:
// what the renderer makes of the processor, as ratios to bare loops over the ray library in the
// same run.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string>

#include "ModelScene.h"
#include "RenderBench.h"
#include "Report.h"
#include "ViewerBench.h"
#include "WalkBench.h"
#include "render/trace/VectorOps.h"

namespace {

using namespace qv::bench;

constexpr std::array<const char*, 5> kParts{"house", "room", "million", "viewer", "walk"};

struct Options {
  std::string json;
  std::string house = "/usr/share/assimp/models/IFC/AC14-FZK-Haus.ifc";
  std::string room = QUORVANE_DEMO "/living-room.json";
  std::string instructions;  // the best set that may be used; empty for any
  std::string only;          // one of kParts; empty for all

  bool Asks(const char* part) const { return only.empty() || only == part; }
  int width = 1280;
  int height = 720;
};

std::optional<Options> ParseOptions(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string name = argv[i];
    const char* value = i + 1 < argc ? argv[++i] : nullptr;
    if (value == nullptr) return std::nullopt;
    if (name == "--json") {
      options.json = value;
    } else if (name == "--model") {
      options.house = value;
    } else if (name == "--room") {
      options.room = value;
    } else if (name == "--instructions") {
      options.instructions = value;
    } else if (name == "--only" && std::ranges::count(kParts, std::string(value)) > 0) {
      options.only = value;
    } else if (name == "--size" &&
               std::sscanf(value, "%dx%d", &options.width, &options.height) == 2) {
      if (options.width < 1 || options.height < 1) return std::nullopt;
    } else {
      return std::nullopt;
    }
  }
  return options;
}

void MeasureScene(const BenchScene& scene, const Options& options, Figures& figures) {
  constexpr int kRuns = 25;
  const RenderFigures f = MeasureRendering(scene, options.width, options.height, kRuns);
  std::printf("%-8s %9zu triangles  preview %7.2f of %7.2f Mrays/s  ratio %.3f\n",
              scene.name.c_str(), scene.TriangleCount(), f.previewRate / 1e6,
              f.bareIntersectRate / 1e6, f.previewRatio);
  std::printf("%-8s %9s            shadow  %7.2f of %7.2f Mrays/s  ratio %.3f (%.3f to %.3f)\n", "",
              "", f.shadowRate / 1e6, f.bareOccludedRate / 1e6, f.shadowRatio.value,
              f.shadowRatio.low, f.shadowRatio.high);
  std::printf("%-8s %9s            full    %7.2f of %7.2f Mrays/s  ratio %.3f\n", "", "",
              f.fullRate / 1e6, f.bareFullRate / 1e6, f.fullRatio);
  std::printf("%-8s %9s            compose with gamma %.3f of a preview\n", "", "",
              f.composeToPreview);
  std::fflush(stdout);
  figures.emplace_back(scene.name + ".preview.ratio", f.previewRatio);
  figures.emplace_back(scene.name + ".shadow.ratio", f.shadowRatio.value);
  figures.emplace_back(scene.name + ".shadow.ratio_low", f.shadowRatio.low);
  figures.emplace_back(scene.name + ".shadow.ratio_high", f.shadowRatio.high);
  figures.emplace_back(scene.name + ".full_ao.ratio", f.fullRatio);
  figures.emplace_back(scene.name + ".compose_to_preview", f.composeToPreview);
}

bool MeasureInViewer(const BenchScene& scene, const std::string& viewer, Figures& figures) {
  const auto f = MeasureViewer(scene, viewer);
  if (!f) {
    std::fprintf(stderr, "quorvane-bench: the viewer showed no picture of %s\n",
                 scene.name.c_str());
    return false;
  }
  std::printf(
      "%-8s in the viewer: %.0f bytes a triangle, first preview %.3f s after the last byte\n",
      scene.name.c_str(), f->bytesPerTriangle, f->firstPreviewSeconds);
  figures.emplace_back(scene.name + ".bytes_per_triangle", f->bytesPerTriangle);
  std::printf("%-8s once the picture stands: %.2f %% of a processor\n", "",
              100 * f->idleProcessorShare);
  figures.emplace_back(scene.name + ".first_preview_s", f->firstPreviewSeconds);
  figures.emplace_back(scene.name + ".idle_processor", f->idleProcessorShare);
  return true;
}

bool MeasureWalking(const BenchScene& scene, const std::string& viewer, const Options& options,
                    Figures& figures) {
  const auto f = MeasureWalk(scene, viewer, options.width, options.height);
  if (!f) {
    std::fprintf(stderr, "quorvane-bench: no walk through %s\n", scene.name.c_str());
    return false;
  }
  std::printf("walk     %4dx%d: a step is on the screen after %.4f s\n", f->width, f->height,
              f->medianSeconds);
  std::printf("%-8s %.2f (99%%: %.2f) of bare rays, %.2f (99%%: %.2f) of the primary ones alone\n",
              "", f->toAllRays.median, f->toAllRays.p99, f->toPrimaryRays.median,
              f->toPrimaryRays.p99);
  figures.emplace_back("walk.latency.median_ratio", f->toAllRays.median);
  figures.emplace_back("walk.latency.p99_ratio", f->toAllRays.p99);
  figures.emplace_back("walk.latency.primary.median_ratio", f->toPrimaryRays.median);
  figures.emplace_back("walk.latency.primary.p99_ratio", f->toPrimaryRays.p99);
  return true;
}

// False if a model cannot be read or the viewer does not come up.
bool MeasureAll(const Options& options, const char* program, Figures& figures) {
  const auto viewer = std::filesystem::absolute(program).parent_path() / "quorvane";
  if (options.Asks("house") || options.Asks("walk")) {
    const auto house = ModelScene("house", options.house);
    if (!house) return false;
    if (options.Asks("house")) MeasureScene(*house, options, figures);
    if (options.Asks("walk") && !MeasureWalking(*house, viewer.string(), options, figures)) {
      return false;
    }
  }
  if (options.Asks("room")) {
    const auto room = ModelScene("room", options.room);
    if (!room) return false;
    MeasureScene(*room, options, figures);
  }
  if (options.Asks("million") || options.Asks("viewer")) {
    const BenchScene million = MillionTriangles();
    if (options.Asks("million")) MeasureScene(million, options, figures);
    if (options.Asks("viewer")) return MeasureInViewer(million, viewer.string(), figures);
  }
  return true;
}

}  // namespace

int main(int argc, char** argv) {
  const auto options = ParseOptions(argc, argv);
  if (!options) {
    std::fprintf(stderr,
                 "usage: quorvane-bench [--json FILE] [--model FILE] [--room FILE] [--size WxH]\n"
                 "                      [--instructions NAME]\n"
                 "                      [--only house|room|million|viewer|walk]\n");
    return 2;
  }
  if (!options->instructions.empty() && !qv::LimitVectorInstructionSet(options->instructions)) {
    std::fprintf(stderr, "quorvane-bench: there are no instructions %s here\n",
                 options->instructions.c_str());
    return 2;
  }
  std::printf("vector operations: %s\n", qv::VectorInstructionSet());
  Figures figures;
  const bool shown = MeasureAll(*options, argv[0], figures);
  if (!options->json.empty() && !WriteJson(figures, options->json)) {
    std::fprintf(stderr, "quorvane-bench: cannot write %s\n", options->json.c_str());
    return 1;
  }
  return shown ? 0 : 1;
}

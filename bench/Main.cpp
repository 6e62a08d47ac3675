#include <cstdio>

#include "RenderBench.h"

int main() {
  using namespace qv::bench;
  const BenchScene scene = MillionTriangles();
  const RenderFigures f = MeasureRendering(scene, 1280, 720, 7);
  std::printf(
      "%s: preview %.2f Mrays/s, bare %.2f, ratio %.3f; shadow %.2f, bare %.2f, ratio %.3f\n",
      scene.name.c_str(), f.previewRate / 1e6, f.bareIntersectRate / 1e6, f.previewRatio,
      f.shadowRate / 1e6, f.bareOccludedRate / 1e6, f.shadowRatio);
}

#pragma once

#include "Samples.h"
#include "Scenes.h"

namespace qv::bench {

// Rays a second of the renderer beside bare loops over the ray library on the same rays in the same
// run.
struct RenderFigures {
  double previewRate = 0;  // primary rays a second, from StartRender to passDone
  double bareIntersectRate = 0;
  double previewRatio = 0;  // of the shortest times of interleaved runs
  double shadowRate = 0;    // sun shadow rays a second: PassFull with the sun less PassFull with a
                            // sun that lights nothing
  double bareOccludedRate = 0;
  Median shadowRatio;  // by rounds; infinite where noise hides what the rays cost
  double fullRate =
      0;  // all occlusion rays a second of PassFull with ambient occlusion, the whole pass counted
  double bareFullRate = 0;
  double fullRatio = 0;
  double composeToPreview = 0;  // time of ComposeImage with a gamma, as a share of a preview's
};

RenderFigures MeasureRendering(const BenchScene& scene, int width, int height, int runs);

}  // namespace qv::bench

#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "render/RaytraceImpl.h"
#include "support/Picture.h"
#include "support/SceneBuilder.h"

namespace qv::test {

// Views of the small scene from all around, all different.
RenderCamera ViewFrom(int degrees);

Picture ScreenOf(const RaytraceImpl& renderer);

// A renderer that keeps what it reports.
class Renderer {
 public:
  Renderer(const SceneBuilder& builder, int width, int height,
           const RaytraceImpl::Options& options = {});

  struct Pass {
    RenderCamera camera;
    Picture picture;
  };

  void Start(const RenderCamera& camera, RenderMode mode, bool showProgress = true);
  // Starts, and waits until the job is done; fails after a minute.
  void Run(const RenderCamera& camera, RenderMode mode, bool showProgress = true);
  void ExpectDone();

  std::vector<Pass> Passes() const;
  std::vector<float> Progress() const;
  Picture Screen() const { return ScreenOf(impl); }

  // Called on the render thread after each pass, with the number of passes so far. Set before the
  // first job.
  std::function<void(std::size_t)> onPass;

 private:
  void TakePass();

  mutable std::mutex mutex_;
  std::vector<Pass> passes_;
  std::vector<float> progress_;

 public:
  RaytraceImpl impl;  // last: its threads call what is above
};

bool SameView(const RenderCamera& a, const RenderCamera& b);

}  // namespace qv::test

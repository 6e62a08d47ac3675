#include "Renderer.h"

#include <gtest/gtest.h>

#include <cmath>

namespace qv::test {

RenderCamera ViewFrom(int degrees) {
  const float angle = static_cast<float>(degrees) * 0.017453293f;
  return LookingAt({120 * std::sin(angle), -120 * std::cos(angle), 50}, {0, 0, 15}, 0.7f);
}

bool SameView(const RenderCamera& a, const RenderCamera& b) {
  return (a.position - b.position).norm() < 1e-4f && (a.forward - b.forward).norm() < 1e-5f;
}

Picture ScreenOf(const RaytraceImpl& renderer) {
  Picture picture;
  renderer.ReadScreen([&](const ScreenView& view) {
    picture = Picture(view.width, view.height, view.pitch, view.pixels);
  });
  return picture;
}

Renderer::Renderer(const SceneBuilder& builder, int width, int height,
                   const RaytraceImpl::Options& options)
    : impl(options) {
  impl.SetCallbacks({[this] { TakePass(); },
                     [this](float value) {
                       const std::lock_guard lock(mutex_);
                       progress_.push_back(value);
                     },
                     {}});
  builder.SendTo(impl);
  impl.BuildScene(nullptr);
  EXPECT_TRUE(impl.ResizeTargets(width, height, -1));
}

void Renderer::TakePass() {
  Pass pass{impl.ActiveCamera(), Screen()};
  std::size_t count;
  {
    const std::lock_guard lock(mutex_);
    passes_.push_back(std::move(pass));
    count = passes_.size();
  }
  if (onPass) onPass(count);
}

void Renderer::Start(const RenderCamera& c, RenderMode mode, bool showProgress) {
  impl.StartRender(c.position, c.forward, c.up, c.fieldOfView, c.target, mode, showProgress);
}

void Renderer::Run(const RenderCamera& camera, RenderMode mode, bool showProgress) {
  Start(camera, mode, showProgress);
  ExpectDone();
}

void Renderer::ExpectDone() {
  ASSERT_TRUE(impl.WaitUntilDone(60));
  EXPECT_EQ(impl.State(), RenderState::kIdle);
}

std::vector<Renderer::Pass> Renderer::Passes() const {
  const std::lock_guard lock(mutex_);
  return passes_;
}

std::vector<float> Renderer::Progress() const {
  const std::lock_guard lock(mutex_);
  return progress_;
}

}  // namespace qv::test

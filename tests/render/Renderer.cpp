#include "Renderer.h"

#include <gtest/gtest.h>

#include <Eigen/Geometry>
#include <cmath>

namespace qv::test {

SceneBuilder SmallScene() {
  SceneBuilder builder;
  const int ground = builder.Material(Vec3(0.5f, 0.6f, 0.4f));
  const int red = builder.Material(Vec3(0.8f, 0.2f, 0.1f));
  MaterialParameters shiny = Matte(Vec3(0.1f, 0.1f, 0.3f));
  shiny.specularColor = Vec3::Constant(0.5f);
  shiny.specularExponent = 30;
  shiny.reflectance = 0.4f;
  const int mirror = builder.Material(shiny);
  builder.Floor(0, 200, ground);
  builder.Box({-30, -20, 0}, {-5, 10, 35}, red);
  builder.Sphere({20, 5, 18}, 18, 12, mirror);
  builder.lights.push_back(SceneLight::Point(Vec3(8, 8, 6), {0, -60, 70}));
  return builder;
}

RenderCamera ViewFrom(int degrees) {
  const float angle = static_cast<float>(degrees) * 0.017453293f;
  RenderCamera camera;
  camera.position = Vec3(120 * std::sin(angle), -120 * std::cos(angle), 50);
  camera.forward = (Vec3(0, 0, 15) - camera.position).normalized();
  camera.up = camera.forward.cross(Vec3::UnitZ()).cross(camera.forward).normalized();
  camera.fieldOfView = 0.7f;
  return camera;
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

#include "render/frame/PixelRays.h"

#include <Eigen/Geometry>
#include <cmath>

namespace qv {
namespace {

void Store(const Vec3& v, float (&out)[3]) {
  for (int axis = 0; axis < 3; ++axis) out[axis] = v[axis];
}

}  // namespace

Vec3 PixelRays::Direction(float x, float y) const {
  Vec3 direction;
  for (int axis = 0; axis < 3; ++axis) {
    direction[axis] = corner[axis] + x * columnStep[axis] + y * rowStep[axis];
  }
  return direction;
}

PixelRays ComputePixelRays(const RenderCamera& camera, int width, int height) {
  const Vec3 f = camera.forward.normalized();
  const Vec3 u = camera.up.normalized();
  const Vec3 r = f.cross(u).normalized();
  const float t = std::tan(camera.fieldOfView / 2);
  const float w = static_cast<float>(width);
  const float h = static_cast<float>(height);
  const float aspect = w / h;
  PixelRays rays;
  Store(f - aspect * t * r - t * u, rays.corner);
  Store(2 * aspect * t / w * r, rays.columnStep);
  Store(2 * t / h * u, rays.rowStep);
  Store(camera.position, rays.eye);
  return rays;
}

}  // namespace qv

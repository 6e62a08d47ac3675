#include "host/model/Cameras.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <string>

namespace qv::host {
namespace {

// Fields of view outside of these, in radians, are taken for missing.
constexpr float kLeastFieldOfView = 0.03f;
constexpr float kGreatestFieldOfView = 2.6f;
// Of cameras that state none.
constexpr float kCommonAspect = 4.0f / 3.0f;

// The import library keeps a horizontal angle. glTF states the vertical one, which is multiplied by
// the aspect there.
float FieldOfViewOf(const aiCamera& camera, const ModelFormat& format) {
  const bool gltf = format.family == ModelFormat::Family::kGltf;
  const bool hasAspect = std::isfinite(camera.mAspect) && camera.mAspect > 0.1f;
  const float aspect = hasAspect ? camera.mAspect : gltf ? 1 : kCommonAspect;
  const float horizontal = camera.mHorizontalFOV;
  const float vertical =
      gltf ? horizontal / aspect : 2 * std::atan(std::tan(horizontal / 2) / aspect);
  const bool usable = vertical >= kLeastFieldOfView && vertical <= kGreatestFieldOfView;
  return usable ? vertical : kDefaultFieldOfView;
}

// 3DS: of a camera that moves, only the animation keeps where it looks.
bool HasLostItsTarget(const aiCamera& camera, const ModelFormat& format) {
  return format.family == ModelFormat::Family::k3ds && camera.mLookAt == aiVector3D(0, 0, 1);
}

// glTF: cameras stand at their node's origin. The import library copies the node's move into them,
// which would count twice.
Eigen::Vector3d LocalPosition(const aiCamera& camera, const ModelFormat& format) {
  if (format.family == ModelFormat::Family::kGltf) return Eigen::Vector3d::Zero();
  return ToVector3d(camera.mPosition);
}

// The part of `v` at right angles to the unit vector `axis`, at unit length.
Vec3 Upright(const Vec3& v, const Vec3& axis) {
  Vec3 across = v - axis * v.dot(axis);
  if (across.norm() < 1e-3f) across = axis.unitOrthogonal();
  return across.normalized();
}

std::optional<SceneCamera> Placed(const aiCamera& camera, const ModelFormat& format,
                                  const PlaceOfName& places, const Eigen::Affine3d& worldFromScene,
                                  const Bounds& bounds) {
  if (HasLostItsTarget(camera, format)) return std::nullopt;
  Eigen::Affine3d place = worldFromScene;
  const auto node = places.find(camera.mName.C_Str());
  if (node != places.end()) place = worldFromScene * node->second;

  SceneCamera placed;
  placed.name = camera.mName.C_Str();
  RenderCamera& view = placed.view;
  view.position = (place * LocalPosition(camera, format)).cast<float>();
  view.forward = UnitOr(place.linear() * ToVector3d(camera.mLookAt), Vec3(0, 1, 0));
  view.up = Upright(UnitOr(place.linear() * ToVector3d(camera.mUp), Vec3(0, 0, 1)), view.forward);
  view.fieldOfView = FieldOfViewOf(camera, format);
  const float ahead = view.forward.dot(bounds.center() - view.position);
  view.target = view.position + view.forward * std::max(ahead, 1.0f);
  if (!view.position.allFinite() || !view.target.allFinite()) return std::nullopt;
  return placed;
}

}  // namespace

std::vector<SceneCamera> CamerasOf(const aiScene& scene, const ModelFormat& format,
                                   const PlaceOfName& places, const Eigen::Affine3d& worldFromScene,
                                   const Bounds& bounds) {
  std::vector<SceneCamera> cameras;
  for (const aiCamera* camera : std::span(scene.mCameras, scene.mNumCameras)) {
    auto placed = Placed(*camera, format, places, worldFromScene, bounds);
    if (!placed) continue;
    if (placed->name.empty()) placed->name = "Camera " + std::to_string(cameras.size() + 1);
    cameras.push_back(*placed);
  }
  return cameras;
}

}  // namespace qv::host

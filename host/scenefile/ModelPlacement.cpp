#include "host/scenefile/ModelPlacement.h"

#include <cmath>

namespace qv::host {
namespace {

Bounds Transformed(const Bounds& box, const Eigen::Matrix3f& linear) {
  Bounds result;
  for (int corner = 0; corner < 8; ++corner) {
    result.extend(Vec3(linear * box.corner(static_cast<Bounds::CornerType>(corner))));
  }
  return result;
}

}  // namespace

Vec3 ScaleFor(const WantedSize& wanted, const Vec3& sizes) {
  Vec3 scale = wanted.scale;
  float product = 1;
  int given = 0;
  for (int axis = 0; axis < 3; ++axis) {
    const auto& length = wanted.lengths[static_cast<std::size_t>(axis)];
    if (!length || !(sizes[axis] > 0)) continue;
    scale[axis] = *length / sizes[axis];
    product *= scale[axis];
    ++given;
  }
  if (given == 0) return scale;
  const float mean = std::pow(product, 1 / static_cast<float>(given));
  for (int axis = 0; axis < 3; ++axis) {
    if (!wanted.lengths[static_cast<std::size_t>(axis)]) scale[axis] = mean;
  }
  return scale;
}

Eigen::Affine3f PlacementOf(const Bounds& bounds, const Vec3& scale, const Vec3& turn,
                            const Vec3& at, bool byOrigin) {
  const Eigen::Matrix3f linear =
      Eigen::AngleAxisf(turn.z(), Vec3::UnitZ()) * Eigen::AngleAxisf(turn.y(), Vec3::UnitY()) *
      Eigen::AngleAxisf(turn.x(), Vec3::UnitX()) * Eigen::Matrix3f(scale.asDiagonal());
  Vec3 anchor(0, 0, 0);
  if (!byOrigin) {
    const Bounds box = Transformed(bounds, linear);
    anchor = Vec3(box.center().x(), box.center().y(), box.min().z());
  }
  Eigen::Affine3f place = Eigen::Affine3f::Identity();
  place.linear() = linear;
  place.translation() = at - anchor;
  return place;
}

SceneMesh Placed(const SceneMesh& mesh, const Eigen::Affine3f& place) {
  const Eigen::Matrix3f normalPlace = place.linear().inverse().transpose();
  SceneMesh placed = mesh;
  for (MeshVertex& vertex : placed.vertices) {
    Eigen::Map<Vec3> position(vertex.position);
    Eigen::Map<Vec3> normal(vertex.normal);
    position = Vec3(place * Vec3(position));
    const Vec3 turned = normalPlace * Vec3(normal);
    if (turned.norm() > 0) normal = turned.normalized();
  }
  return placed;
}

SceneLight Placed(const SceneLight& light, const Eigen::Affine3f& place) {
  SceneLight placed = light;
  placed.position = place * light.position;
  placed.direction = (place.linear() * light.direction).normalized();
  return placed;
}

}  // namespace qv::host

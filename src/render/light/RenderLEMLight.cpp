#include "render/light/RenderLEMLight.h"

#include <Eigen/Geometry>
#include <cmath>

namespace qv {

RenderLEMLight::RenderLEMLight(const Vec3& emissionColor, std::span<const float> corners)
    : emission(emissionColor) {
  for (std::size_t i = 0; i + 9 <= corners.size(); i += 9) {
    Vec3 corner[3];
    for (int k = 0; k < 3; ++k) corner[k] = Eigen::Map<const Vec3>(&corners[i + 3 * k]);
    vertices.insert(vertices.end(), std::begin(corner), std::end(corner));
    Vec3 normal = (corner[1] - corner[0]).cross(corner[2] - corner[0]);
    const float squared = normal.squaredNorm();
    if (squared > 0) normal /= std::sqrt(squared);
    faceNormals.push_back(normal);
  }
}

}  // namespace qv

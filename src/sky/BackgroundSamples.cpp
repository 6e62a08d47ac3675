#include "sky/BackgroundSamples.h"

#include <Eigen/Geometry>
#include <cmath>

namespace qv::sky {

Vec3 SampleBackground(const CubeFaces& faces, const Vec3& direction, bool swapRedBlue) {
  const Vec3 color = faces.Sample(direction);
  return swapRedBlue ? Vec3(color.reverse()) : color;
}

void CollectBackgroundSamples(const CubeFaces& faces, std::vector<float>& target) {
  constexpr int kRows = 181;
  constexpr int kColumns = 361;
  target.reserve(target.size() + std::size_t{kRows} * kColumns * 3);
  for (int i = 90; i >= -90; --i) {
    const float halfI = static_cast<float>(i) * 0.5f;
    const Eigen::Quaternionf aroundX(std::cos(halfI), std::sin(halfI), 0, 0);
    for (int j = 0; j < kColumns; ++j) {
      const float halfJ = static_cast<float>(j) * 0.5f;
      const Eigen::Quaternionf aroundZ(std::cos(halfJ), 0, 0, std::sin(halfJ));
      const Vec3 direction = (aroundZ * aroundX) * Vec3::UnitY();
      const Vec3 color = SampleBackground(faces, direction, true);
      target.insert(target.end(), {color.x(), color.y(), color.z()});
    }
  }
}

}  // namespace qv::sky

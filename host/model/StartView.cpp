#include "host/model/StartView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/model/Cameras.h"

namespace qv::host {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr float kRadiansPerDegree = kPi / 180;
// Down onto the model: steep enough to tell the near from the far, and with the horizon in view.
constexpr float kPitch = 14 * kRadiansPerDegree;
// The main side is seen at this angle from its normal, the other at the rest of a right angle.
constexpr float kTurn = 35 * kRadiansPerDegree;
// What a side without sun counts beside one that it shines on squarely.
constexpr float kAmbient = 0.3f;
// The model leaves this part of the frame free on each side.
constexpr float kMargin = 0.06f;
// What a window of the usual proportions leaves for the picture beside tool bar and status bar.
constexpr float kLikelyAspect = 1.5f;

template <typename Visit>
void ForEachPosition(const Scene& scene, Visit visit) {
  for (const SceneMesh& mesh : scene.meshes) {
    for (const MeshVertex& vertex : mesh.vertices) {
      visit(Vec3(vertex.position[0], vertex.position[1], vertex.position[2]));
    }
  }
}

// Horizontal, from the model to the eye: of the eight three-quarter directions the one that shows
// most sunlit surface, going by the sides of the bounds.
Vec3 SideToLookFrom(const Bounds& bounds, const Vec3& sunlight) {
  const Vec3 sizes = bounds.sizes();
  const auto worthOf = [&](const Vec3& normal, float cosine) {
    const float width = std::abs(normal.x()) > 0.5f ? sizes.y() : sizes.x();
    return width * cosine * (kAmbient + std::max(-sunlight.dot(normal), 0.0f));
  };
  const std::array<Vec3, 4> normals = {Vec3(1, 0, 0), Vec3(0, 1, 0), Vec3(-1, 0, 0),
                                       Vec3(0, -1, 0)};
  Vec3 best(0, -1, 0);
  float most = -1;
  for (std::size_t i = 0; i < normals.size(); ++i) {
    const Vec3& side = normals[i];
    for (const Vec3& other : {normals[(i + 1) % 4], normals[(i + 3) % 4]}) {
      const float worth = worthOf(side, std::cos(kTurn)) + worthOf(other, std::sin(kTurn));
      if (worth <= most) continue;
      most = worth;
      best = side * std::cos(kTurn) + other * std::sin(kTurn);
    }
  }
  return best;
}

// A camera's axes, right-handed: x right, y up, z backwards.
struct Axes {
  Vec3 right, up, forward;
};

Axes AxesOf(const Vec3& forward) {
  const Vec3 right = forward.cross(Vec3(0, 0, 1)).normalized();
  return {right, right.cross(forward), forward};
}

// How far points reach sideways as seen with one half angle of view: a point at (side, depth) is in
// view from (s, d) if |side - s| <= slope * (depth - d), so that the widest of side - slope * depth
// on both sides bound s and d.
struct Reach {
  float slope;
  float high = -std::numeric_limits<float>::infinity();
  float low = -std::numeric_limits<float>::infinity();

  void Add(float side, float depth) {
    high = std::max(high, side - slope * depth);
    low = std::max(low, -side - slope * depth);
  }
  float LargestDepth() const { return -(high + low) / (2 * slope); }
  float Middle() const { return (high - low) / 2; }
};

// The nearest place from which all of the scene is in view.
Vec3 PlaceToSeeAllFrom(const Scene& scene, const Axes& axes, float fieldOfView, float aspect) {
  const float slope = std::tan(fieldOfView / 2) * (1 - 2 * kMargin);
  const Vec3 center = scene.bounds.center();
  Reach across{slope * aspect};
  Reach upwards{slope};
  ForEachPosition(scene, [&](const Vec3& position) {
    const Vec3 offset = position - center;
    const float depth = offset.dot(axes.forward);
    across.Add(offset.dot(axes.right), depth);
    upwards.Add(offset.dot(axes.up), depth);
  });
  const float depth = std::min(across.LargestDepth(), upwards.LargestDepth());
  return center + axes.right * across.Middle() + axes.up * upwards.Middle() + axes.forward * depth;
}

bool SeesAnything(const RenderCamera& view, const Scene& scene) {
  const float slope = std::tan(view.fieldOfView / 2);
  const Vec3 right = view.forward.cross(view.up);
  bool sees = false;
  ForEachPosition(scene, [&](const Vec3& position) {
    const Vec3 offset = position - view.position;
    const float depth = offset.dot(view.forward);
    sees |= depth > 0 && std::abs(offset.dot(view.up)) <= slope * depth &&
            std::abs(offset.dot(right)) <= slope * kLikelyAspect * depth;
  });
  return sees;
}

void LookAt(RenderCamera& view, const Vec3& target) {
  view.target = target;
  const Vec3 way = target - view.position;
  if (way.norm() < 1e-3f) return;
  view.forward = way.normalized();
  const bool vertical = std::abs(view.forward.z()) > 0.9999f;
  const Vec3 upwards = vertical ? Vec3(0, 1, 0) : Vec3(0, 0, 1);
  const Vec3 right = view.forward.cross(upwards).normalized();
  view.up = right.cross(view.forward);
}

}  // namespace

RenderCamera ViewFromOutside(const Scene& scene, const Vec3& sunlight, float fieldOfView,
                             float aspect) {
  const Vec3 side = SideToLookFrom(scene.bounds, sunlight);
  const Vec3 forward = -side * std::cos(kPitch) - Vec3(0, 0, 1) * std::sin(kPitch);
  const Axes axes = AxesOf(forward);
  RenderCamera view;
  view.position = PlaceToSeeAllFrom(scene, axes, fieldOfView, aspect);
  view.forward = axes.forward;
  view.up = axes.up;
  view.fieldOfView = fieldOfView;
  const float ahead = std::max((scene.bounds.center() - view.position).dot(axes.forward), 1.0f);
  view.target = view.position + axes.forward * ahead;
  return view;
}

RenderCamera StartView(const Scene& scene, const Vec3& sunlight, const ViewWishes& wishes) {
  RenderCamera view = ViewFromOutside(
      scene, sunlight, wishes.fieldOfView.value_or(kDefaultFieldOfView), kLikelyAspect);
  const auto camera =
      std::find_if(scene.cameras.begin(), scene.cameras.end(),
                   [&](const SceneCamera& c) { return SeesAnything(c.view, scene); });
  if (camera != scene.cameras.end()) {
    view = camera->view;
    if (wishes.fieldOfView) view.fieldOfView = *wishes.fieldOfView;
  }
  if (wishes.eye) view.position = *wishes.eye;
  if (wishes.eye || wishes.target) {
    LookAt(view, wishes.target.value_or(scene.bounds.center()));
  }
  return view;
}

}  // namespace qv::host

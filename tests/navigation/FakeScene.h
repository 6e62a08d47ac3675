#pragma once

#include <functional>
#include <optional>
#include <utility>

#include "navigation/SceneProbe.h"

namespace qv {

// A model of level floors and one wall, with distances worked out from their planes.
class FakeScene : public SceneProbe {
 public:
  // The z of the floor at a place; nothing where there is none.
  std::function<std::optional<float>(float x, float y)> floor = [](float, float) {
    return std::nullopt;
  };
  std::optional<float> wallY;  // a wall without end, seen from its side of smaller y
  PickedPoint picked;
  std::optional<SceneBox> bounds;
  mutable int rays = 0;

  std::optional<float> DistanceAlong(const Vec3& from, const Vec3& direction) const override {
    ++rays;
    if (direction.z() == -1) {
      const auto z = floor(from.x(), from.y());
      return z && *z < from.z() ? std::optional<float>(from.z() - *z) : std::nullopt;
    }
    if (!wallY || direction.y() <= 0 || from.y() > *wallY) return std::nullopt;
    return (*wallY - from.y()) / direction.y();
  }
  PickedPoint Pick(int x, int y) const override {
    lastPick = {x, y};
    return picked;
  }
  void PanVectors(float distance, Vec3& right, Vec3& up) const override {
    right = Vec3(0.001f, 0, 0) * distance;
    up = Vec3(0, 0, 0.001f) * distance;
  }
  std::optional<SceneBox> Bounds() const override { return bounds; }
  ViewGeometry View() const override { return {800, 500, 600}; }

  mutable std::pair<int, int> lastPick{-1, -1};
};

}  // namespace qv

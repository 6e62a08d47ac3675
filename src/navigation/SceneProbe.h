#pragma once

#include <optional>

#include "core/Vec.h"

namespace qv {

// What lies under one pixel of the view. Without a hit `position` is one unit along the ray.
struct PickedPoint {
  bool hit = false;
  Vec3 position{0, 0, 0};
  float distance = 0;       // from the eye that the ray begins at
  Vec3 direction{0, 1, 0};  // of the ray; unit length
};

struct SceneBox {
  Vec3 minimum{0, 0, 0};
  Vec3 maximum{0, 0, 0};
};

struct ViewGeometry {
  int width = 1, height = 1;  // of the view, pixels
  int frameHeight = 1;        // of the whole window, pixels
};

// What navigation can find out about the model and the view of it. GUI thread only.
class SceneProbe {
 public:
  virtual ~SceneProbe() = default;

  // How far it is to the nearest surface along a direction of unit length; nothing if there is
  // none.
  virtual std::optional<float> DistanceAlong(const Vec3& from, const Vec3& direction) const = 0;
  // A pixel of the view, row 0 at the top, as in the picture that is shown.
  virtual PickedPoint Pick(int x, int y) const = 0;
  // The step of one column to the right and of one row upwards, that far from the eye.
  virtual void PanVectors(float distance, Vec3& right, Vec3& up) const = 0;
  // The box around the model; nothing if the model is empty.
  virtual std::optional<SceneBox> Bounds() const = 0;
  virtual ViewGeometry View() const = 0;
};

}  // namespace qv

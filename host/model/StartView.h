#pragma once

#include <optional>

#include "core/RenderCamera.h"
#include "host/model/Scene.h"

namespace qv::host {

// What a caller wants of the start view. Coordinates are the scene's.
struct ViewWishes {
  std::optional<Vec3> eye;
  std::optional<Vec3> target;
  std::optional<float> fieldOfView;  // vertical, radians
};

// The view of a scene from outside: a three-quarter view from above that shows the whole model as
// large as the frame allows, of the sides that the sun shines on. `sunlight` is the way that the
// sun's light travels. The frame is taken to be `aspect` wide for its height.
RenderCamera ViewFromOutside(const Scene& scene, const Vec3& sunlight, float fieldOfView,
                             float aspect);

// The view that a scene is first shown with: the wishes, over the first camera of the file that has
// something of the model before it, over the view from outside. An eye without a target looks at
// the middle of the model; a target without an eye is looked at from where the view would have
// been.
RenderCamera StartView(const Scene& scene, const Vec3& sunlight, const ViewWishes& wishes);

}  // namespace qv::host

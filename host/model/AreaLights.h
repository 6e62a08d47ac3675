#pragma once

#include <cstddef>
#include <vector>

#include "host/model/Scene.h"

namespace qv::host {

// The viewer takes up to 64 shadow rays for each of them at every point of the picture.
inline constexpr std::size_t kMaximumAreaLights = 8;

// The lamps of a scene: its connected glowing surfaces, the strongest first, at most
// kMaximumAreaLights of them. A flat one becomes a rectangle on the side that its normals face,
// others the sides of a box; each lamp keeps its surfaces' area times their emission.
//
// As with the other lights only the ratios within a scene are kept: the strongest lamp gives a
// white surface that faces it kLampLevel at kRoomDistance, or at half the diagonal of the scene if
// that is less. But no surface gives less light than it shows.
//
// None where more than half of all surfaces glow: such a file has its colours there because it is
// to be shown without lighting.
std::vector<SceneAreaLight> AreaLightsOf(const Scene& scene);

// The two triangles of a rectangle about `center`, which shines to the side of `across` x `along`;
// both are half as long as the rectangle's sides.
std::vector<Vec3> RectangleCorners(const Vec3& center, const Vec3& across, const Vec3& along);

}  // namespace qv::host

#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "core/Vec.h"

namespace qv::host {

// Faces that meet at a larger angle than this keep an edge. 12 sides to the circle are round, 10
// are not; the ridge of a roof of more than 17.5 degrees is an edge.
inline constexpr float kCreaseDegrees = 35;

// Normals for a mesh that has none: for each corner of each triangle the mean, weighted by the
// angle of the corner, of the normals of those triangles at the same place that meet the corner's
// own at no more than the crease angle (weights: G. Thürmer and C. Wüthrich, "Computing Vertex
// Normals from Polygonal Facets", 1998; they make the result independent of how a polygon was cut).
// Triangles join where their corners lie at the same place, within a hundred thousandth of the
// mesh's size, whether or not they share vertex numbers.
// `corners` are vertex numbers, three for each triangle, within `positions`; positions are finite.
// Triangles without area get their neighbours' mean or, without neighbours, z.
std::vector<Vec3> CreaseNormals(std::span<const Vec3> positions,
                                std::span<const std::uint32_t> corners,
                                float creaseDegrees = kCreaseDegrees);

}  // namespace qv::host

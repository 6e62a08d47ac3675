#pragma once

#include <cstdint>
#include <span>

#include "render/geometry/Mesh.h"

namespace qv {

// Texels per model unit along the first edge of a triangle, for the top mip level of the front and
// the back material. `corner` are three vertex numbers.
TexelScale ComputeTexelScale(const PaddedVec3* positions, const UvPair* uvs,
                             const std::uint32_t* corner, std::uint32_t materialWord,
                             std::span<const RenderMaterial> materials);

// The directions in which u and v grow on a triangle, for both uv sets, from the plane through
// (P[axis], u, v) of the three corners for each axis; zero where a plane is perpendicular to the uv
// plane.
TangentFrame ComputeTangentFrame(const PaddedVec3* positions, const UvPair* uvs,
                                 const std::uint32_t* corner);

}  // namespace qv

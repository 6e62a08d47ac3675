#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "core/Vec.h"

namespace qv::host {

// Cuts a polygon that is about flat into triangles, turned as the polygon is, by cutting off ears
// (G. H. Meisters, "Polygons Have Ears", 1975). Corners that lie on the edge of an ear keep it from
// being cut, unlike in the import library's own step, which lets triangles overlap there. The
// outline may touch itself, as where a hole is joined to it by a pair of edges; one that crosses
// itself is cut somehow. The numbers are those of the polygon's corners; all coordinates must be
// finite. A polygon without area gives no triangle.
std::vector<std::array<std::uint32_t, 3>> CutPolygon(std::span<const Vec3> polygon);

}  // namespace qv::host

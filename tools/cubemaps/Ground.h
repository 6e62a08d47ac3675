#pragma once

#include "World.h"

namespace qv::cubemaps {

// A car park of old asphalt: stones, cracks, patches, oil, and white lines of parking bays in two
// rows north and south of the eye.
Surface AsphaltAt(const Hit& hit);

// Grass as seen from so far that its blades cannot be told apart.
Surface LawnAt(const Hit& hit, const Vec3& color);

// Fields and meadows with hedges between, and woods where `woods` of the place is above 0.
Surface CountryAt(const Hit& hit, const Vec3& meadow, const Vec3& corn, float woods);

}  // namespace qv::cubemaps

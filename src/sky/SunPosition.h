#pragma once

#include <Eigen/Core>

#include "core/Vec.h"
#include "sky/LocalTime.h"
#include "sky/Location.h"

namespace qv::sky {

// The elevation at which a body is seen, from its true one, both in radians: the air lifts it by
// half a degree at the horizon.
double Refracted(double elevation);

// The way to the sun as it is seen, of unit length, in the sky's horizon axes: x east, y up, z
// south. Low precision theory after O. Montenbruck and T. Pfleger, "Astronomy on the Personal
// Computer"; good to about 0.01 degrees for a century around 2000.
Eigen::Vector3d SunPosition(const LocalTime& time, const Location& location);

// The way in which light from a body of the sky travels, of unit length, in the model's axes (y
// north, z up), where model north is turned from the sky's north by `sunRotation` radians.
Vec3 LightDirection(const Eigen::Vector3d& skyPosition, float sunRotation);

}  // namespace qv::sky

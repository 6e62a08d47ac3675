#include "sky/SunColor.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qv::sky {
namespace {

constexpr double kDegreesPerRadian = 180 / std::numbers::pi;
constexpr double kSunRadius = 0.267;  // degrees

// Optical depth of the whole air towards the zenith at the wavelengths of red, green and blue
// (0.61, 0.55, 0.465 um), as the sum of
//   Rayleigh scattering, 0.00874 w^-4.08: 0.066, 0.100, 0.199;
//   aerosol of turbidity 2, 0.0463 w^-1.3: 0.088, 0.101, 0.125;
//   ozone of 3.5 mm (Chappuis band): 0.044, 0.031, 0.003.
constexpr double kOpticalDepth[3] = {0.198, 0.232, 0.327};

// How strongly the eye, which adapts to the light that there is, lifts what the air lets through,
// and what it takes for full sunlight. The rest to 1 is for the skylight that a sunlit surface gets
// besides.
constexpr double kResponse = 6.0;
constexpr double kFullSun = 0.85;

// Relative optical air mass (F. Kasten and A. T. Young, "Revised optical air mass tables and
// approximation formula", Applied Optics 28, 1989).
double AirMass(double elevation) {
  const double sine = std::sin(elevation / kDegreesPerRadian);
  return 1 / (sine + 0.50572 * std::pow(elevation + 6.07995, -1.6364));
}

}  // namespace

Vec3 SunColor(double sineOfElevation) {
  const double elevation = std::asin(std::clamp(sineOfElevation, -1.0, 1.0)) * kDegreesPerRadian;
  const double visible = std::clamp(0.5 + elevation / (2 * kSunRadius), 0.0, 1.0);
  if (!(visible > 0)) return Vec3::Zero();

  const double airMass = AirMass(std::max(elevation, 0.0));
  Vec3 color;
  for (int i = 0; i < 3; ++i) {
    const double transmittance = std::exp(-kOpticalDepth[i] * airMass);
    color[i] = static_cast<float>(kFullSun * visible * (1 - std::exp(-kResponse * transmittance)));
  }
  return color;
}

}  // namespace qv::sky

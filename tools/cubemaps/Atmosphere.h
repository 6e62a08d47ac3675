#pragma once

#include <vector>

#include "core/Vec.h"

namespace qv::cubemaps {

// The clear sky of a round earth: single scattering by air and haze and absorption by ozone,
// integrated along the view (T. Nishita et al., "Display of the Earth taking into account
// atmospheric scattering", 1993), with the light of all further scatterings from S. Hillaire, "A
// scalable and production ready sky and atmosphere rendering technique", 2020, where the
// coefficients of air, haze and ozone come from too. The sun outside the air has radiance such that
// its irradiance is 1.
class Atmosphere {
 public:
  // `sun` is the unit vector to the sun, z up; `haze` multiplies the aerosol of a clear day.
  Atmosphere(const Vec3& sun, float haze);

  const Vec3& sun() const { return sun_; }
  // Irradiance of the sun on a plane across its light, at the ground.
  const Vec3& sunlight() const { return sunlight_; }
  // Without the disc of the sun. Below the horizon what stands just above it.
  Vec3 Radiance(const Vec3& direction) const;

 private:
  // What reaches the eye, without the phase functions that depend on the angle to the sun.
  struct Gathered {
    Vec3 air{0, 0, 0};
    Vec3 haze{0, 0, 0};
    Vec3 even{0, 0, 0};  // of more than one scattering, from all sides alike
  };

  struct Coefficients {
    Vec3 air;
    Vec3 haze;  // scattering
    Vec3 extinction;
  };

  Coefficients At(float altitude) const;
  Vec3 Transmittance(const Vec3& from, const Vec3& direction) const;
  Gathered Gather(const Vec3& from, const Vec3& direction, float distance, int steps,
                  bool withEven) const;
  void MakeEvenLight();
  void MakeTable();

  const Vec3 sun_;
  const float haze_;
  std::vector<Vec3> evenLight_;  // by altitude: what each scattering of it sends to all sides
  std::vector<Gathered> table_;  // by elevation and by angle from the sun around the horizon
  Vec3 sunlight_;
};

}  // namespace qv::cubemaps

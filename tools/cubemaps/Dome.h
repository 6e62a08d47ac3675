#pragma once

#include <cstdint>
#include <vector>

#include "Atmosphere.h"
#include "core/Vec.h"

namespace qv::cubemaps {

// Heaps of clouds between two altitudes, metres above the eye, and a thin veil high above them.
struct Weather {
  float base = 1100;
  float top = 1900;
  float cover = 0.45f;      // share of the sky, about
  float scale = 2600;       // between one cloud and the next
  float thickness = 0.02f;  // extinction per metre inside
  float veil = 0.25f;       // optical thickness of the veil where it is thickest
  float veilTurn = 0.4f;    // which way its streaks go, radians
  std::uint32_t seed = 1;
};

// The upper half of what is seen: clear sky, clouds before it, sun. Painted once into a table.
class Dome {
 public:
  // `rows` is how many steps there are from the horizon to the zenith.
  Dome(const Atmosphere& atmosphere, const Weather& weather, int rows);

  // With the disc of the sun and its glare in the eye. Any direction; below the horizon as at it.
  Vec3 Radiance(const Vec3& direction) const;
  // Without the sun itself: what lights the ground besides it.
  Vec3 Skylight(const Vec3& direction) const;
  // Of the whole dome without the sun on a plane of that normal, at places that see all of it.
  Vec3 Irradiance(const Vec3& normal) const;

 private:
  struct Pixel {
    Vec3 color{0, 0, 0};
    float clear = 1;  // how much of what lies behind the clouds gets through
  };
  // `octaves` of lumps on the clouds.
  float Density(const Vec3& p, int octaves) const;
  float DepthToSun(const Vec3& p, float jitter) const;
  Pixel March(const Vec3& direction, float jitter) const;
  void AddVeil(const Vec3& direction, Vec3& color, float& clear) const;
  Pixel At(const Vec3& direction) const;
  void MakeIrradiance();

  const Atmosphere& atmosphere_;
  const Weather weather_;
  const int rows_;
  const int columns_;
  Vec3 ambient_;  // mean radiance of the clear sky
  std::vector<Pixel> pixels_;
  // Irradiance as spherical harmonics of degree 2, each with its colour.
  Vec3 harmonics_[9];
};

}  // namespace qv::cubemaps

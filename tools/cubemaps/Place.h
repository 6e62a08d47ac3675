#pragma once

#include <functional>

#include "Atmosphere.h"
#include "Dome.h"
#include "Terrain.h"
#include "World.h"

namespace qv::cubemaps {

// What lies between the eye and what it sees.
struct Air {
  float visibility = 40000;  // metres until a dark thing cannot be told from the horizon
  float fog = 0;             // extinction per metre of ground fog at fogTop
  float fogTop = -60;        // altitude above the eye
  float fogScale = 15;       // metres in which it gets e times thinner
};

// What tells one place and hour from another.
struct Scenery {
  Vec3 sun{0, 0, 1};  // unit vector to it
  float haze = 1;     // see Atmosphere
  Weather weather;
  Air air;
  float exposure = 6;
  Vec3 white{1, 1, 1};               // what each channel is multiplied with, as a camera does
  Vec3 ground{0.14f, 0.14f, 0.11f};  // mean albedo of what lies around
  Terrain terrain;
  std::function<void(World& world)> furnish;  // adds what stands on the terrain
};

Scenery AsphaltMorning();
Scenery MeadowNoon();
Scenery HillsEvening();

// The unit vector to a sun, by degrees above the horizon and clockwise from north.
Vec3 SunAt(float elevation, float azimuth);

// A place on the earth at some hour: all that its six pictures are painted from.
struct Place {
  // `rows` is the fineness of the sky, see Dome.
  Place(const Scenery& from, int rows);

  const Scenery scenery;
  const Atmosphere atmosphere;
  const Dome dome;
  World world;
};

}  // namespace qv::cubemaps

#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Atmosphere.h"
#include "Dome.h"
#include "World.h"

namespace qv::cubemaps {

// What lies between the eye and what it sees.
struct Air {
  float visibility = 40000;  // metres until a dark thing cannot be told from the horizon
  float fog = 0;             // extinction per metre of ground fog at fogTop
  float fogTop = -60;        // altitude above the eye
  float fogScale = 15;       // metres in which it gets e times thinner
};

// A place on the earth at some hour: all that its six pictures are painted from.
struct Place {
  std::string name;
  std::unique_ptr<Atmosphere> atmosphere;
  std::unique_ptr<Dome> dome;
  World world;
  Air air;
  float exposure = 6;
  Vec3 white{1, 1, 1};               // what each channel is multiplied with, as a camera does
  Vec3 ground{0.14f, 0.14f, 0.11f};  // mean albedo of what lies around
};

// `rows` is the fineness of the sky, see Dome.
std::unique_ptr<Place> AsphaltMorning(int rows);
std::unique_ptr<Place> MeadowNoon(int rows);
std::unique_ptr<Place> HillsEvening(int rows);

// The unit vector to a sun, by degrees above the horizon and clockwise from north.
Vec3 SunAt(float elevation, float azimuth);

// The ground as rings around the eye, finer near it, from `nearest` metres to `farthest`; the disc
// inside the first ring too.
void AddTerrain(World& world, const std::function<float(float x, float y)>& height, float nearest,
                float farthest, int rings, int spokes, Material material);

}  // namespace qv::cubemaps

#include <algorithm>
#include <cmath>

#include "Buildings.h"
#include "Ground.h"
#include "Noise.h"
#include "Place.h"
#include "Planter.h"
#include "Plants.h"

namespace qv::cubemaps {
namespace {

constexpr float kWest = -36, kEast = 40, kSouth = -26, kNorth = 33;
const Vec3 kLawn(0.055f, 0.085f, 0.022f);

// Above 0 outside of the car park: metres to its edge.
float BeyondEdge(float x, float y) {
  return std::max({kWest - x, x - kEast, kSouth - y, y - kNorth});
}

float HeightAt(float x, float y) {
  const float r = std::hypot(x, y);
  const float verge = 0.15f * Step(0.2f, 1.0f, BeyondEdge(x, y));
  const float far = Step(250, 2600, r) * (34 + 26 * Fbm(x / 900, y / 900, 4, 201));
  return -kEye + verge + 0.35f * Step(2, 30, BeyondEdge(x, y)) * Fbm(x / 18, y / 18, 3, 203) + far;
}

Surface GroundAt(const Hit& hit) {
  const float x = hit.position.x();
  const float y = hit.position.y();
  if (BeyondEdge(x, y) < 0.1f) return AsphaltAt(hit);
  if (std::hypot(x, y) < 220) return LawnAt(hit, kLawn);
  return CountryAt(hit, kLawn, Vec3(0.20f, 0.17f, 0.08f), 0.25f + Fbm(x / 500, y / 500, 3, 205));
}

void AddKerb(World& world) {
  Mesh kerb;
  const float z = -kEye - 0.1f;
  const float top = -kEye + 0.13f;
  kerb.AddBox({kWest - 0.15f, kSouth - 0.15f, z}, {kEast + 0.15f, kSouth, top});
  kerb.AddBox({kWest - 0.15f, kNorth, z}, {kEast + 0.15f, kNorth + 0.15f, top});
  kerb.AddBox({kWest - 0.15f, kSouth, z}, {kWest, kNorth, top});
  kerb.AddBox({kEast, kSouth, z}, {kEast + 0.15f, kNorth, top});
  const Material concrete = [](const Hit& hit) {
    Surface surface;
    const Vec3& p = hit.position;
    const float joint = std::abs(p.x() + p.y() - std::round(p.x() + p.y())) < 0.012f ? 0.5f : 1.0f;
    surface.albedo = Vec3(0.36f, 0.35f, 0.33f) * joint * (1 + 0.25f * Fbm(p * 3.0f, 4, 207));
    surface.normal = hit.normal;
    return surface;
  };
  world.Place(world.AddPrototype({{std::move(kerb), concrete}}), Vec3::Zero());
}

void AddVerge(World& world) {
  GrassShape shape;
  shape.blades = 700;
  shape.height = 0.11f;
  shape.color = Vec3(0.085f, 0.13f, 0.032f);
  const int grass = AddGrass(world, shape, 11);
  Dice dice(12);
  Planter planter(world, HeightAt, dice);
  for (float x = -57.5f; x < 62; ++x) {
    for (float y = -47.5f; y < 55; ++y) {
      const float edge = BeyondEdge(x, y);
      if (edge >= 0.4f && edge <= 16) planter.Grass(grass, x, y, 1.25f);
    }
  }
}

void AddTrees(World& world) {
  const int round = AddTree(world, {11, 2.8f, 4.4f, 0, 300, 130, 0.17f, 0.7f}, 21);
  const int tall =
      AddTree(world, {14, 3.2f, 4.0f, 0.25f, 320, 130, 0.18f, 0.7f, {0.062f, 0.108f, 0.028f}}, 22);
  const int young =
      AddTree(world, {6.5f, 1.9f, 2.2f, 0.2f, 150, 100, 0.13f, 0.45f, {0.088f, 0.135f, 0.03f}}, 23);
  const int bush =
      AddTree(world, {1.8f, 0, 1.1f, 0, 70, 110, 0.08f, 0.34f, {0.055f, 0.092f, 0.026f}}, 24);
  Dice dice(25);
  Planter planter(world, HeightAt, dice, {0.85f, 1.15f, 0.05f});
  // A row of young trees along the northern kerb, bushes along the western one.
  for (float x = kWest + 4; x < kEast; x += 9.5f)
    planter.Tree(young, x + dice.Roll(-1, 1), kNorth + 3, 1);
  for (float y = kSouth; y < kNorth; y += 1.25f) planter.Tree(bush, kWest - 2.2f, y, 1);
  for (float x = kWest; x < kEast; x += 1.3f) planter.Tree(bush, x, kSouth - 2.4f, 0.9f);
  for (int i = 0; i < 70; ++i) {
    const auto [x, y, angle] = SpotByRadius(dice, 62, 175);
    // Towards the sun and the hall the view stays open.
    if (BeyondEdge(x, y) < 14 || Noise(angle * 2.2f, 0, 209) < -0.12f) continue;
    planter.Tree(i % 2 ? round : tall, x, y, 1);
  }
  // The wood behind all.
  for (int i = 0; i < 1500; ++i) {
    const Spot spot = SpotByRadius(dice, 260, 620);
    if (Fbm(spot.x / 260, spot.y / 260, 3, 211) < -0.1f) continue;
    planter.Tree(i % 3 ? round : tall, spot.x, spot.y, 1.15f);
  }
}

void AddTown(World& world) {
  const auto at = [](float x, float y) { return Vec3(x, y, HeightAt(x, y)); };
  const int hall = AddBlock(world, {62, 26, 8.5f, 0, {0.42f, 0.45f, 0.48f}});
  const int flats = AddBlock(world, {44, 12, 15, 3, {0.60f, 0.57f, 0.50f}});
  const int offices = AddBlock(world, {30, 15, 10.4f, 3.4f, {0.44f, 0.25f, 0.18f}});
  const int house = AddHouse(world, {});
  const int wide =
      AddHouse(world, {16, 9.5f, 3.4f, 8.2f, {0.66f, 0.64f, 0.60f}, {0.12f, 0.11f, 0.11f}});
  world.Place(hall, at(22, 84), 0.05f, 1, 0.5f);
  world.Place(flats, at(-62, 92), 0.45f, 1, 0.6f);
  world.Place(flats, at(-112, 66), 0.85f, 1, 0.4f);
  world.Place(offices, at(98, 22), 1.45f, 1, 0.5f);
  const float houses[][3] = {{-92, -10, 1.3f}, {-96, -34, 1.6f}, {-84, -62, 0.8f}, {-52, -84, 0.3f},
                             {-22, -92, 0.1f}, {12, -88, -0.1f}, {44, -86, -0.2f}, {78, -66, -0.7f},
                             {-130, 10, 1.5f}, {-8, -130, 0},    {60, -128, 0.2f}, {120, 70, 0.9f}};
  Dice dice(26);
  int count = 0;
  for (const auto& [x, y, turn] : houses) {
    world.Place(++count % 3 ? house : wide, at(x, y), turn, dice.Roll(0.92f, 1.1f), dice.Roll());
  }
  const int lamp = AddLamp(world, 7.5f);
  for (const float x : {-21.0f, 4.0f, 29.0f}) {
    world.Place(lamp, {x, 18.6f, -kEye}, -1.5708f);
    world.Place(lamp, {x + 6, -17.4f, -kEye}, 1.5708f);
  }
}

}  // namespace

Scenery AsphaltMorning() {
  return {.sun = SunAt(24, 118),
          .haze = 1.6f,
          .weather =
              {.base = 1250, .top = 2050, .cover = 0.27f, .scale = 2300, .veil = 0.22f, .seed = 45},
          .air = {24000},
          .exposure = 8.6f,
          .white = {0.94f, 1.0f, 1.08f},
          .ground = {0.12f, 0.12f, 0.105f},
          .terrain = {HeightAt, 20000, 260, 720, GroundAt},
          .furnish = [](World& world) {
            AddKerb(world);
            AddVerge(world);
            AddTrees(world);
            AddTown(world);
          }};
}

}  // namespace qv::cubemaps

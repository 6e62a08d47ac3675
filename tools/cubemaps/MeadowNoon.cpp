#include <cmath>

#include "Buildings.h"
#include "Ground.h"
#include "Noise.h"
#include "Place.h"
#include "Planter.h"
#include "Plants.h"

namespace qv::cubemaps {
namespace {

constexpr float kVillageX = -150, kVillageY = 400;
const Vec3 kGrass(0.092f, 0.138f, 0.040f);
const Vec3 kSward(0.072f, 0.108f, 0.027f);  // the same from afar, blades and their shadows together

float HeightAt(float x, float y) {
  const float r = std::hypot(x, y);
  const float near = 0.5f * Step(3, 40, r) * Fbm(x / 26, y / 26, 3, 301) +
                     6 * Step(60, 700, r) * Fbm(x / 320, y / 320, 3, 303);
  const float hills = Step(900, 5200, r) * (230 + 260 * Fbm(x / 2600, y / 2600, 5, 305)) +
                      Step(5000, 14000, r) * (330 + 480 * Fbm(x / 5200, y / 5200, 5, 307));
  return -kEye + near + hills;
}

float WoodsAt(float x, float y) {
  return Fbm(x / 620, y / 620, 4, 309) - 0.16f + 0.10f * Step(1500, 5000, std::hypot(x, y));
}

Surface GroundAt(const Hit& hit) {
  const float x = hit.position.x();
  const float y = hit.position.y();
  const float r = std::hypot(x, y);
  // Between the blades lie their shadows and what is left of last year's.
  if (r < 110) return LawnAt(hit, Blend(Vec3(0.058f, 0.072f, 0.026f), kSward, Step(20, 75, r)));
  return CountryAt(hit, kSward, Vec3(0.30f, 0.25f, 0.10f), WoodsAt(x, y));
}

void AddMeadow(World& world) {
  GrassShape shape;
  shape.color = kGrass;
  const int plain = AddGrass(world, shape, 31);
  shape.height = 0.24f;
  shape.stalks = 45;
  shape.dryness = 0.2f;
  const int high = AddGrass(world, shape, 32);
  shape.height = 0.15f;
  shape.stalks = 0;
  shape.dryness = 0.08f;
  shape.flowers = 14;
  const int flowery = AddGrass(world, shape, 33);
  Dice dice(34);
  Planter planter(world, HeightAt, dice);
  const auto grassAt = [&](float x, float y) {
    const float kind = Fbm(x / 9, y / 9, 3, 311) + dice.Roll(-0.2f, 0.2f);
    return kind > 0.25f ? high : kind < -0.12f ? flowery : plain;
  };
  planter.Meadow(80, grassAt);
}

void AddTrees(World& world) {
  const int oak = AddTree(world, {13, 2.6f, 5.8f, 0, 420, 140, 0.19f, 0.8f}, 41);
  const int ash =
      AddTree(world, {16, 3.4f, 4.6f, 0.2f, 380, 130, 0.19f, 0.75f, {0.068f, 0.112f, 0.027f}}, 42);
  const int bush =
      AddTree(world, {2.6f, 0, 1.7f, 0, 100, 120, 0.10f, 0.45f, {0.062f, 0.102f, 0.027f}}, 43);
  const int spruce =
      AddTree(world, {17, 1.2f, 3.2f, 1, 420, 110, 0.16f, 0.5f, {0.030f, 0.058f, 0.024f}}, 44);
  Dice dice(45);
  Planter planter(world, HeightAt, dice, {0.82f, 1.18f, 0.1f});
  // Hedges with single trees: one in the north, one in the east, both a little bent.
  for (float x = -150; x < 130; x += 1.7f) {
    const float y = 74 + 0.0011f * x * x + 2.5f * Noise(x / 12, 0, 313);
    planter.Tree(bush, x, y, dice.Roll(0.8f, 1.3f));
    if (dice.Roll() < 0.05f) planter.Tree(dice.Roll() < 0.5f ? oak : ash, x, y + 1.5f, 0.9f);
  }
  for (float y = -130; y < 70; y += 1.7f) {
    const float x = 96 + 3 * Noise(y / 14, 0, 315);
    planter.Tree(bush, x, y, dice.Roll(0.8f, 1.3f));
    if (dice.Roll() < 0.04f) planter.Tree(ash, x + 1.5f, y, 0.9f);
  }
  planter.Tree(oak, -34, 38, 1.0f);
  planter.Tree(oak, -58, -42, 1.1f);
  planter.Tree(oak, -69, -36, 0.95f);
  planter.Tree(ash, 26, -88, 1);
  for (int i = 0; i < 26000; ++i) {
    const Spot spot = SpotByArea(dice, 140, 1500);
    const float woods = WoodsAt(spot.x, spot.y);
    const float village = std::hypot(spot.x - kVillageX * 0.7f, spot.y - kVillageY * 0.7f);
    if (woods < 0.0f || village < 190) continue;
    planter.Tree(woods > 0.16f && i % 3 ? spruce : i % 2 ? oak : ash, spot.x, spot.y, 1.05f);
  }
}

void AddVillage(World& world) {
  const int house = AddHouse(world, {});
  const int barn =
      AddHouse(world, {22, 11, 4.5f, 10.5f, {0.36f, 0.27f, 0.19f}, {0.26f, 0.10f, 0.06f}});
  Mesh tower;
  tower.AddBox({-2.6f, -2.6f, -2}, {2.6f, 2.6f, 20});
  Mesh spire;
  for (const auto& [x, y] : {std::pair(1, 0), {0, 1}, {-1, 0}, {0, -1}}) {
    const auto sx = static_cast<float>(x) * 2.9f;
    const auto sy = static_cast<float>(y) * 2.9f;
    spire.AddQuad({sx - sy, sy + sx, 20}, {sx + sy, sy - sx, 20}, {0, 0, 34}, {0, 0, 34});
  }
  const auto plain = [](const Vec3& color) -> Material {
    return [color](const Hit& hit) {
      Surface surface;
      surface.albedo = color;
      surface.normal = hit.normal;
      return surface;
    };
  };
  const int church = world.AddPrototype({{std::move(tower), plain({0.60f, 0.57f, 0.50f})},
                                         {std::move(spire), plain({0.12f, 0.13f, 0.14f})}});
  Dice dice(46);
  const auto at = [](float x, float y) { return Vec3(x, y, HeightAt(x, y) - 0.3f); };
  world.Place(church, at(kVillageX, kVillageY));
  for (int i = 0; i < 26; ++i) {
    const float x = kVillageX + dice.Roll(-120, 120);
    const float y = kVillageY + dice.Roll(-50, 90);
    if (std::hypot(x - kVillageX, y - kVillageY) < 15) continue;
    world.Place(i % 4 ? house : barn, at(x, y), dice.Roll(0, 3.14f), dice.Roll(0.9f, 1.15f),
                dice.Roll());
  }
  world.Place(barn, at(240, -150), 0.4f);
}

}  // namespace

Scenery MeadowNoon() {
  return {.sun = SunAt(54, 200),
          .haze = 1.1f,
          .weather =
              {.base = 1150, .top = 2000, .cover = 0.44f, .scale = 2100, .veil = 0.08f, .seed = 54},
          .air = {38000},
          .exposure = 6.8f,
          .white = {0.98f, 1.0f, 1.03f},
          .ground = {0.09f, 0.12f, 0.045f},
          .terrain = {HeightAt, 30000, 420, 900, GroundAt},
          .furnish = [](World& world) {
            AddMeadow(world);
            AddTrees(world);
            AddVillage(world);
          }};
}

}  // namespace qv::cubemaps

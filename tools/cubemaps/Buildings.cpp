#include "Buildings.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "Noise.h"

namespace qv::cubemaps {
namespace {

// Windows of `width` by `height` in a wall that goes along one axis, `bay` apart, each storey anew.
struct Windows {
  float bay, width, sill, height, storey, lowest, highest;
};

enum class Part { kWall, kFrame, kGlass };

Part PartAt(const Windows& windows, float along, float up) {
  if (up < windows.lowest || up > windows.highest) return Part::kWall;
  const float a = along - windows.bay * std::floor(along / windows.bay) - windows.bay / 2;
  const float level = (up - windows.lowest) / windows.storey;
  const float b = (level - std::floor(level)) * windows.storey - windows.sill;
  const float in = std::min({windows.width / 2 - std::abs(a), b, windows.height - b});
  if (in < 0) return Part::kWall;
  return in < 0.07f || std::abs(a) < 0.04f ? Part::kFrame : Part::kGlass;
}

// Where on its wall a hit is, sideways.
float AlongWall(const Hit& hit) {
  return std::abs(hit.localNormal.x()) > std::abs(hit.localNormal.y()) ? hit.local.y()
                                                                       : hit.local.x();
}

Surface WallAt(const Hit& hit, const Windows& windows, const Vec3& color) {
  Surface surface;
  surface.normal = hit.normal;
  const bool upright = std::abs(hit.localNormal.z()) < 0.5f;
  const float along = AlongWall(hit);
  const Part part = upright ? PartAt(windows, along, hit.local.z()) : Part::kWall;
  if (part == Part::kGlass) {
    const auto pane =
        static_cast<std::uint32_t>(static_cast<int>(std::floor(along / windows.bay)) * 31 +
                                   static_cast<int>(std::floor(hit.local.z() / windows.storey)));
    surface.albedo =
        Vec3(0.025f, 0.03f, 0.035f) + Vec3::Constant(Scramble(pane) % 5 == 0 ? 0.18f : 0.0f);
    surface.gloss = 0.22f;
  } else if (part == Part::kFrame) {
    surface.albedo = Vec3::Constant(0.55f);
  } else {
    const float stains =
        Fbm(Vec3(hit.local.x() * 0.5f, hit.local.y() * 0.5f, hit.local.z() * 0.25f), 4, 61);
    const float foot = Step(0.9f, 0.1f, hit.local.z());
    surface.albedo = color * ((1 + 0.16f * stains) * (1 - 0.3f * foot));
  }
  return surface;
}

Surface RoofAt(const Hit& hit, const Vec3& color) {
  Surface surface;
  surface.normal = hit.normal;
  const float rows = hit.local.z() / 0.22f;
  const float own = Fbm(hit.local * 1.2f, 4, 63);
  const float edge = Step(0.12f, 0.0f, rows - std::floor(rows));
  surface.albedo = color * ((1 + 0.4f * own) * (1 - 0.35f * edge));
  return surface;
}

}  // namespace

int AddHouse(World& world, const HouseShape& shape) {
  const float x = shape.length / 2;
  const float y = shape.depth / 2;
  Mesh walls;
  walls.AddBox({-x, -y, -2}, {x, y, shape.eaves});
  for (const float side : {-x, x}) {
    walls.AddQuad({side, -y, shape.eaves}, {side, y, shape.eaves}, {side, 0, shape.ridge},
                  {side, 0, shape.ridge});
  }
  Mesh roof;
  const float over = 0.5f;
  const float slope = (shape.ridge - shape.eaves) / y;
  const float low = shape.eaves - over * slope + 0.12f;
  for (const float side : {-1.0f, 1.0f}) {
    roof.AddQuad({-x - over, side * (y + over), low}, {x + over, side * (y + over), low},
                 {x + over, 0, shape.ridge + 0.12f}, {-x - over, 0, shape.ridge + 0.12f});
  }
  Mesh chimney;
  chimney.AddBox({x * 0.3f, -0.9f, shape.eaves}, {x * 0.3f + 0.6f, -0.3f, shape.ridge + 0.9f});
  const Windows windows{2.6f, 1.2f, 1.0f, 1.35f, 2.75f, 0, shape.eaves - 0.1f};
  return world.AddPrototype(
      {{std::move(walls),
        [=](const Hit& hit) {
          return WallAt(hit, windows, shape.wall * (0.8f + 0.4f * hit.tint));
        }},
       {std::move(roof),
        [=](const Hit& hit) { return RoofAt(hit, shape.roof * (0.7f + 0.6f * hit.tint)); }},
       {std::move(chimney), [](const Hit& hit) {
          Surface surface;
          surface.albedo = Vec3(0.24f, 0.12f, 0.09f);
          surface.normal = hit.normal;
          return surface;
        }}});
}

int AddBlock(World& world, const BlockShape& shape) {
  const float x = shape.length / 2;
  const float y = shape.depth / 2;
  Mesh walls;
  walls.AddBox({-x, -y, -1}, {x, y, shape.height});
  walls.AddBox({-x * 0.2f, -y * 0.4f, shape.height}, {x * 0.05f, y * 0.2f, shape.height + 1.8f});
  Mesh rim;
  rim.AddBox({-x - 0.12f, -y - 0.12f, shape.height - 0.35f},
             {x + 0.12f, y + 0.12f, shape.height + 0.12f});
  const float storey = shape.storey > 0 ? shape.storey : 100;
  const Windows windows{
      3.1f, 2.3f, 0.95f, 1.5f, storey, shape.storey > 0 ? 0.0f : 1e6f, shape.height - 0.6f};
  const bool hall = shape.storey <= 0;
  return world.AddPrototype({{std::move(walls),
                              [=](const Hit& hit) {
                                Surface surface =
                                    WallAt(hit, windows, shape.wall * (0.85f + 0.3f * hit.tint));
                                if (hall) {
                                  // Sheets with folds.
                                  const float along = AlongWall(hit) / 0.3f;
                                  surface.albedo *=
                                      along - std::floor(along) < 0.25f ? 0.82f : 1.0f;
                                }
                                return surface;
                              }},
                             {std::move(rim), [=](const Hit& hit) {
                                Surface surface;
                                surface.albedo = shape.wall * 0.5f;
                                surface.normal = hit.normal;
                                return surface;
                              }}});
}

int AddLamp(World& world, float height) {
  Mesh post;
  post.AddRod({0, 0, 0}, {0, 0, height}, 0.09f, 0.05f, 10);
  post.AddRod({0, 0, height}, {1.3f, 0, height + 0.15f}, 0.04f, 0.035f, 8);
  post.AddBox({1.1f, -0.14f, height + 0.08f}, {1.75f, 0.14f, height + 0.2f});
  post.AddRod({0, 0, 0}, {0, 0, 0.35f}, 0.16f, 0.14f, 10);
  return world.AddPrototype({{std::move(post), [](const Hit& hit) {
                                Surface surface;
                                surface.albedo = Vec3(0.30f, 0.31f, 0.31f);
                                surface.normal = hit.normal;
                                surface.gloss = 0.04f;
                                return surface;
                              }}});
}

}  // namespace qv::cubemaps

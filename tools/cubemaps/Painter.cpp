#include "Painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "sky/CubeFaces.h"

namespace qv::cubemaps {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr float kSunRadius = 0.00465f;  // radians
constexpr int kGrid = 5;                // samples of a pixel
constexpr int kSkySamples = 3;          // of one that shows sky only

// Air scatters blue more: by kAir of Atmosphere.cpp, over its mean.
const Vec3 kBlueing(0.33f, 0.78f, 1.9f);

Vec3 AroundCosine(const Vec3& normal, Dice& dice) {
  const float r = std::sqrt(dice.Roll());
  const float angle = dice.Roll(0, 2 * kPi);
  const Vec3 side = normal.unitOrthogonal();
  return side * (r * std::cos(angle)) + normal.cross(side) * (r * std::sin(angle)) +
         normal * std::sqrt(std::max(0.0f, 1 - r * r));
}

// The curve of film: K. Narkowicz, "ACES filmic tone mapping curve", 2015.
float Film(float v) {
  return std::clamp(v * (2.51f * v + 0.03f) / (v * (2.43f * v + 0.59f) + 0.14f), 0.0f, 1.0f);
}

// IEC 61966-2-1.
float SrgbOf(float v) {
  return v <= 0.0031308f ? 12.92f * v : 1.055f * std::pow(v, 1 / 2.4f) - 0.055f;
}

}  // namespace

Vec3 Painter::Lit(const Hit& hit, const Surface& surface, const Vec3& direction, Dice& dice) const {
  const Atmosphere& sky = place_.atmosphere;
  const Vec3 origin = hit.position + hit.normal * (1e-3f + hit.distance * 2e-5f);
  const Vec3& n = surface.normal;

  const Vec3 spread(dice.Roll(-1, 1), dice.Roll(-1, 1), dice.Roll(-1, 1));
  const Vec3 toSun = (sky.sun() + spread * kSunRadius).normalized();
  const float facing = n.dot(toSun);
  const float received = facing > 0 ? facing : -facing * surface.through;
  Vec3 light = Vec3::Zero();
  if (received > 0) {
    const Vec3 from = facing > 0 ? origin : Vec3(hit.position - hit.normal * 1e-3f);
    if (!place_.world.IsBlocked(from, toSun, 1e6f)) light += sky.sunlight() * received;
  }

  // What the ground around sends back, taken as even.
  const Vec3 lying = place_.scenery.ground.cwiseProduct(sky.sunlight() * sky.sun().z() +
                                                        place_.dome.Irradiance(Vec3::UnitZ()));
  const Vec3 open = place_.dome.Irradiance(n) + lying * (0.5f - 0.5f * n.z());
  const Vec3 around = AroundCosine(n, dice);
  const bool closed = around.dot(hit.normal) > 0
                          ? place_.world.IsBlocked(origin, around, 60)
                          : place_.world.IsBlocked(hit.position - hit.normal * 1e-3f, around, 60);
  light += closed && around.z() > 0 ? lying * 0.45f : open;

  Vec3 color = surface.albedo.cwiseProduct(light) / kPi;
  if (surface.gloss > 0) {
    const float cosine = std::max(-direction.dot(n), 0.0f);
    const float share =
        surface.gloss + (1 - surface.gloss) * 0.6f * surface.gloss * std::pow(1 - cosine, 5.0f) * 8;
    Vec3 mirrored = direction - n * (2 * direction.dot(n));
    const bool up = mirrored.z() > 0;
    const Vec3 seen = up && !place_.world.IsBlocked(origin, mirrored, 400)
                          ? place_.dome.Skylight(mirrored)
                          : Vec3(lying / kPi);
    color = Blend(color, seen, std::min(share, 0.9f));
  }
  return color;
}

Vec3 Painter::ThroughAir(const Vec3& color, const Vec3& direction, float distance) const {
  const Air& air = place_.scenery.air;
  // C. Koschmieder, 1924: contrast falls to 2 percent in that distance.
  Vec3 depth = (Vec3::Ones() * 0.55f + kBlueing * 0.45f) * (3.912f * distance / air.visibility);
  if (air.fog > 0) {
    // Of a fog that gets thinner upwards, along the ray.
    const float rise = direction.z() * distance / air.fogScale;
    const float start = std::exp(air.fogTop / air.fogScale);
    const float mean = std::abs(rise) > 1e-3f ? (1 - std::exp(-rise)) / rise : 1;
    depth += Vec3::Constant(air.fog * start * mean * distance);
  }
  const Vec3 left = (-depth).array().exp();
  const Vec3 level =
      Vec3(direction.x(), direction.y(), std::max(direction.z(), 0.035f)).normalized();
  const Vec3 haze = place_.atmosphere.Radiance(level);
  return color.cwiseProduct(left) + haze.cwiseProduct(Vec3::Ones() - left);
}

Vec3 Painter::Radiance(const Vec3& direction, float pixel, Dice& dice, bool& hit) const {
  Hit where;
  Surface surface;
  hit = place_.world.Find(Vec3::Zero(), direction, pixel, where, surface);
  if (!hit) return place_.dome.Radiance(direction);
  return ThroughAir(Lit(where, surface, direction, dice), direction, where.distance);
}

Vec3 Painter::Developed(const Vec3& radiance) const {
  const Vec3 v = radiance.cwiseProduct(place_.scenery.white) * place_.scenery.exposure;
  return {SrgbOf(Film(v.x())), SrgbOf(Film(v.y())), SrgbOf(Film(v.z()))};
}

std::vector<std::uint8_t> Painter::Face(int face, int size) const {
  std::vector<std::uint8_t> pixels(static_cast<std::size_t>(size) * static_cast<std::size_t>(size) *
                                   4);
  const float pixel = kPi / 2 / static_cast<float>(size);
#pragma omp parallel for schedule(dynamic, 4)
  for (int row = 0; row < size; ++row) {
    std::uint8_t* out = &pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(size) * 4];
    for (int column = 0; column < size; ++column, out += 4) {
      Dice dice(static_cast<std::uint32_t>((face * size + row) * size + column));
      Vec3 sum = Vec3::Zero();
      int count = 0;
      bool any = false;
      // Each sample has a row and a column of the grid for itself. Where the first ones see nothing
      // but sky, they are enough.
      for (int i = 0; i < kGrid && (i < kSkySamples || any); ++i, ++count) {
        const float right =
            static_cast<float>(column) + (static_cast<float>(i) + dice.Roll()) / kGrid;
        const float down =
            static_cast<float>(row) + (static_cast<float>(3 * i % kGrid) + dice.Roll()) / kGrid;
        const float u = std::min(right / static_cast<float>(size - 1), 1.0f);
        const float v = std::min(down / static_cast<float>(size - 1), 1.0f);
        bool hit = false;
        const Vec3 direction = sky::CubeFaces::DirectionAt(face, u, v).normalized();
        sum += Developed(Radiance(direction, pixel, dice, hit));
        any |= hit;
      }
      const Vec3 color = sum / static_cast<float>(count) * 255 +
                         Vec3::Constant(dice.Roll());  // what would be bands becomes grain
      out[0] = static_cast<std::uint8_t>(std::min(color.z(), 255.0f));
      out[1] = static_cast<std::uint8_t>(std::min(color.y(), 255.0f));
      out[2] = static_cast<std::uint8_t>(std::min(color.x(), 255.0f));
      out[3] = 255;
    }
  }
  return pixels;
}

}  // namespace qv::cubemaps

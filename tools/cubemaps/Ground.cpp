#include "Ground.h"

#include <algorithm>
#include <cmath>

#include "Noise.h"

namespace qv::cubemaps {
namespace {

// How much of a pixel's footprint lies within `half` of a line's middle.
float LineCover(float distance, float half, float footprint) {
  const float soft = std::max(footprint * 0.5f, 0.004f);
  const float cover = std::clamp((half + soft - std::abs(distance)) / (2 * soft), 0.0f, 1.0f);
  return cover * std::min(1.0f, 2 * half / (2 * soft));
}

// Detail of that size, as far as it can be seen: 1 near, 0 where a pixel is larger.
float Seen(float size, float footprint) {
  return 1 - Step(0.35f * size, 1.2f * size, footprint);
}

// White lines of bays two and a half metres wide; 0 to 1.
float PaintAt(float x, float y, float footprint) {
  constexpr float kBay = 2.5f;
  constexpr float kHalf = 0.06f;
  float paint = 0;
  const float across = x - kBay * std::round(x / kBay);
  for (const float from : {4.6f, -9.8f}) {
    const float to = from + 5.2f;
    if (x > -27.6f && x < 30.1f && y > from && y < to) {
      paint = std::max(paint, LineCover(across, kHalf, footprint));
    }
  }
  if (x > -27.6f && x < 30.1f) {
    for (const float edge : {9.8f, -9.8f}) {
      paint = std::max(paint, LineCover(y - edge, kHalf, footprint));
    }
  }
  return paint;
}

float CracksAt(float x, float y, float footprint) {
  const float bendX = x + 0.5f * Fbm(x * 0.7f, y * 0.7f, 4, 71);
  const float bendY = y + 0.5f * Fbm(x * 0.7f, y * 0.7f, 4, 77);
  const Cell large = CellAt(bendX / 4.3f, bendY / 4.3f, 73);
  const float broken = Fbm(x * 0.11f, y * 0.11f, 3, 79);
  const float width = 0.010f * Step(-0.10f, 0.45f, broken) * (1 + Noise(x * 3, y * 3, 81));
  float crack = width <= 0 ? 0 : LineCover((large.second - large.nearest) * 2.1f, width, footprint);
  if (broken > 0.22f) {
    const Cell small = CellAt(bendX / 0.55f, bendY / 0.55f, 83);
    const float fine = 0.004f * Step(0.22f, 0.5f, broken);
    crack =
        std::max(crack, 0.8f * LineCover((small.second - small.nearest) * 0.28f, fine, footprint));
  }
  return crack;
}

// Where the road was opened and closed again.
float PatchAt(float x, float y) {
  const auto in = [&](float x0, float x1, float y0, float y1) {
    const float wobble = 0.03f * Noise(x * 2, y * 2, 85);
    const float inside = std::min({x - x0, x1 - x, y - y0, y1 - y}) + wobble;
    return Step(-0.02f, 0.02f, inside);
  };
  return std::max({in(-6.5f, -3.9f, -30, 3.2f), in(11, 15.5f, -3.4f, -0.6f), in(-20, -16, 12, 40)});
}

float OilAt(float x, float y) {
  const Cell spot = CellAt(x / 2.5f, y / 5.2f, 87);
  const float chance = static_cast<float>(spot.name & 255) / 255;
  const float size = 0.06f + 0.14f * chance;
  const float wobble = 0.35f * Fbm(x * 3, y * 3, 3, 89);
  return chance > 0.35f ? Step(size, size * 0.3f, spot.nearest + wobble * size) : 0;
}

}  // namespace

Surface AsphaltAt(const Hit& hit) {
  const float x = hit.position.x();
  const float y = hit.position.y();
  const float f = hit.footprint;

  const float broad = Fbm(x * 0.09f, y * 0.13f, 4, 91);
  const float middle = Fbm(x * 0.9f, y * 0.9f, 4, 93);
  const float patch = PatchAt(x, y);
  // Lanes are worn light by tyres, bays darkened by what stood there.
  const float lane = Step(4.5f, 1.5f, std::abs(y));
  float grey =
      0.128f * (1 + 0.20f * broad + 0.10f * middle + 0.10f * lane) * Blend(1, 0.62f, patch);

  Surface surface;
  const float seen = Seen(0.012f, f);
  if (seen > 0) {
    // Stones in bitumen, of two sizes.
    const Cell coarse = CellAt(x / 0.010f, y / 0.010f, 95);
    const Cell fine = CellAt(x / 0.005f, y / 0.005f, 97);
    const float stone = Step(0.05f, 0.30f, coarse.second - coarse.nearest);
    const float own = static_cast<float>(coarse.name & 1023) / 1023;
    const float grain = static_cast<float>(fine.name & 255) / 255;
    const float look = stone * (0.65f + 0.95f * own * own) + (1 - stone) * (0.35f + 0.5f * grain);
    grey *= Blend(1, look, seen * 0.55f);
    const Vec3 tilt((static_cast<float>(coarse.name >> 10 & 255) / 255 - 0.5f),
                    (static_cast<float>(coarse.name >> 18 & 255) / 255 - 0.5f), 0);
    surface.normal = (Vec3::UnitZ() + tilt * (0.4f * seen)).normalized();
  }
  const float speckle = Noise(x * 28, y * 28, 99) * Seen(0.035f, f);
  grey *= 1 + 0.22f * speckle;
  grey *= 1 - 0.45f * OilAt(x, y);
  Vec3 color = Vec3(0.985f, 1.0f, 1.01f) * grey;

  const float worn = Fbm(x * 2.1f, y * 2.1f, 5, 101) + 0.45f * speckle + 0.3f * broad;
  const float paint = PaintAt(x, y, f) * Blend(0.12f, 0.92f, Step(0.42f, -0.05f, worn));
  color = Blend(color, Vec3(0.60f, 0.59f, 0.56f) * (1 + 0.1f * middle), paint);
  const float crack = CracksAt(x, y, f) * (1 - patch);
  color *= 1 - 0.82f * crack;
  surface.albedo = color;
  return surface;
}

Surface LawnAt(const Hit& hit, const Vec3& color) {
  const float x = hit.position.x();
  const float y = hit.position.y();
  const float broad = Fbm(x * 0.05f, y * 0.05f, 4, 31);
  const float middle = Fbm(x * 0.35f, y * 0.35f, 4, 31);
  const float fine = Fbm(x * 5, y * 5, 3, 35) * Seen(0.2f, hit.footprint);
  Surface surface;
  surface.albedo = (color * (1 + 0.22f * broad + 0.22f * middle + 0.35f * fine) +
                    Vec3(0.035f, 0.02f, 0) * std::max(middle + broad, 0.0f))
                       .cwiseMax(0.004f);
  surface.normal =
      (hit.normal + Vec3(Noise(x * 3, y * 3, 37), Noise(x * 3, y * 3, 39), 0) * 0.3f).normalized();
  return surface;
}

Surface CountryAt(const Hit& hit, const Vec3& meadow, const Vec3& corn, float woods) {
  const float x = hit.position.x() + 60 * Noise(hit.position.x() / 300, hit.position.y() / 300, 41);
  const float y = hit.position.y() + 60 * Noise(hit.position.x() / 300, hit.position.y() / 300, 43);
  const Cell field = CellAt(x / 340, y / 230, 45);
  const float kind = static_cast<float>(field.name & 1023) / 1023;
  Hit there = hit;
  Vec3 color = meadow * (0.75f + 0.5f * static_cast<float>(field.name >> 12 & 255) / 255);
  if (kind > 0.62f) color = Blend(corn, meadow, static_cast<float>(field.name >> 20 & 255) / 500);
  if (kind > 0.9f) color = Vec3(0.17f, 0.125f, 0.085f);
  // Furrows.
  const float angle = static_cast<float>(field.name & 63);
  const float furrow = Noise((x * std::cos(angle) + y * std::sin(angle)) / 5, 0, 47);
  color *= 1 + 0.12f * furrow * Seen(8, hit.footprint);
  Surface surface = LawnAt(there, color);
  const float border = (field.second - field.nearest) * 140;
  const float bushes = Fbm(x / 12, y / 12, 3, 49);
  const float hedge =
      Step(9, 4, border - 4 * bushes) * Step(-0.35f, 0.1f, Noise(x / 90, y / 90, 51));
  const float wood = Step(-0.03f, 0.03f, woods + 0.06f * Fbm(x / 25, y / 25, 3, 53));
  const float canopy = Fbm(x / 8, y / 8, 4, 55);
  const Vec3 leaves = Vec3(0.030f, 0.048f, 0.018f) * (1 + 0.7f * canopy + 0.3f * furrow);
  const float dark = std::max(hedge * 0.9f, wood);
  surface.albedo = Blend(surface.albedo, leaves.cwiseMax(0.004f), dark);
  if (dark > 0.3f) {
    const Vec3 bumps(Noise(x / 6, y / 6, 57), Noise(x / 6, y / 6, 59), 0);
    surface.normal = (hit.normal + bumps * 0.9f).normalized();
  }
  return surface;
}

}  // namespace qv::cubemaps

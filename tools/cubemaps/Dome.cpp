#include "Dome.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "Noise.h"

namespace qv::cubemaps {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;
constexpr float kEarth = 6360e3f;
// Clouds further away are lost in the haze.
constexpr float kFarthest = 60e3f;
constexpr float kVeilAltitude = 8500;
constexpr float kSunRadius = 0.00465f;  // radians

// L. G. Henyey and J. L. Greenstein, 1941.
float Phase(float cosine, float g) {
  return (1 - g * g) / (4 * kPi * std::pow(1 + g * g - 2 * g * cosine, 1.5f));
}

// Forward and a little back, as droplets do after a few scatterings.
float CloudPhase(float cosine) {
  return 0.7f * Phase(cosine, 0.55f) + 0.3f * Phase(cosine, -0.25f);
}

// Where a ray from the eye reaches an altitude over the round earth.
float DistanceTo(float altitude, float z) {
  const float along = kEarth * z;
  return altitude * (2 * kEarth + altitude) /
         (along + std::sqrt(along * along + altitude * (2 * kEarth + altitude)));
}

float AltitudeOf(const Vec3& p) {
  return p.z() + (p.x() * p.x() + p.y() * p.y()) / (2 * kEarth);
}

Vec3 DirectionOf(float row, float column, int rows, int columns) {
  const float elevation = row / static_cast<float>(rows) * kPi / 2;
  const float azimuth = column / static_cast<float>(columns) * 2 * kPi;
  return {std::cos(elevation) * std::cos(azimuth), std::cos(elevation) * std::sin(azimuth),
          std::sin(elevation)};
}

}  // namespace

Dome::Dome(const Atmosphere& atmosphere, const Weather& weather, int rows)
    : atmosphere_(atmosphere), weather_(weather), rows_(rows), columns_(rows * 4) {
  ambient_ = Vec3::Zero();
  for (int i = 0; i < 64; ++i) {
    const Vec3 d = DirectionOf((static_cast<float>(i / 8) + 0.5f), static_cast<float>(i % 8), 8, 8);
    ambient_ += atmosphere_.Radiance(d) / 64;
  }
  pixels_.resize(static_cast<std::size_t>(rows_ + 1) * static_cast<std::size_t>(columns_));
#pragma omp parallel for schedule(dynamic, 4)
  for (int row = 0; row <= rows_; ++row) {
    Dice dice(static_cast<std::uint32_t>(row) * 7919u + weather_.seed);
    for (int column = 0; column < columns_; ++column) {
      const Vec3 d =
          DirectionOf(static_cast<float>(row), static_cast<float>(column), rows_, columns_);
      pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
              static_cast<std::size_t>(column)] = March(d, dice.Roll());
    }
  }
  MakeIrradiance();
}

// 0 outside of clouds, 1 deep inside.
float Dome::Density(const Vec3& p, int octaves) const {
  const float height = (AltitudeOf(p) - weather_.base) / (weather_.top - weather_.base);
  if (height <= 0 || height >= 1) return 0;
  const float x = p.x() / weather_.scale;
  const float y = p.y() / weather_.scale;
  // Clouds stand in groups, with clear sky between.
  const float groups = Noise(x * 0.23f, y * 0.23f, weather_.seed + 50);
  const float heap = Fbm(x, y, 4, weather_.seed) + 0.45f * groups;
  const float threshold = 0.55f - weather_.cover;
  const float reach = std::clamp((heap - threshold) / 0.42f, 0.0f, 1.0f);
  if (reach <= 0) return 0;
  // As high as the heap is strong, with a flat foot.
  const float room = std::sqrt(reach) - height;
  float density = std::min(room * 1.6f, 1.0f) * Step(0, 0.09f, height);
  if (density <= -0.3f) return 0;
  const float grain = 0.30f * weather_.scale;
  const Vec3 q = p / grain;
  // Round lumps: the folds of the noise point inwards.
  float lumps = 0;
  float strength = 0.5f;
  Vec3 r = q;
  for (int octave = 0; octave < octaves; ++octave, strength *= 0.55f) {
    lumps += strength *
             std::abs(Noise(r, weather_.seed + 90 + static_cast<std::uint32_t>(octave))) * 1.7f;
    r = r * 2.17f + Vec3(3.1f, 1.7f, 5.3f);
  }
  density = density * 1.6f - (0.72f - 1.3f * lumps) * 1.5f * (1.15f - 0.45f * height) + 0.10f;
  return std::clamp(density * 2.2f, 0.0f, 1.0f);
}

float Dome::DepthToSun(const Vec3& p, float jitter) const {
  float depth = 0;
  float before = 0;
  const float reach = (weather_.top - weather_.base) * 0.9f;
  for (int i = 1; i <= 6; ++i) {
    const float share = static_cast<float>(i) / 6;
    const float end = reach * share * share;
    const float t = Blend(before, end, jitter);
    depth += Density(p + atmosphere_.sun() * t, i < 4 ? 3 : 2) * (end - before);
    before = end;
  }
  return depth * weather_.thickness;
}

void Dome::AddVeil(const Vec3& direction, Vec3& color, float& clear) const {
  if (weather_.veil <= 0 || direction.z() < 0.01f) return;
  const Vec3 p = direction * DistanceTo(kVeilAltitude, direction.z());
  const float c = std::cos(weather_.veilTurn);
  const float s = std::sin(weather_.veilTurn);
  float along = (c * p.x() + s * p.y()) / 14000;
  float across = (c * p.y() - s * p.x()) / 3400;
  const float bend = Fbm(along * 0.8f, across * 0.5f, 3, weather_.seed + 7);
  across += 0.75f * bend;
  along += 0.4f * bend;
  const float streaks = Fbm(along * 1.3f, across, 6, weather_.seed + 11);
  const float where = Fbm(along * 0.35f + 5, across * 0.3f, 3, weather_.seed + 13);
  const float amount = Step(-0.25f, 0.75f, streaks + 0.9f * where);
  const float depth = weather_.veil * amount * amount / std::max(direction.z(), 0.18f);
  const float through = std::exp(-depth);
  const float cosine = direction.dot(atmosphere_.sun());
  const Vec3 light =
      atmosphere_.sunlight() * (0.35f * Phase(cosine, 0.6f) + 0.65f / (4 * kPi)) * 2 +
      ambient_ * 0.5f;
  // The air before the veil.
  const float air = std::exp(-0.10f / std::max(direction.z(), 0.03f));
  color = color * Blend(1, through, air) + light * ((1 - through) * air);
  clear *= Blend(1, through, air);
}

Dome::Pixel Dome::March(const Vec3& direction, float jitter) const {
  Vec3 behind = atmosphere_.Radiance(direction);
  float clear = 1;
  AddVeil(direction, behind, clear);
  const float from = DistanceTo(weather_.base, direction.z());
  if (from > kFarthest || weather_.cover <= 0) return {behind, clear};
  const float to = std::min(DistanceTo(weather_.top, direction.z()), from + 12000);

  const float cosine = direction.dot(atmosphere_.sun());
  const float phase = CloudPhase(cosine);
  const Vec3 sunlight = atmosphere_.sunlight() * kPi;
  constexpr int kSteps = 56;
  const float step = (to - from) / kSteps;
  float through = 1;
  float distance = 0;
  Vec3 color = Vec3::Zero();
  const float first = jitter;
  for (int i = 0; i < kSteps && through > 0.01f; ++i) {
    const float t = from + (static_cast<float>(i) + first) * step;
    const Vec3 p = direction * t;
    const float density = Density(p, 6);
    if (density <= 0) continue;
    jitter = jitter + 0.618034f - (jitter > 0.381966f ? 1 : 0);
    const float depth = DepthToSun(p, jitter);
    const float height =
        std::clamp((AltitudeOf(p) - weather_.base) / (weather_.top - weather_.base), 0.0f, 1.0f);
    // The second and third term stand for light scattered many times, which goes deeper and to
    // all sides (M. Wrenninge et al., "Oz: the great and volumetric", 2013).
    const float sun = std::exp(-depth) * phase + 0.42f * std::exp(-0.28f * depth) / (4 * kPi) +
                      0.30f * std::exp(-0.07f * depth) / (4 * kPi);
    const Vec3 ground = atmosphere_.sunlight() * (0.12f * atmosphere_.sun().z() / kPi);
    const Vec3 light =
        sunlight * sun + ambient_ * (0.35f + 0.75f * height) + ground * (1 - height) * 0.5f;
    const float left = std::exp(-density * weather_.thickness * step);
    color += light * (through * (1 - left));
    distance += t * through * (1 - left);
    through *= left;
  }
  const float solid = 1 - through;
  if (solid <= 0) return {behind, clear};
  distance /= solid;
  // The haze before the cloud is a part of that before the sky.
  const float air = std::exp(-distance / 26000);
  color = color * air + behind * (solid * (1 - air));
  return {color + behind * through, clear * through};
}

Dome::Pixel Dome::At(const Vec3& direction) const {
  const float elevation = std::asin(std::clamp(direction.z(), 0.0f, 1.0f));
  float azimuth = std::atan2(direction.y(), direction.x());
  if (azimuth < 0) azimuth += 2 * kPi;
  const float row =
      std::min(elevation * 2 / kPi * static_cast<float>(rows_), static_cast<float>(rows_) - 0.001f);
  const float column = azimuth / (2 * kPi) * static_cast<float>(columns_);
  const int r = static_cast<int>(row);
  const int c = std::min(static_cast<int>(column), columns_ - 1);
  const int next = (c + 1) % columns_;
  const float down = row - static_cast<float>(r);
  const float across = column - static_cast<float>(c);
  const auto at = [&](int i, int j) -> const Pixel& {
    return pixels_[static_cast<std::size_t>(i) * static_cast<std::size_t>(columns_) +
                   static_cast<std::size_t>(j)];
  };
  const Pixel &a = at(r, c), &b = at(r, next), &d = at(r + 1, c), &e = at(r + 1, next);
  return {Blend(Blend(a.color, b.color, across), Blend(d.color, e.color, across), down),
          Blend(Blend(a.clear, b.clear, across), Blend(d.clear, e.clear, across), down)};
}

Vec3 Dome::Radiance(const Vec3& direction) const {
  const Pixel pixel = At(direction);
  const float angle =
      std::acos(std::clamp(direction.dot(atmosphere_.sun()), -1.0f, 1.0f)) / kSunRadius;
  // The light that lenses and eyes spread around what is very bright.
  const float glare = 0.9f / (1 + angle * angle * 0.16f) + 0.05f / (1 + angle * angle * 0.002f);
  const float disc = 300 * (1 - Step(0.85f, 1.15f, angle));
  const float shown = pixel.clear * (direction.z() > -0.02f ? 1.0f : 0.0f);
  return pixel.color + atmosphere_.sunlight() * ((disc + glare) * shown);
}

Vec3 Dome::Skylight(const Vec3& direction) const {
  return At(direction).color;
}

// R. Ramamoorthi and P. Hanrahan, "An efficient representation for irradiance environment maps",
// 2001.
void Dome::MakeIrradiance() {
  constexpr int kRows = 64;
  constexpr int kColumns = 256;
  for (Vec3& h : harmonics_) h = Vec3::Zero();
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      const Vec3 d =
          DirectionOf(static_cast<float>(row) + 0.5f, static_cast<float>(column), kRows, kColumns);
      const float area = std::sqrt(1 - d.z() * d.z()) * (kPi / 2 / kRows) * (2 * kPi / kColumns);
      const Vec3 light = Skylight(d) * area;
      const float basis[9] = {0.282095f,
                              0.488603f * d.y(),
                              0.488603f * d.z(),
                              0.488603f * d.x(),
                              1.092548f * d.x() * d.y(),
                              1.092548f * d.y() * d.z(),
                              0.315392f * (3 * d.z() * d.z() - 1),
                              1.092548f * d.x() * d.z(),
                              0.546274f * (d.x() * d.x() - d.y() * d.y())};
      for (int i = 0; i < 9; ++i) harmonics_[i] += light * basis[i];
    }
  }
}

Vec3 Dome::Irradiance(const Vec3& n) const {
  constexpr float c1 = 0.429043f, c2 = 0.511664f, c3 = 0.743125f, c4 = 0.886227f, c5 = 0.247708f;
  const Vec3* h = harmonics_;
  const Vec3 sum =
      h[8] * (c1 * (n.x() * n.x() - n.y() * n.y())) + h[6] * (c3 * n.z() * n.z()) + h[0] * c4 -
      h[6] * c5 +
      (h[4] * (n.x() * n.y()) + h[7] * (n.x() * n.z()) + h[5] * (n.y() * n.z())) * (2 * c1) +
      (h[3] * n.x() + h[1] * n.y() + h[2] * n.z()) * (2 * c2);
  return sum.cwiseMax(0);
}

}  // namespace qv::cubemaps

#include "Atmosphere.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "Noise.h"

namespace qv::cubemaps {
namespace {

constexpr float kPi = std::numbers::pi_v<float>;

// Metres.
constexpr float kGround = 6360e3f;
constexpr float kTop = 6460e3f;
constexpr float kEyeAltitude = 200;
constexpr float kAirHeight = 8000;
constexpr float kHazeHeight = 1200;

// Per metre, red, green, blue.
const Vec3 kAir(5.802e-6f, 13.558e-6f, 33.1e-6f);
const Vec3 kOzone(0.650e-6f, 1.881e-6f, 0.085e-6f);
constexpr float kHazeScattering = 3.996e-6f;
constexpr float kHazeExtinction = 4.440e-6f;
constexpr float kHazeAsymmetry = 0.8f;
constexpr float kGroundAlbedo = 0.2f;

constexpr int kLevels = 16;
constexpr int kElevations = 128;
constexpr int kAzimuths = 64;

Vec3 Exp(const Vec3& v) {
  return v.array().exp();
}

// Distance along the ray to the sphere around the middle of the earth: the nearest one ahead, or
// -1.
float DistanceTo(const Vec3& from, const Vec3& direction, float radius) {
  // In doubles: the squares take more digits than floats have.
  const Eigen::Vector3d p = from.cast<double>();
  const double along = p.dot(direction.cast<double>());
  const double rest = along * along - p.squaredNorm() + double{radius} * radius;
  if (rest < 0) return -1;
  const double root = std::sqrt(rest);
  if (-along - root > 0) return static_cast<float>(-along - root);
  return -along + root > 0 ? static_cast<float>(-along + root) : -1;
}

float AltitudeOf(const Vec3& p) {
  return std::max(static_cast<float>(p.cast<double>().norm() - kGround), 0.0f);
}

float AirPhase(float cosine) {
  return 3 / (16 * kPi) * (1 + cosine * cosine);
}

// W. M. Cornette and J. G. Shanks, 1992.
float HazePhase(float cosine) {
  constexpr float g = kHazeAsymmetry;
  return 3 / (8 * kPi) * ((1 - g * g) * (1 + cosine * cosine)) /
         ((2 + g * g) * std::pow(1 + g * g - 2 * g * cosine, 1.5f));
}

}  // namespace

Atmosphere::Atmosphere(const Vec3& sun, float haze) : sun_(sun), haze_(haze) {
  sunlight_ = Transmittance({0, 0, kGround + kEyeAltitude}, sun_);
  MakeEvenLight();
  MakeTable();
}

Atmosphere::Coefficients Atmosphere::At(float altitude) const {
  const Vec3 air = kAir * std::exp(-altitude / kAirHeight);
  const float haze = haze_ * std::exp(-altitude / kHazeHeight);
  const float ozone = std::max(0.0f, 1 - std::abs(altitude - 25e3f) / 15e3f);
  return {air, Vec3::Constant(haze * kHazeScattering),
          air + Vec3::Constant(haze * kHazeExtinction) + kOzone * ozone};
}

Vec3 Atmosphere::Transmittance(const Vec3& from, const Vec3& direction) const {
  constexpr int kSteps = 20;
  if (DistanceTo(from, direction, kGround) > 0) return Vec3::Zero();
  const float length = DistanceTo(from, direction, kTop);
  Vec3 depth = Vec3::Zero();
  float before = 0;
  for (int i = 1; i <= kSteps; ++i) {
    // Shorter steps where the air is denser.
    const float share = static_cast<float>(i) / kSteps;
    const float end = length * share * share;
    const float middle = (before + end) / 2;
    depth += At(AltitudeOf(from + direction * middle)).extinction * (end - before);
    before = end;
  }
  return Exp(-depth);
}

Atmosphere::Gathered Atmosphere::Gather(const Vec3& from, const Vec3& direction, float distance,
                                        int steps, bool withEven) const {
  Gathered sum;
  Vec3 through = Vec3::Ones();
  float before = 0;
  for (int i = 1; i <= steps; ++i) {
    const float share = static_cast<float>(i) / static_cast<float>(steps);
    const float end = distance * share * share;
    const Vec3 p = from + direction * ((before + end) / 2);
    const float altitude = AltitudeOf(p);
    const Coefficients at = At(altitude);
    const Vec3 left = Exp(-at.extinction * (end - before));
    // The mean over the step of what is scattered and then dimmed.
    const Vec3 step = through.cwiseProduct((Vec3::Ones() - left).cwiseQuotient(at.extinction));
    const Vec3 lit = step.cwiseProduct(Transmittance(p, sun_));
    sum.air += at.air.cwiseProduct(lit);
    sum.haze += at.haze.cwiseProduct(lit);
    if (withEven) {
      const float level = std::min(std::sqrt(altitude / (kTop - kGround)), 0.999f) * (kLevels - 1);
      const auto low = static_cast<std::size_t>(level);
      const Vec3 even =
          Blend(evenLight_[low], evenLight_[low + 1], level - static_cast<float>(low));
      sum.even += step.cwiseProduct(at.air + at.haze).cwiseProduct(even);
    } else {
      sum.even += step.cwiseProduct(at.air + at.haze);
    }
    through = through.cwiseProduct(left);
    before = end;
  }
  return sum;
}

// The light of the second scattering at each altitude, and the share of a scattering that is
// scattered once more: together a geometric series.
void Atmosphere::MakeEvenLight() {
  constexpr int kDirections = 128;
  const float golden = kPi * (3 - std::sqrt(5.0f));
  for (int level = 0; level < kLevels; ++level) {
    const float share = static_cast<float>(level) / (kLevels - 1);
    const Vec3 from(0, 0, kGround + 10 + share * share * (kTop - kGround - 20));
    Vec3 second = Vec3::Zero();
    Vec3 again = Vec3::Zero();
    for (int i = 0; i < kDirections; ++i) {
      const float z = 1 - (2 * static_cast<float>(i) + 1) / kDirections;
      const float r = std::sqrt(1 - z * z);
      const float angle = golden * static_cast<float>(i);
      const Vec3 direction(r * std::cos(angle), r * std::sin(angle), z);
      const float toGround = DistanceTo(from, direction, kGround);
      const float length = toGround > 0 ? toGround : DistanceTo(from, direction, kTop);
      const Gathered gathered = Gather(from, direction, length, 20, false);
      second += (gathered.air + gathered.haze) / (4 * kPi);
      again += gathered.even;
      if (toGround > 0) {
        const Vec3 p = from + direction * toGround * 0.9999f;
        const float facing = std::max(p.normalized().dot(sun_), 0.0f);
        second += Transmittance(p * 1.00001f, sun_) * (facing * kGroundAlbedo / kPi);
      }
    }
    second /= kDirections;
    again /= kDirections;
    evenLight_.emplace_back(second.cwiseQuotient(Vec3::Ones() - again));
  }
}

void Atmosphere::MakeTable() {
  table_.resize(std::size_t{kElevations} * kAzimuths);
  const Vec3 from(0, 0, kGround + kEyeAltitude);
  const float sunAzimuth = std::atan2(sun_.y(), sun_.x());
#pragma omp parallel for schedule(dynamic)
  for (int row = 0; row < kElevations; ++row) {
    const float share = static_cast<float>(row) / (kElevations - 1);
    const float elevation = share * share * kPi / 2;
    for (int column = 0; column < kAzimuths; ++column) {
      const float azimuth = sunAzimuth + kPi * static_cast<float>(column) / (kAzimuths - 1);
      const Vec3 direction(std::cos(elevation) * std::cos(azimuth),
                           std::cos(elevation) * std::sin(azimuth), std::sin(elevation));
      table_[static_cast<std::size_t>(row) * kAzimuths + static_cast<std::size_t>(column)] =
          Gather(from, direction, DistanceTo(from, direction, kTop), 48, true);
    }
  }
}

Vec3 Atmosphere::Radiance(const Vec3& direction) const {
  const float elevation = std::asin(std::clamp(direction.z(), 0.0f, 1.0f));
  const float row = std::min(std::sqrt(elevation * 2 / kPi), 0.9999f) * (kElevations - 1);
  const float around = std::remainder(
      std::atan2(direction.y(), direction.x()) - std::atan2(sun_.y(), sun_.x()), 2 * kPi);
  const float column = std::min(std::abs(around) / kPi, 0.9999f) * (kAzimuths - 1);
  const auto r = static_cast<std::size_t>(row);
  const auto c = static_cast<std::size_t>(column);
  const float down = row - static_cast<float>(r);
  const float across = column - static_cast<float>(c);

  const float cosine = direction.dot(sun_);
  const float air = AirPhase(cosine);
  const float haze = HazePhase(cosine);
  const auto at = [&](std::size_t i, std::size_t j) -> Vec3 {
    const Gathered& g = table_[i * kAzimuths + j];
    return g.air * air + g.haze * haze + g.even;
  };
  return Blend(Blend(at(r, c), at(r, c + 1), across), Blend(at(r + 1, c), at(r + 1, c + 1), across),
               down);
}

}  // namespace qv::cubemaps

#include "sky/SunPosition.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace qv::sky {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr double kRadiansPerDegree = kPi / 180;
constexpr double kRadiansPerArcSecond = kRadiansPerDegree / 3600;

// Rotations of the axes, so that a vector's coordinates turn the other way.
Eigen::Matrix3d AxesTurnedAboutX(double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return Eigen::Matrix3d{{1, 0, 0}, {0, c, s}, {0, -s, c}};
}

Eigen::Matrix3d AxesTurnedAboutY(double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return Eigen::Matrix3d{{c, 0, -s}, {0, 1, 0}, {s, 0, c}};
}

Eigen::Matrix3d AxesTurnedAboutZ(double angle) {
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return Eigen::Matrix3d{{c, s, 0}, {-s, c, 0}, {0, 0, 1}};
}

// Times are Julian centuries since 2000.
double LocalSiderealTime(double universal, double longitude) {
  return std::fmod(230121.675315 * universal + 4.894961, 2 * kPi) + longitude;
}

double Obliquity(double terrestrial) {
  return 0.409093 - 0.000227 * terrestrial;
}

// Horizon axes here: south, east, up.
Eigen::Matrix3d HorizonFromEquatorial(double siderealTime, double latitude) {
  return AxesTurnedAboutY(kPi / 2 - latitude) * AxesTurnedAboutZ(siderealTime);
}

// Towards the sun in the ecliptic of date, in astronomical units.
Eigen::Vector3d EclipticSun(double terrestrial) {
  const double t = terrestrial;
  const double anomaly = 628.302 * t + 6.24;
  const double longitude = 628.331951 * t + 4.895048 +
                           (0.033417 - 0.000084 * t) * std::sin(anomaly) +
                           0.000351 * std::sin(2 * anomaly);
  const double distance =
      1.00014 - (0.016708 - 0.000042 * t) * std::cos(anomaly) - 0.000141 * std::cos(2 * anomaly);
  return {distance * std::cos(longitude), distance * std::sin(longitude), 0};
}

}  // namespace

double Refracted(double elevation) {
  // The limits are 85, 5 and -0.575 degrees; the terms are in seconds of arc (NOAA's solar
  // calculation).
  if (elevation > 1.4835298625) return elevation;
  const double tangent = std::tan(elevation);
  double seconds = -20.774 / tangent;
  if (elevation >= 0.0872664625) {
    seconds = 58.1 / tangent - 0.07 / std::pow(tangent, 3) + 0.000086 / std::pow(tangent, 5);
  } else if (elevation >= -0.0100356431875) {
    const double d = elevation / kRadiansPerDegree;
    seconds = 1735 + d * (-518.2 + d * (103.4 + d * (-12.79 + 0.711 * d)));
  }
  return elevation + seconds * kRadiansPerArcSecond;
}

Eigen::Vector3d SunPosition(const LocalTime& time, const Location& location) {
  const double terrestrial = time.Centuries(TimeScale::kTerrestrial);
  const double siderealTime = LocalSiderealTime(time.Centuries(TimeScale::kUniversal),
                                                location.longitude() * kRadiansPerDegree);
  const Eigen::Matrix3d equatorialFromEcliptic = AxesTurnedAboutX(-Obliquity(terrestrial));
  const Eigen::Vector3d southEastUp =
      HorizonFromEquatorial(siderealTime, location.latitude() * kRadiansPerDegree) *
      equatorialFromEcliptic * EclipticSun(terrestrial);

  Eigen::Vector3d position(southEastUp.y(), southEastUp.z(), southEastUp.x());
  const double length = position.norm();
  const double elevation = std::asin(std::clamp(position.y() / length, -1.0, 1.0));
  position.y() = std::sin(Refracted(elevation)) * length;
  return position.normalized();
}

Vec3 LightDirection(const Eigen::Vector3d& skyPosition, float sunRotation) {
  const double c = std::cos(static_cast<double>(sunRotation));
  const double s = std::sin(static_cast<double>(sunRotation));
  const double x = -skyPosition.x();
  const double y = skyPosition.z();
  Eigen::Vector3d direction(x * c - y * s, x * s + y * c, -skyPosition.y());
  if (direction.squaredNorm() > 0) direction.normalize();
  return direction.cast<float>();
}

}  // namespace qv::sky

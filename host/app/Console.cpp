#include "host/app/Console.h"

#include <array>
#include <cstdio>
#include <numbers>

namespace qv::host {
namespace {

template <typename... Arguments>
std::string Formatted(const char* format, Arguments... arguments) {
  std::array<char, 200> text;
  std::snprintf(text.data(), text.size(), format, arguments...);
  return text.data();
}

std::string Point(const Vec3& point) {
  return Formatted("%.3f,%.3f,%.3f", point.x(), point.y(), point.z());
}

std::string Direction(const Vec3& direction) {
  return Formatted("%.6f,%.6f,%.6f", direction.x(), direction.y(), direction.z());
}

}  // namespace

void Console::Tell(const std::string& line) {
  const std::lock_guard lock(mutex_);
  output_ << line << std::endl;
}

void Console::Complain(const std::string& line) {
  const std::lock_guard lock(mutex_);
  errors_ << "quorvane-host: " << line << std::endl;
}

std::string TextOf(const RenderCamera& view) {
  const float degrees = view.fieldOfView * 180 / std::numbers::pi_v<float>;
  return "eye " + Point(view.position) + " direction " + Direction(view.forward) + " up " +
         Direction(view.up) + " fov " + Formatted("%.3f", degrees) + " target " +
         Point(view.target);
}

std::string TimeTextOf(const LocationAndTime& when) {
  return Formatted("%04d-%02d-%02dT%02d:%02d:%02d", when.year, when.month, when.day, when.hour,
                   when.minute, when.second);
}

}  // namespace qv::host

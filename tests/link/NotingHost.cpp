#include "link/NotingHost.h"

#include "link/RecordingFrame.h"
#include "platform/Clock.h"

namespace qv {

void NotingHost::Note(const std::string& line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  notes_.push_back(line);
}

void NotingHost::ResendScene() {
  Note("ResendScene");
}

void NotingHost::ViewerClosed() {
  Note("ViewerClosed");
}

void NotingHost::CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                               float fieldOfView) {
  Note("CameraChanged " + VectorText(eye) + ", " + VectorText(direction) + ", " + VectorText(up) +
       ", " + NumbersText(std::span(&fieldOfView, 1)));
}

void NotingHost::DateTimeChanged(int year, int month, int day, int hour, int minute, int second) {
  std::string line = "DateTimeChanged";
  for (const int n : {year, month, day, hour, minute, second}) line += " " + std::to_string(n);
  Note(line);
}

RenderCamera NotingHost::Camera() {
  Note("Camera");
  RenderCamera camera;
  camera.position = {1, 2, 3};
  camera.forward = {0, -1, 0};
  camera.up = {0, 0, 1};
  camera.fieldOfView = 0.75f;
  camera.target = {4, 5, 6};
  return camera;
}

LocationAndTime NotingHost::Location() {
  Note("Location");
  return {0.5f, 48.25f, 9.5f, 2023, 12, 31, 22, 45, 15, 1};
}

std::vector<HostPage> NotingHost::Pages() {
  Note("Pages");
  HostPage first;
  first.name = u"Front";
  first.eye = {1, 2, 3};
  first.direction = {0, 1, 0};
  first.fieldOfView = 0.5f;
  HostPage second;
  second.name = std::u16string(5000, u'x');
  second.eye = {7, 8, 9};
  second.direction = {1, 0, 0};
  second.fieldOfView = 1;
  second.hasSunTime = true;
  second.year = 2024;
  second.month = 6;
  second.day = 21;
  second.hour = 12;
  second.minute = 30;
  second.second = 5;
  second.latitude = 50.5f;
  second.longitude = -3.25f;
  second.sunParam = 0.125f;
  return {first, second};
}

void NotingHost::SetProperty(const std::string& name, std::vector<std::byte> value) {
  Note("SetProperty " + name + " " + std::to_string(value.size()));
  KeepProperty(name, std::move(value));
}

std::optional<std::vector<std::byte>> NotingHost::Property(const std::string& name) {
  Note("Property " + name);
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = properties_.find(name);
  if (found == properties_.end()) return std::nullopt;
  return found->second;
}

std::vector<std::string> NotingHost::Notes() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return notes_;
}

std::vector<std::string> NotingHost::AwaitNotes(std::size_t count) const {
  const double end = platform::NowSeconds() + 10;
  while (Notes().size() < count && platform::NowSeconds() < end) platform::SleepMilliseconds(2);
  return Notes();
}

void NotingHost::KeepProperty(const std::string& name, std::vector<std::byte> value) {
  const std::lock_guard<std::mutex> lock(mutex_);
  properties_[name] = std::move(value);
}

}  // namespace qv

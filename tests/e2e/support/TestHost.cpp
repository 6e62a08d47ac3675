#include "e2e/support/TestHost.h"

#include <cstring>
#include <utility>

namespace qv::e2e {

std::unique_ptr<TestHost> TestHost::Start(const std::string& viewer, ViewerLog& log) {
  std::unique_ptr<TestHost> host(new TestHost);
  host->link_ = host::HostLink::Create(*host);
  if (!host->link_) return nullptr;
  bool started = false;
  log.Capture([&] { started = host->link_->StartViewer(viewer); });
  if (!started) return nullptr;
  return host;
}

TestHost::~TestHost() {
  if (link_ && link_->ViewerRunning()) link_->KillViewer();
}

void TestHost::CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                             float fieldOfView) {
  const std::lock_guard lock(mutex_);
  cameras_.push_back({eye, direction, up, fieldOfView, Vec3::Zero()});
}

void TestHost::DateTimeChanged(int year, int month, int day, int hour, int minute, int second) {
  const std::lock_guard lock(mutex_);
  dates_.push_back({year, month, day, hour, minute, second});
}

std::vector<RenderCamera> TestHost::Cameras() {
  const std::lock_guard lock(mutex_);
  return cameras_;
}

std::vector<TestHost::DateTime> TestHost::Dates() {
  const std::lock_guard lock(mutex_);
  return dates_;
}

std::optional<float> TestHost::FloatProperty(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto found = properties.find(name);
  if (found == properties.end() || found->second.size() < sizeof(float)) return std::nullopt;
  float value = 0;
  std::memcpy(&value, found->second.data(), sizeof(value));
  return value;
}

void TestHost::SetProperty(const std::string& name, std::vector<std::byte> value) {
  const std::lock_guard lock(mutex_);
  properties[name] = std::move(value);
}

std::optional<std::vector<std::byte>> TestHost::Property(const std::string& name) {
  if (beforeProperty) beforeProperty(name);
  return PropertyValue(name);
}

std::optional<std::vector<std::byte>> TestHost::PropertyValue(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto found = properties.find(name);
  if (found == properties.end()) return std::nullopt;
  return found->second;
}

}  // namespace qv::e2e

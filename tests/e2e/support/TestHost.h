#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "e2e/support/ViewerLog.h"
#include "host/link/HostLink.h"

namespace qv::e2e {

// A host for one viewer: answers its messages from plain fields, and counts them.
class TestHost : public host::HostSide {
 public:
  // Starts the viewer. `log` gathers what it says.
  static std::unique_ptr<TestHost> Start(const std::string& viewer, ViewerLog& log);
  ~TestHost() override;

  host::HostLink& link() { return *link_; }
  // What is kept now, while the viewer may be setting it.
  std::optional<std::vector<std::byte>> PropertyValue(const std::string& name);

  // Set before the viewer can ask; called on the link's message thread.
  std::function<void(const std::string& name)> beforeProperty;
  std::map<std::string, std::vector<std::byte>> properties;
  RenderCamera camera;
  LocationAndTime location;

  // What the viewer has told, oldest first.
  std::vector<RenderCamera> Cameras();
  struct DateTime {
    int year, month, day, hour, minute, second;
  };
  std::vector<DateTime> Dates();
  // The value of a property that is one float.
  std::optional<float> FloatProperty(const std::string& name);

  std::atomic<int> resends{0};
  std::atomic<int> closes{0};

 private:
  TestHost() = default;

  void ResendScene() override { ++resends; }
  void ViewerClosed() override { ++closes; }
  void CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                     float fieldOfView) override;
  void DateTimeChanged(int year, int month, int day, int hour, int minute, int second) override;
  RenderCamera Camera() override { return camera; }
  LocationAndTime Location() override { return location; }
  std::vector<HostPage> Pages() override { return {}; }
  void SetProperty(const std::string& name, std::vector<std::byte> value) override;
  std::optional<std::vector<std::byte>> Property(const std::string& name) override;

  std::mutex mutex_;  // properties, cameras_, dates_
  std::vector<RenderCamera> cameras_;
  std::vector<DateTime> dates_;
  std::unique_ptr<host::HostLink> link_;
};

}  // namespace qv::e2e

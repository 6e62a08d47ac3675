#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "host/app/Console.h"
#include "host/app/PropertyStore.h"
#include "host/link/HostLink.h"
#include "host/model/Scene.h"

namespace qv::host {

// What the host keeps while a viewer runs, and its answers to the viewer. The calls of HostSide
// come on the link's message thread; the rest may be called from any.
class Session final : public HostSide {
 public:
  Session(PropertyStore& properties, Console& console)
      : properties_(properties), console_(console) {}

  // Where and when the scene is, until the viewer changes the time.
  void SetPlaceAndTime(const LocationAndTime& when);
  // Values for properties that the store does not hold.
  void SetDefaults(std::map<std::string, std::vector<std::byte>> defaults);

  // A scene that is about to be sent: its cameras are the saved views from now on.
  void SetPages(std::vector<SceneCamera> cameras);
  // The view that the viewer is given; it follows the viewer's from then on.
  void SetCamera(const RenderCamera& view);

  // The value of a property until the viewer sets another one. It is not stored with the model.
  void SetForSession(const std::string& name, std::vector<std::byte> value);

  // Whether a resend was asked for since the last call.
  bool TakeResendRequest() { return resendRequested_.exchange(false); }
  bool viewerClosed() const { return viewerClosed_; }

  void ResendScene() override { resendRequested_ = true; }
  void ViewerClosed() override { viewerClosed_ = true; }
  void CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                     float fieldOfView) override;
  void DateTimeChanged(int year, int month, int day, int hour, int minute, int second) override;
  RenderCamera Camera() override;
  LocationAndTime Location() override;
  std::vector<HostPage> Pages() override;
  void SetProperty(const std::string& name, std::vector<std::byte> value) override;
  std::optional<std::vector<std::byte>> Property(const std::string& name) override;

 private:
  PropertyStore& properties_;
  Console& console_;
  std::atomic<bool> resendRequested_{false};
  std::atomic<bool> viewerClosed_{false};
  std::mutex mutex_;
  RenderCamera camera_;
  LocationAndTime when_;
  std::vector<SceneCamera> pages_;
  std::map<std::string, std::vector<std::byte>> defaults_;
  std::map<std::string, std::vector<std::byte>> forSession_;
};

}  // namespace qv::host

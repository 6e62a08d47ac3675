#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "host/link/HostLink.h"

namespace qv {

// A host that writes down what the viewer wants of it, and has something to answer.
class NotingHost final : public host::HostSide {
 public:
  void ResendScene() override;
  void ViewerClosed() override;
  void CameraChanged(const Vec3& eye, const Vec3& direction, const Vec3& up,
                     float fieldOfView) override;
  void DateTimeChanged(int year, int month, int day, int hour, int minute, int second) override;
  RenderCamera Camera() override;
  LocationAndTime Location() override;
  std::vector<HostPage> Pages() override;
  void SetProperty(const std::string& name, std::vector<std::byte> value) override;
  std::optional<std::vector<std::byte>> Property(const std::string& name) override;

  // What happened until now, without emptying it.
  std::vector<std::string> Notes() const;
  // Waits until there are that many notes; gives what there is after ten seconds.
  std::vector<std::string> AwaitNotes(std::size_t count) const;
  void KeepProperty(const std::string& name, std::vector<std::byte> value);

 private:
  void Note(const std::string& line);

  mutable std::mutex mutex_;
  std::vector<std::string> notes_;
  std::map<std::string, std::vector<std::byte>> properties_;
};

}  // namespace qv

#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "Scenes.h"
#include "host/link/HostLink.h"

namespace qv::bench {

// A host that has nothing to say beyond the scene.
class SilentHost : public host::HostSide {
 public:
  void ResendScene() override {}
  void ViewerClosed() override {}
  void CameraChanged(const Vec3&, const Vec3&, const Vec3&, float) override {}
  void DateTimeChanged(int, int, int, int, int, int) override {}
  RenderCamera Camera() override { return {}; }
  LocationAndTime Location() override { return {}; }
  std::vector<HostPage> Pages() override { return {}; }
  void SetProperty(const std::string&, std::vector<std::byte>) override {}
  std::optional<std::vector<std::byte>> Property(const std::string&) override {
    return std::nullopt;
  }
};

// The viewer's log: catches the standard error of programs started while it is open, and remembers
// when a line came.
class LogReader {
 public:
  struct Line {
    std::string text;
    double seconds;  // by the steady clock
  };

  LogReader();
  ~LogReader();
  LogReader(const LogReader&) = delete;
  LogReader& operator=(const LogReader&) = delete;

  // The first line with that text after the `known` first ones with it; waits for it.
  std::optional<Line> WaitFor(const std::string& text, std::chrono::seconds timeout,
                              std::size_t known = 0);
  // How many lines with that text have come.
  std::size_t Count(const std::string& text);

 private:
  void Read(int end);

  std::mutex mutex_;
  std::condition_variable came_;
  std::vector<Line> lines_;
  int saved_ = -1;
  std::thread reader_;
};

// Everything of a scene up to its last mesh.
bool SendScene(host::HostLink& link, const BenchScene& scene);

}  // namespace qv::bench

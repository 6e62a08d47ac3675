#include "ViewerBench.h"

#include <fcntl.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <mutex>
#include <sstream>
#include <thread>

#include "host/link/HostLink.h"
#include "platform/Clock.h"

namespace qv::bench {
namespace {

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
  LogReader() {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return;
    saved_ = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    dup2(ends[1], STDERR_FILENO);
    close(ends[1]);
    reader_ = std::thread([this, end = ends[0]] { Read(end); });
  }
  ~LogReader() {
    dup2(saved_, STDERR_FILENO);
    close(saved_);
    if (reader_.joinable()) reader_.join();
  }
  LogReader(const LogReader&) = delete;
  LogReader& operator=(const LogReader&) = delete;

  // When the first line with that text came, by the steady clock.
  std::optional<double> WaitFor(const std::string& text, std::chrono::seconds timeout) {
    std::unique_lock lock(mutex_);
    std::optional<double> when;
    came_.wait_for(lock, timeout, [&] {
      for (const auto& [line, time] : lines_) {
        if (line.find(text) == std::string::npos) continue;
        when = time;
        return true;
      }
      return false;
    });
    return when;
  }

 private:
  void Read(int end) {
    FILE* file = fdopen(end, "r");
    char buffer[1024];
    while (std::fgets(buffer, sizeof(buffer), file) != nullptr) {
      const double now = platform::NowSeconds();
      const std::lock_guard lock(mutex_);
      lines_.emplace_back(buffer, now);
      came_.notify_all();
    }
    std::fclose(file);
  }

  std::mutex mutex_;
  std::condition_variable came_;
  std::vector<std::pair<std::string, double>> lines_;
  int saved_ = -1;
  std::thread reader_;
};

bool SendScene(host::HostLink& link, const BenchScene& scene) {
  for (const MaterialParameters& material : scene.materials) {
    if (!link.AddMaterial(material)) return false;
  }
  for (const BenchMesh& mesh : scene.meshes) {
    if (!link.BeginStaticMesh() || !link.AddMeshData(mesh.vertices, mesh.triangles) ||
        !link.EndMesh()) {
      return false;
    }
  }
  return true;
}

// Resident bytes of a process.
double ResidentBytes(std::uint32_t process) {
  std::ifstream status("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmRSS:", 0) == 0) return 1024.0 * std::strtod(line.c_str() + 6, nullptr);
  }
  return 0;
}

}  // namespace

std::optional<ViewerFigures> MeasureViewer(const BenchScene& scene, const std::string& path) {
  constexpr std::chrono::minutes kTimeout{5};
  setenv("QUORVANE_LOG", "info", 1);
  SilentHost side;
  LogReader log;
  const auto link = host::HostLink::Create(side);
  if (!link || !link->StartViewer(path)) return std::nullopt;
  std::optional<ViewerFigures> figures;
  if (SendScene(*link, scene)) {
    const double sent = platform::NowSeconds();
    link->SceneComplete();
    link->SetCamera(scene.camera, true);
    const auto shown = log.WaitFor("picture shown", kTimeout);
    const auto finished = log.WaitFor("picture shown: antialiased", kTimeout);
    if (shown && finished) {
      figures = ViewerFigures{*shown - sent, ResidentBytes(link->ViewerProcessId()) /
                                                 static_cast<double>(scene.TriangleCount())};
    }
  }
  link->KillViewer();
  link->WaitForViewer(std::nullopt);
  return figures;
}

}  // namespace qv::bench

#include "ViewerProcess.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "platform/Clock.h"

namespace qv::bench {

LogReader::LogReader() {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return;
  saved_ = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
  dup2(ends[1], STDERR_FILENO);
  close(ends[1]);
  reader_ = std::thread([this, end = ends[0]] { Read(end); });
}

LogReader::~LogReader() {
  dup2(saved_, STDERR_FILENO);
  close(saved_);
  if (reader_.joinable()) reader_.join();
}

std::optional<LogReader::Line> LogReader::WaitFor(const std::string& text,
                                                  std::chrono::seconds timeout, std::size_t known) {
  std::unique_lock lock(mutex_);
  std::optional<Line> found;
  came_.wait_for(lock, timeout, [&] {
    std::size_t left = known;
    for (const Line& line : lines_) {
      if (line.text.find(text) == std::string::npos) continue;
      if (left-- > 0) continue;
      found = line;
      return true;
    }
    return false;
  });
  return found;
}

std::size_t LogReader::Count(const std::string& text) {
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(
      std::count_if(lines_.begin(), lines_.end(),
                    [&](const Line& line) { return line.text.find(text) != std::string::npos; }));
}

void LogReader::Read(int end) {
  FILE* file = fdopen(end, "r");
  char buffer[1024];
  while (std::fgets(buffer, sizeof(buffer), file) != nullptr) {
    const double now = platform::NowSeconds();
    const std::lock_guard lock(mutex_);
    lines_.push_back({buffer, now});
    came_.notify_all();
  }
  std::fclose(file);
}

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

}  // namespace qv::bench

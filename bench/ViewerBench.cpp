#include "ViewerBench.h"

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "ViewerProcess.h"
#include "platform/Clock.h"

namespace qv::bench {
namespace {

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
      figures =
          ViewerFigures{shown->seconds - sent, ResidentBytes(link->ViewerProcessId()) /
                                                   static_cast<double>(scene.TriangleCount())};
    }
  }
  link->KillViewer();
  link->WaitForViewer(std::nullopt);
  return figures;
}

}  // namespace qv::bench

#include "ViewerBench.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

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

// Processor time that a process has used since it began.
double ProcessorSeconds(std::uint32_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string stat;
  std::getline(file, stat);
  // The name in brackets may hold blanks; the times are the 12th and 13th fields after it.
  std::istringstream fields(stat.substr(std::min(stat.size(), stat.rfind(')') + 2)));
  std::string skipped;
  for (int i = 0; i < 11; ++i) fields >> skipped;
  double user = 0, system = 0;
  fields >> user >> system;
  return (user + system) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

// The share of one processor that a process uses in ten seconds.
double IdleShare(std::uint32_t process) {
  const double start = platform::NowSeconds();
  const double used = ProcessorSeconds(process);
  std::this_thread::sleep_for(std::chrono::seconds(10));
  return (ProcessorSeconds(process) - used) / (platform::NowSeconds() - start);
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
      const std::uint32_t viewer = link->ViewerProcessId();
      figures = ViewerFigures{shown->seconds - sent,
                              ResidentBytes(viewer) / static_cast<double>(scene.TriangleCount()),
                              IdleShare(viewer)};
    }
  }
  link->KillViewer();
  link->WaitForViewer(std::nullopt);
  return figures;
}

}  // namespace qv::bench

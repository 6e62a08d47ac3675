#include "e2e/support/Processes.h"

#include <signal.h>
#include <unistd.h>

#include <fstream>
#include <string>

namespace qv::e2e {
namespace {

std::filesystem::path FolderOf(std::uint32_t process) {
  return "/proc/" + std::to_string(process);
}

}  // namespace

void KillProcess(std::uint32_t process) {
  kill(static_cast<pid_t>(process), SIGKILL);
}

double ProcessorSeconds(std::uint32_t process) {
  std::ifstream stat(FolderOf(process) / "stat");
  std::string word;
  while (stat >> word && word.back() != ')') {
  }
  long ticks = 0;
  for (int field = 3; field <= 15 && stat >> word; ++field) {
    if (field >= 14) ticks += std::stol(word);
  }
  return static_cast<double>(ticks) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

std::filesystem::path WorkingFolder(std::uint32_t process) {
  std::error_code error;
  return std::filesystem::read_symlink(FolderOf(process) / "cwd", error);
}

}  // namespace qv::e2e

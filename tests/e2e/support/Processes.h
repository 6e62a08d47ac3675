#pragma once

#include <cstdint>
#include <filesystem>

namespace qv::e2e {

// What Wait of a ChildProcess gives for a process that KillProcess has ended.
constexpr int kExitCodeOfKilled = 137;

// Ends a process at once, wherever it stands.
void KillProcess(std::uint32_t process);

// Processor time of a process so far.
double ProcessorSeconds(std::uint32_t process);

// The working directory of a process; empty if the system does not tell.
std::filesystem::path WorkingFolder(std::uint32_t process);

}  // namespace qv::e2e

#pragma once

#include <filesystem>
#include <string>

namespace qv::platform {

// The file of the running program, absolute. Empty if the system does not tell.
std::filesystem::path ProgramPath();

// The name of a program's file on this system: with ".exe" on Windows.
std::string ProgramFileName(const std::string& name);

}  // namespace qv::platform

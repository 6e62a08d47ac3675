#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace qv::host {

// The whole program: does what the arguments (UTF-8, without the program's name) ask for, and gives
// the exit code. `output` and `errors` take what it tells, line by line.
int RunCommandLine(const std::vector<std::string>& arguments, std::ostream& output,
                   std::ostream& errors);

}  // namespace qv::host

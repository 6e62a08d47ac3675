#pragma once

#include <optional>
#include <string>

#include "Scenes.h"

namespace qv::bench {

// A model or scene file as the host program would send it, seen from its start view. Nothing, with
// a line on standard error, if it cannot be read.
std::optional<BenchScene> ModelScene(const std::string& name, const std::string& path);

}  // namespace qv::bench

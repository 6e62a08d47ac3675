#pragma once

#include <string>
#include <utility>
#include <vector>

namespace qv::bench {

// Named figures, in the order in which they were measured.
using Figures = std::vector<std::pair<std::string, double>>;

// Writes one flat JSON object. False if the file cannot be written.
bool WriteJson(const Figures& figures, const std::string& path);

}  // namespace qv::bench

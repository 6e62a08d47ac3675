#include "Report.h"

#include <fstream>
#include <nlohmann/json.hpp>

namespace qv::bench {

bool WriteJson(const Figures& figures, const std::string& path) {
  nlohmann::ordered_json json = nlohmann::ordered_json::object();
  for (const auto& [name, value] : figures) json[name] = value;
  std::ofstream file(path);
  file << json.dump(2) << '\n';
  return static_cast<bool>(file);
}

}  // namespace qv::bench

#pragma once

#include <optional>
#include <string>

namespace qv::e2e {

// The viewer's settings store, while no viewer runs.
void WriteSetting(const std::string& key, long value);
std::optional<long> ReadSetting(const std::string& key);
// Empty if there is none.
std::string ReadTextSetting(const std::string& key);

}  // namespace qv::e2e

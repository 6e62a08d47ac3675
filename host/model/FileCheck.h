#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace qv::host {

// Why a model file can't be read, as far as the file system and a look at its first bytes can tell;
// nothing if it is worth trying. Catches a file whose header promises more than the file can hold,
// where the import library would allocate and fill memory for all that was promised.
std::optional<std::string> WhyNotReadable(const std::filesystem::path& path);

}  // namespace qv::host

#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "host/model/TemporaryFolder.h"

namespace qv::host {

// The path of a file as the link takes it: UTF-8, and with few enough bytes, through a link or a
// copy in the temporary folder where it has too many. Nothing if that cannot be made.
std::optional<std::string> LinkPath(const std::filesystem::path& file,
                                    TemporaryFolder& temporaryFiles);

}  // namespace qv::host

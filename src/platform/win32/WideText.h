#pragma once

#include <string>

namespace qv::platform {

// UTF-16 of a UTF-8 text, for the calls of the system.
std::wstring ToWide(const std::string& text);

}  // namespace qv::platform

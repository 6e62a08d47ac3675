#pragma once

#include <wx/cmdline.h>

#include <cstdint>
#include <optional>

namespace qv {

// The host that started the viewer.
struct HostAddress {
  std::uint32_t window = 0;   // its message window
  std::uint32_t process = 0;  // its process id
};

// Reads the two options of the command line. Nothing if one of them is missing or no decimal number
// of 32 bits. What else stands on the line changes nothing, though the parser may report it.
std::optional<HostAddress> HostFromCommandLine(int argc, wxChar** argv);

}  // namespace qv

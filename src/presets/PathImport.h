#pragma once

#include <wx/string.h>

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "presets/CameraKey.h"

namespace qv {

// Camera paths as text: one camera a line, as position x, y, z and target x, y, z, with tabs or
// commas between. Lines that begin with # are comments; more than six values are left alone.

enum class PathFault { kFormat, kPosition, kTarget };

// The first line that could not be read.
struct PathLineFault {
  PathFault fault;
  int line;  // 1 for the first line of the file
};

struct ImportedPath {
  std::vector<CameraKey> keys;  // half a second apart
  std::optional<PathLineFault> fault;
};

// Text from bytes: UTF-8 and UTF-16 of both byte orders by their mark; without one UTF-8, and
// failing that one byte a character.
std::wstring DecodePathText(std::span<const std::byte> bytes);

// Reads up to the end or the first line that makes no sense. The keys look level, have
// `fieldOfView` and no sun.
ImportedPath ReadPath(std::wstring_view text, float fieldOfView);

// The same from a file. One that cannot be read has no keys.
ImportedPath ReadPathFile(const wxString& file, float fieldOfView);

// What the user is told.
wxString PathFaultText(const PathLineFault& fault);

}  // namespace qv

#pragma once

#include <wx/fileconf.h>

namespace qv {

// A settings store without a file.
class MemorySettings final : public wxFileConfig {
 public:
  MemorySettings() : wxFileConfig({}, {}, {}, {}, 0) {}
};

}  // namespace qv

#pragma once

#include "tests/host/TestFolder.h"

namespace qv::host {

class ScriptFolder : public TestFolder {
 protected:
  // A program in the shell's language, in place of the viewer.
  std::filesystem::path WriteScript(const std::string& name, const std::string& lines) {
    std::filesystem::path path = Write(name, "#!/bin/sh\n" + lines + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
    return path;
  }
};

}  // namespace qv::host

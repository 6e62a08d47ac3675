#pragma once

#include <stdexcept>

namespace qv::host {

// Why a scene file can't be shown: the place in it and what is wrong there, without the file's
// name.
class SceneFileError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace qv::host

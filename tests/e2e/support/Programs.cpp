#include "e2e/support/Programs.h"

namespace qv::e2e {

std::string ViewerProgram() {
  return QUORVANE_VIEWER;
}

std::string HostProgram() {
  return QUORVANE_HOST;
}

std::string SceneHostProgram() {
  return QUORVANE_SCENE_HOST;
}

}  // namespace qv::e2e

#pragma once

#include <string>

namespace qv::e2e {

// The programs that the tests start: the viewer, our host, and the small host of SceneHost.cpp.
std::string ViewerProgram();
std::string HostProgram();
std::string SceneHostProgram();

}  // namespace qv::e2e

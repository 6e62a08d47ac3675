#include <windows.h>

#include "e2e/support/ViewerLog.h"

namespace qv::e2e {

// A program without a console has no standard error, so the viewer is told the file.
void ViewerLog::Capture(const std::function<void()>& start) {
  SetEnvironmentVariableW(L"QUORVANE_LOG_FILE", file_.c_str());
  start();
  SetEnvironmentVariableW(L"QUORVANE_LOG_FILE", nullptr);
}

}  // namespace qv::e2e

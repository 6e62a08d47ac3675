#include <fcntl.h>
#include <unistd.h>

#include "e2e/support/ViewerLog.h"

namespace qv::e2e {

void ViewerLog::Capture(const std::function<void()>& start) {
  const int file = open(file_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
  const int before = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 3);
  dup2(file, STDERR_FILENO);
  start();
  dup2(before, STDERR_FILENO);
  close(before);
  close(file);
}

}  // namespace qv::e2e

#include "platform/EndRequest.h"

#include <atomic>
#include <csignal>

namespace qv::platform {

namespace {

std::atomic<int> requestedCode{0};
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler stores it");

void Note(int signal) {
  int none = 0;
  requestedCode.compare_exchange_strong(none, 128 + signal);
}

}  // namespace

void CatchEndRequests() {
  struct sigaction note = {};
  note.sa_handler = Note;
  note.sa_flags = SA_RESTART;
  sigemptyset(&note.sa_mask);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    struct sigaction before = {};
    sigaction(signal, nullptr, &before);
    if (before.sa_handler != SIG_IGN) sigaction(signal, &note, nullptr);
  }
  std::signal(SIGPIPE, SIG_IGN);
}

int EndRequested() {
  return requestedCode;
}

}  // namespace qv::platform

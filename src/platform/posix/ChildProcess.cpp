#include "platform/ChildProcess.h"

#include <poll.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

#include "platform/posix/Descriptor.h"

extern char** environ;

namespace qv::platform {

namespace {

using Clock = std::chrono::steady_clock;

// Where the system cannot tell when a process ends, it is asked again and again.
constexpr std::chrono::milliseconds kAskingInterval{5};

int ExitCode(int status) {
  return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

// The program starts with the signals as a shell would give them, whatever this process blocks or
// ignores.
class CleanSignals {
 public:
  CleanSignals() {
    posix_spawnattr_init(&attributes_);
    sigset_t set;
    sigemptyset(&set);
    posix_spawnattr_setsigmask(&attributes_, &set);
    for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGCHLD}) {
      sigaddset(&set, number);
    }
    posix_spawnattr_setsigdefault(&attributes_, &set);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  ~CleanSignals() { posix_spawnattr_destroy(&attributes_); }
  CleanSignals(const CleanSignals&) = delete;
  CleanSignals& operator=(const CleanSignals&) = delete;

  const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_;
};

}  // namespace

struct ChildProcess::Impl {
  // Asks without waiting, and keeps the answer: the system gives it once only.
  void Ask() {
    if (exitCode) return;
    int status = 0;
    pid_t answer;
    do {
      answer = waitpid(id, &status, WNOHANG);
    } while (answer < 0 && errno == EINTR);
    if (answer == id) {
      exitCode = ExitCode(status);
    } else if (answer < 0) {
      exitCode = -1;  // somebody else took it
    }
  }

  void SleepUntilEnd(std::chrono::milliseconds atMost) {
    pollfd polled{end.get(), POLLIN, 0};
    if (end) {
      poll(&polled, 1, static_cast<int>(std::min<long long>(atMost.count() + 1, 60000)));
    } else {
      const auto slice = std::min(atMost, kAskingInterval);
      usleep(static_cast<useconds_t>(slice.count() * 1000 + 100));
    }
  }

  pid_t id = 0;
  Descriptor end;  // readable once the process has ended; empty on a system without it
  std::optional<int> exitCode;
};

ChildProcess::ChildProcess() = default;
ChildProcess::~ChildProcess() = default;
ChildProcess::ChildProcess(ChildProcess&&) noexcept = default;
ChildProcess& ChildProcess::operator=(ChildProcess&&) noexcept = default;

ChildProcess ChildProcess::Start(const std::string& path,
                                 const std::vector<std::string>& arguments) {
  std::vector<char*> words{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments)
    words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);

  ChildProcess child;
  const CleanSignals attributes;
  pid_t id = 0;
  if (posix_spawn(&id, path.c_str(), nullptr, attributes.get(), words.data(), environ) != 0) {
    return child;
  }
  child.impl_ = std::make_unique<Impl>();
  child.impl_->id = id;
  child.impl_->end = Descriptor(static_cast<int>(syscall(SYS_pidfd_open, id, 0)));
  return child;
}

std::uint32_t ChildProcess::id() const {
  return impl_ ? static_cast<std::uint32_t>(impl_->id) : 0;
}

bool ChildProcess::Running() {
  if (!impl_) return false;
  impl_->Ask();
  return !impl_->exitCode;
}

std::optional<int> ChildProcess::Wait(std::optional<std::chrono::milliseconds> timeout) {
  if (!impl_) return std::nullopt;
  constexpr std::chrono::milliseconds kLong{60000};
  const auto start = Clock::now();
  for (;;) {
    impl_->Ask();
    if (impl_->exitCode) return impl_->exitCode;
    auto left = kLong;
    if (timeout) {
      left = *timeout - std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start);
      if (left <= std::chrono::milliseconds::zero()) return std::nullopt;
    }
    impl_->SleepUntilEnd(left);
  }
}

void ChildProcess::Kill() {
  if (Running()) kill(impl_->id, SIGKILL);
}

}  // namespace qv::platform

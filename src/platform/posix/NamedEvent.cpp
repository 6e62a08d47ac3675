#include "platform/NamedEvent.h"

#include <fcntl.h>
#include <linux/futex.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <ctime>
#include <utility>

#include "platform/posix/Descriptor.h"

namespace qv::platform {

namespace {

using Word = std::uint32_t;
using Order = std::atomic<std::uint32_t>;

// The word is shared with a process that may shorten the memory below it, where an access by this
// process would end it with SIGBUS. So the kernel makes all of them, which then refuses (EFAULT).
// Its operations without FUTEX_PRIVATE_FLAG are those between processes.

// What was written before an event was set is there after a wait for it. The kernel's operations
// see to that; this tells compilers and tools that know nothing of them.
Order order{0};

// Stores 1 or 0 and wakes all who wait, in one.
void Store(Word* word, unsigned value) {
  constexpr unsigned kNoneBesides = 2;  // the word is 0 or 1
  order.fetch_add(1, std::memory_order_release);
  syscall(SYS_futex, word, FUTEX_WAKE_OP, INT_MAX, nullptr, word,
          FUTEX_OP(FUTEX_OP_SET, value, FUTEX_OP_CMP_EQ, kNoneBesides));
}

enum class Awaited { kSet, kTimeOver, kGone };

// Sleeps until the word is set or the time (of CLOCK_MONOTONIC) has come.
Awaited SleepWhileReset(Word* word, const timespec* until) {
  for (;;) {
    const long result =
        syscall(SYS_futex, word, FUTEX_WAIT_BITSET, 0, until, nullptr, FUTEX_BITSET_MATCH_ANY);
    // Woken, maybe without reason: it compares again.
    if (result == 0 || errno == EINTR) continue;
    if (errno == EAGAIN) return Awaited::kSet;
    return errno == ETIMEDOUT ? Awaited::kTimeOver : Awaited::kGone;
  }
}

timespec MonotonicAfter(std::chrono::milliseconds time) {
  time = std::max(time, std::chrono::milliseconds::zero());
  timespec moment;
  clock_gettime(CLOCK_MONOTONIC, &moment);
  moment.tv_sec += time.count() / 1000;
  moment.tv_nsec += (time.count() % 1000) * 1000000;
  if (moment.tv_nsec >= 1000000000) {
    moment.tv_nsec -= 1000000000;
    ++moment.tv_sec;
  }
  return moment;
}

Word* MapWord(const Descriptor& file) {
  struct stat status;
  if (fstat(file.get(), &status) != 0 || status.st_size < static_cast<off_t>(sizeof(Word))) {
    return nullptr;
  }
  void* address = mmap(nullptr, sizeof(Word), PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
  return address == MAP_FAILED ? nullptr : static_cast<Word*>(address);
}

}  // namespace

struct NamedEvent::Impl {
  Impl(Word* mapped, std::string ownedName) : word(mapped), name(std::move(ownedName)) {}
  ~Impl() {
    munmap(word, sizeof(Word));
    if (!name.empty()) shm_unlink(name.c_str());
  }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  Word* word;
  std::string name;  // of the object to remove; empty for an opened one
};

NamedEvent::NamedEvent() = default;
NamedEvent::~NamedEvent() = default;
NamedEvent::NamedEvent(NamedEvent&&) noexcept = default;
NamedEvent& NamedEvent::operator=(NamedEvent&&) noexcept = default;

NamedEvent NamedEvent::Create(const std::string& name) {
  NamedEvent event;
  const std::string path = "/" + name;
  const Descriptor file(shm_open(path.c_str(), O_CREAT | O_EXCL | O_RDWR, 0600));
  if (!file) return event;
  Word* word = ftruncate(file.get(), sizeof(Word)) == 0 ? MapWord(file) : nullptr;
  if (word == nullptr) {
    shm_unlink(path.c_str());
    return event;
  }
  event.impl_ = std::make_unique<Impl>(word, path);
  return event;
}

NamedEvent NamedEvent::Open(const std::string& name) {
  NamedEvent event;
  const Descriptor file(shm_open(("/" + name).c_str(), O_RDWR, 0));
  Word* word = file ? MapWord(file) : nullptr;
  if (word != nullptr) event.impl_ = std::make_unique<Impl>(word, std::string());
  return event;
}

void NamedEvent::Remove(const std::string& name) {
  shm_unlink(("/" + name).c_str());
}

void NamedEvent::Set() {
  if (impl_) Store(impl_->word, 1);
}

void NamedEvent::Reset() {
  if (impl_) Store(impl_->word, 0);
}

bool NamedEvent::Wait(std::optional<std::chrono::milliseconds> timeout) {
  if (!impl_) return false;
  timespec until{};
  if (timeout) until = MonotonicAfter(*timeout);
  const Awaited awaited = SleepWhileReset(impl_->word, timeout ? &until : nullptr);
  if (awaited == Awaited::kSet) {
    order.load(std::memory_order_acquire);
    return true;
  }
  // Who asks again and again counts on the time to pass.
  if (awaited == Awaited::kGone && timeout) {
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr) == EINTR) {
    }
  }
  return false;
}

}  // namespace qv::platform

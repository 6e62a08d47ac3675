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

using Word = std::atomic<std::uint32_t>;
static_assert(sizeof(Word) == 4 && Word::is_always_lock_free);

// The word is shared between processes, so the operations without FUTEX_PRIVATE_FLAG are used.
void WakeAll(Word* word) {
  syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(word), FUTEX_WAKE, INT_MAX, nullptr, nullptr,
          0);
}

// Sleeps until somebody wakes the word's waiters, or the time (of CLOCK_MONOTONIC) has come; may
// wake without reason.
bool SleepWhileReset(Word* word, const timespec* until) {
  const long result = syscall(SYS_futex, reinterpret_cast<std::uint32_t*>(word), FUTEX_WAIT_BITSET,
                              0, until, nullptr, FUTEX_BITSET_MATCH_ANY);
  return result == 0 || errno != ETIMEDOUT;
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
  if (!impl_) return;
  impl_->word->store(1, std::memory_order_seq_cst);
  WakeAll(impl_->word);
}

void NamedEvent::Reset() {
  if (impl_) impl_->word->store(0, std::memory_order_seq_cst);
}

bool NamedEvent::Wait(std::optional<std::chrono::milliseconds> timeout) {
  if (!impl_) return false;
  timespec until{};
  if (timeout) until = MonotonicAfter(*timeout);
  while (impl_->word->load(std::memory_order_seq_cst) == 0) {
    if (!SleepWhileReset(impl_->word, timeout ? &until : nullptr)) {
      return impl_->word->load(std::memory_order_seq_cst) != 0;
    }
  }
  return true;
}

}  // namespace qv::platform

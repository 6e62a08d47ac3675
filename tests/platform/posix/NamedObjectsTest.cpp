#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/futex.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>
#include <thread>

#include "platform/Clock.h"
#include "platform/GuardedCopy.h"
#include "platform/Ids.h"
#include "platform/NamedEvent.h"
#include "platform/SharedMemory.h"

// The named objects as another program finds them: through system calls only.
namespace qv::platform {
namespace {

constexpr std::size_t kThreePages = 12288;

std::string Name(const char* what) {
  return std::string("QV_Test_") + what + "_" + std::to_string(CurrentProcessId());
}

class Object {
 public:
  explicit Object(const std::string& name, int flags = O_RDWR)
      : path_("/" + name), file_(shm_open(path_.c_str(), flags, 0600)) {}
  ~Object() {
    if (file_ >= 0) close(file_);
  }
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  int file() const { return file_; }
  struct stat Status() const {
    struct stat status {};
    fstat(file_, &status);
    return status;
  }
  std::uint32_t* MapWord() const {
    void* address = mmap(nullptr, 4, PROT_READ | PROT_WRITE, MAP_SHARED, file_, 0);
    return static_cast<std::uint32_t*>(address);
  }

 private:
  std::string path_;
  int file_;
};

// As a process can that is out to do harm, or that is ended at the wrong moment.
TEST(NamedObjects, EventOutlivesTheLossOfItsMemory) {
  NamedEvent event = NamedEvent::Create(Name("Lost"));
  const Object object(Name("Lost"));
  ASSERT_EQ(ftruncate(object.file(), 0), 0);
  event.Set();
  event.Reset();
  const double start = NowSeconds();
  EXPECT_FALSE(event.Wait(std::chrono::milliseconds(50)));
  EXPECT_GE(NowSeconds() - start, 0.05) << "who asks again and again would not sleep";
  EXPECT_FALSE(event.Wait());
  ASSERT_EQ(ftruncate(object.file(), 4), 0);
  EXPECT_FALSE(event.Wait(std::chrono::milliseconds(0)));
  event.Set();
  EXPECT_TRUE(event.Wait());
}

TEST(NamedObjects, EventIsAWordOfItsOwnUser) {
  NamedEvent event = NamedEvent::Create(Name("Word"));
  const Object object(Name("Word"));
  ASSERT_GE(object.file(), 0);
  EXPECT_EQ(object.Status().st_size, 4);
  EXPECT_EQ(object.Status().st_mode & 0777, 0600u);
  std::uint32_t* word = object.MapWord();
  EXPECT_EQ(__atomic_load_n(word, __ATOMIC_SEQ_CST), 0u);
  event.Set();
  EXPECT_EQ(__atomic_load_n(word, __ATOMIC_SEQ_CST), 1u);
  event.Reset();
  EXPECT_EQ(__atomic_load_n(word, __ATOMIC_SEQ_CST), 0u);
  munmap(word, 4);
}

TEST(NamedObjects, EventWakesAndIsWokenByABareFutex) {
  NamedEvent event = NamedEvent::Create(Name("Futex"));
  const Object object(Name("Futex"));
  std::uint32_t* word = object.MapWord();
  std::thread setter([word] {
    SleepMilliseconds(30);
    __atomic_store_n(word, 1, __ATOMIC_SEQ_CST);
    syscall(SYS_futex, word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
  });
  EXPECT_TRUE(event.Wait(std::chrono::seconds(30)));
  setter.join();

  event.Reset();
  std::thread sleeper([word] {
    while (__atomic_load_n(word, __ATOMIC_SEQ_CST) == 0) {
      syscall(SYS_futex, word, FUTEX_WAIT, 0, nullptr, nullptr, 0);
    }
  });
  SleepMilliseconds(30);
  event.Set();
  sleeper.join();
  munmap(word, 4);
}

TEST(NamedObjects, TooShortOnesAreNotOpened) {
  const Object object(Name("Short"), O_RDWR | O_CREAT | O_EXCL);
  ASSERT_GE(object.file(), 0);
  EXPECT_FALSE(NamedEvent::Open(Name("Short")));
  EXPECT_FALSE(SharedMemory::Open(Name("Short")));
  ASSERT_EQ(ftruncate(object.file(), 3), 0);
  EXPECT_FALSE(NamedEvent::Open(Name("Short")));
  NamedEvent::Remove(Name("Short"));
}

TEST(NamedObjects, LeftOnesAreTakenAway) {
  {
    const Object event(Name("Left1"), O_RDWR | O_CREAT | O_EXCL);
    const Object block(Name("Left2"), O_RDWR | O_CREAT | O_EXCL);
    ASSERT_GE(event.file(), 0);
    ASSERT_GE(block.file(), 0);
  }
  EXPECT_FALSE(NamedEvent::Create(Name("Left1")));
  EXPECT_FALSE(SharedMemory::Create(Name("Left2"), 8));
  NamedEvent::Remove(Name("Left1"));
  SharedMemory::Remove(Name("Left2"));
  EXPECT_TRUE(NamedEvent::Create(Name("Left1")));
  EXPECT_TRUE(SharedMemory::Create(Name("Left2"), 8));
}

TEST(NamedObjects, CopiesOfMemoryThatIsTakenAwayFail) {
  SharedMemory made = SharedMemory::Create(Name("Away"), kThreePages);
  const SharedMemory opened = SharedMemory::Open(Name("Away"));
  made.bytes()[4095] = std::byte{7};
  std::vector<std::byte> copy(kThreePages);
  EXPECT_TRUE(CopyFromShared(copy.data(), opened.bytes().data(), copy.size()));
  EXPECT_EQ(copy[4095], std::byte{7});
  const Object object(Name("Away"));
  ASSERT_EQ(ftruncate(object.file(), 4096), 0);
  EXPECT_FALSE(CopyFromShared(copy.data(), opened.bytes().data(), copy.size()));
  EXPECT_FALSE(CopyFromShared(copy.data(), opened.bytes().data() + 4095, 2));
  EXPECT_TRUE(CopyFromShared(copy.data(), opened.bytes().data(), 4096));
  EXPECT_FALSE(CopyToShared(opened.bytes().data() + 4096, copy.data(), 1));
  EXPECT_TRUE(CopyToShared(opened.bytes().data() + 4095, copy.data(), 1));
}

}  // namespace
}  // namespace qv::platform

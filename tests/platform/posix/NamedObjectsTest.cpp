#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <vector>

#include "platform/Clock.h"
#include "platform/GuardedCopy.h"
#include "platform/Ids.h"
#include "platform/NamedEvent.h"
#include "platform/SharedMemory.h"

// The named objects where another program spoils them, through system calls only. How a good one
// uses them is tested with the link.
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

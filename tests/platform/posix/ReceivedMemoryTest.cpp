#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstring>

#include "platform/SharedMemory.h"
#include "platform/posix/RawPeer.h"

// What comes from a peer may be anything, and may change while it is looked at.
namespace qv::platform {
namespace {

constexpr std::size_t kTwoPages = 8192;

std::string TextAt(const SharedMemory& memory, std::size_t offset, std::size_t size) {
  return {reinterpret_cast<const char*>(memory.bytes().data()) + offset, size};
}

TEST(ReceivedMemory, HasItsLastPageWholeMappedOrCopied) {
  for (const bool sealable : {true, false}) {
    const int file = MemoryFile("first", 20, sealable);
    void* sender = mmap(nullptr, 4096, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    // A record may overrun the size that was asked for.
    std::memcpy(static_cast<char*>(sender) + 20, "overrun", 7);
    const SharedMemory memory = SharedMemory::Adopt(dup(file));
    ASSERT_TRUE(memory);
    EXPECT_EQ(memory.bytes().size(), 4096u);
    EXPECT_EQ(TextAt(memory, 0, 5), "first");
    EXPECT_EQ(TextAt(memory, 20, 7), "overrun");
    munmap(sender, 4096);
    close(file);
  }
}

TEST(ReceivedMemory, StaysReadableWhenTheSenderShortensIt) {
  for (const bool sealable : {true, false}) {
    const int file = MemoryFile("content", kTwoPages, sealable);
    void* sender = mmap(nullptr, kTwoPages, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    std::memcpy(static_cast<char*>(sender) + 8000, "end", 3);
    const SharedMemory memory = SharedMemory::Adopt(dup(file));
    ASSERT_TRUE(memory);
    // Either the system refuses, or it does not matter any more.
    EXPECT_EQ(ftruncate(file, 0) == 0, !sealable);
    EXPECT_EQ(memory.bytes().size(), kTwoPages);
    EXPECT_EQ(TextAt(memory, 0, 7), "content");
    EXPECT_EQ(TextAt(memory, 8000, 3), "end");
    munmap(sender, kTwoPages);
    close(file);
  }
}

TEST(ReceivedMemory, IsRefusedWhereItIsNone) {
  int ends[2];
  ASSERT_EQ(pipe(ends), 0);
  EXPECT_FALSE(SharedMemory::Adopt(ends[0]));
  EXPECT_FALSE(SharedMemory::Adopt(ends[1]));
  EXPECT_EQ(fcntl(ends[0], F_GETFD), -1);  // closed all the same
  EXPECT_EQ(fcntl(ends[1], F_GETFD), -1);

  EXPECT_FALSE(SharedMemory::Adopt(open("/dev/zero", O_RDWR)));
  EXPECT_FALSE(SharedMemory::Adopt(open("/proc/self/exe", O_RDONLY)));
  EXPECT_FALSE(SharedMemory::Adopt(open("/", O_RDONLY)));
  EXPECT_FALSE(SharedMemory::Adopt(MemoryFile("", 0, true)));
  EXPECT_FALSE(SharedMemory::Adopt(123456));

  const int writable = MemoryFile("content", 100, true);
  const std::string path = "/proc/self/fd/" + std::to_string(writable);
  EXPECT_FALSE(SharedMemory::Adopt(open(path.c_str(), O_RDONLY)));
  close(writable);
}

TEST(ReceivedMemory, MayBeHugeWithoutBeingThere) {
  const int sealable = MemoryFile("content", std::size_t{1} << 40, true);
  const SharedMemory memory = SharedMemory::Adopt(sealable);
  ASSERT_TRUE(memory);
  EXPECT_EQ(TextAt(memory, 0, 7), "content");
  // It would have to be copied.
  EXPECT_FALSE(SharedMemory::Adopt(MemoryFile("content", std::size_t{1} << 40, false)));
}

}  // namespace
}  // namespace qv::platform

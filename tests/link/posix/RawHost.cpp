#include "link/posix/RawHost.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <linux/futex.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <ctime>

#include "link/RecordBytes.h"

namespace qv {

namespace {

std::uint32_t* WordOf(void* address) {
  return static_cast<std::uint32_t*>(address);
}

}  // namespace

RawHost::RawHost(std::size_t areaSize, const std::string& recordPath,
                 const std::string& untilPath) {
  const std::string id = std::to_string(getpid());
  lock1_ = Make("/QV_Lock1_" + id, 4);
  lock2_ = Make("/QV_Lock2_" + id, 4);
  area_ = Make("/QV_Shared1_" + id, areaSize);
  const auto window = static_cast<std::uint32_t>(3000000000u + static_cast<unsigned>(getpid()));
  EXPECT_TRUE(socket_.Listen(window));
  viewer_ = platform::ChildProcess::Start(
      QUORVANE_TEST_VIEWER, {"--windowhandle=" + std::to_string(window), "--processid=" + id,
                             "--record=" + recordPath, "--until=" + untilPath});
  EXPECT_TRUE(viewer_);
  EXPECT_TRUE(socket_.Accept());
}

RawHost::~RawHost() {
  viewer_.Kill();
  viewer_.Wait();
  Destroy(lock1_);
  Destroy(lock2_);
  Destroy(area_);
}

RawHost::Object RawHost::Make(const std::string& path, std::size_t size) {
  Object object{path, shm_open(path.c_str(), O_CREAT | O_EXCL | O_RDWR, 0600), nullptr, size};
  EXPECT_GE(object.file, 0) << path;
  EXPECT_EQ(ftruncate(object.file, static_cast<off_t>(size)), 0);
  object.address = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, object.file, 0);
  return object;
}

void RawHost::Destroy(Object& object) {
  munmap(object.address, object.size);
  close(object.file);
  shm_unlink(object.path.c_str());
}

void RawHost::Ring(std::span<const std::byte> record) {
  std::memcpy(area_.address, record.data(), record.size());
  __atomic_store_n(WordOf(lock1_.address), 1, __ATOMIC_SEQ_CST);
  syscall(SYS_futex, lock1_.address, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

bool RawHost::AwaitAnswer() {
  std::uint32_t* word = WordOf(lock2_.address);
  const timespec slice{0, 100000000};
  for (int i = 0; i < 100 && __atomic_load_n(word, __ATOMIC_SEQ_CST) == 0; ++i) {
    syscall(SYS_futex, word, FUTEX_WAIT, 0, &slice, nullptr, 0);
  }
  return __atomic_exchange_n(word, 0, __ATOMIC_SEQ_CST) == 1;
}

bool RawHost::Carry(std::span<const std::byte> record) {
  Ring(record);
  return AwaitAnswer();
}

void RawHost::RingOrder(const std::string& order) {
  Ring(RecordBytes(15).Int(4, 8).Text(8, "!" + order).bytes());
}

bool RawHost::CarryOrder(const std::string& order) {
  RingOrder(order);
  return AwaitAnswer();
}

void RawHost::ReplaceArea(std::size_t size) {
  const std::string path = area_.path;
  Destroy(area_);
  area_ = Make(path, size);
}

void RawHost::ShortenArea(std::size_t size) {
  EXPECT_EQ(ftruncate(area_.file, static_cast<off_t>(size)), 0);
}

}  // namespace qv

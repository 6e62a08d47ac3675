#include "platform/SharedMemory.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <limits>
#include <utility>

#include "platform/GuardedCopy.h"
#include "platform/posix/Descriptor.h"

namespace qv::platform {

namespace {

// The most that is copied of a memory file that its owner could still make shorter.
constexpr std::size_t kLargestCopy = std::size_t{256} << 20;

std::size_t WholePages(std::size_t size) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  if (size > std::numeric_limits<std::size_t>::max() - page) return 0;
  return (size + page - 1) / page * page;
}

// The size of a file that memory can be mapped of, 0 for anything else.
std::size_t FileSize(const Descriptor& file) {
  struct stat status;
  if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) return 0;
  return static_cast<std::size_t>(status.st_size);
}

constexpr auto kLargestFile = static_cast<std::size_t>(std::numeric_limits<off_t>::max());

// The file system of named objects has a limit of its own, so the memory is taken from it at once:
// a full one refuses here and not with a signal at the first write.
bool ReserveNamed(const Descriptor& file, std::size_t size) {
  return size > 0 && size <= kLargestFile &&
         posix_fallocate(file.get(), 0, static_cast<off_t>(size)) == 0;
}

bool SizeUnnamed(const Descriptor& file, std::size_t size) {
  return size > 0 && size <= kLargestFile && ftruncate(file.get(), static_cast<off_t>(size)) == 0;
}

bool IsMemoryFile(const Descriptor& file) {
  return fcntl(file.get(), F_GET_SEALS) >= 0;
}

// True when nobody can make the file shorter any more, so that reading its mapping is safe.
bool KeepsItsSize(const Descriptor& file) {
  if ((fcntl(file.get(), F_GET_SEALS) & F_SEAL_SHRINK) != 0) return true;
  return fcntl(file.get(), F_ADD_SEALS, F_SEAL_SHRINK) == 0;
}

}  // namespace

struct SharedMemory::Impl {
  ~Impl() {
    if (address != nullptr) munmap(address, size);
    if (!name.empty()) shm_unlink(name.c_str());
  }

  bool Map() {
    size = WholePages(FileSize(file));
    if (size == 0) return false;
    void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file.get(), 0);
    if (mapped == MAP_FAILED) return false;
    address = static_cast<std::byte*>(mapped);
    return true;
  }

  Descriptor file;
  std::byte* address = nullptr;
  std::size_t size = 0;  // in whole pages
  std::string name;      // of the object to remove; empty for one that others made
};

SharedMemory::SharedMemory() = default;
SharedMemory::~SharedMemory() = default;
SharedMemory::SharedMemory(SharedMemory&&) noexcept = default;
SharedMemory& SharedMemory::operator=(SharedMemory&&) noexcept = default;

SharedMemory SharedMemory::Create(const std::string& name, std::size_t size) {
  SharedMemory memory;
  const std::string path = "/" + name;
  Descriptor file(shm_open(path.c_str(), O_CREAT | O_EXCL | O_RDWR, 0600));
  if (!file) return memory;
  auto impl = std::make_unique<Impl>();
  impl->name = path;
  impl->file = std::move(file);
  if (ReserveNamed(impl->file, size) && impl->Map()) memory.impl_ = std::move(impl);
  return memory;
}

SharedMemory SharedMemory::Open(const std::string& name) {
  SharedMemory memory;
  auto impl = std::make_unique<Impl>();
  impl->file = Descriptor(shm_open(("/" + name).c_str(), O_RDWR, 0));
  if (impl->file && impl->Map()) memory.impl_ = std::move(impl);
  return memory;
}

SharedMemory SharedMemory::CreateUnnamed(std::size_t size) {
  SharedMemory memory;
  auto impl = std::make_unique<Impl>();
  impl->file = Descriptor(memfd_create("QV_Record", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (!impl->file || !SizeUnnamed(impl->file, size) || !KeepsItsSize(impl->file)) return memory;
  if (impl->Map()) memory.impl_ = std::move(impl);
  return memory;
}

SharedMemory SharedMemory::Adopt(std::intptr_t native) {
  SharedMemory memory;
  auto impl = std::make_unique<Impl>();
  impl->file = Descriptor(static_cast<int>(native));
  if (!IsMemoryFile(impl->file)) return memory;
  const bool keepsItsSize = KeepsItsSize(impl->file);
  if (!impl->Map()) return memory;
  if (keepsItsSize) {
    memory.impl_ = std::move(impl);
  } else if (impl->size <= kLargestCopy) {
    // The owner could take pages away while they are read, so this process reads a copy of its own.
    SharedMemory copy = CreateUnnamed(impl->size);
    if (copy && CopyFromShared(copy.bytes().data(), impl->address, impl->size)) {
      memory = std::move(copy);
    }
  }
  return memory;
}

void SharedMemory::Remove(const std::string& name) {
  shm_unlink(("/" + name).c_str());
}

std::span<std::byte> SharedMemory::bytes() const {
  return impl_ ? std::span<std::byte>(impl_->address, impl_->size) : std::span<std::byte>();
}

void SharedMemory::Flush() {}

std::intptr_t SharedMemory::native() const {
  return impl_ ? impl_->file.get() : -1;
}

}  // namespace qv::platform
